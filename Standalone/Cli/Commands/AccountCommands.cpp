#include "Cli/Commands/Commands.h"

#include "Common/StringUtil.h"
#include "Modio/ModioFormatChecks.h"

#include <istream>
#include <ostream>

namespace Maptorn::Cli
{
namespace
{
// Runs one session call through the host's tick and answers its result.
FModioErrorCode Await(FStandaloneHost& Host, const std::function<void(FOnErrorOnlyDelegate)>& Call)
{
    std::optional<FModioErrorCode> Result;
    Call([&Result](FModioErrorCode ErrorCode) { Result = ErrorCode; });
    Host.RunUntil([&Result] { return Result.has_value(); });
    return *Result;
}

std::optional<std::string> Ask(const FCommandContext& Context, const std::string& Prompt)
{
    if (!Context.bInteractive)
    {
        return std::nullopt;
    }
    Context.Out << Prompt << std::flush;
    std::string Line;
    return std::getline(Context.In, Line) ? std::optional<std::string>(TrimWhitespace(Line)) : std::nullopt;
}

std::unique_ptr<FStandaloneHost> StartSession(const FCommandContext& Context, std::string& OutError)
{
    std::unique_ptr<FStandaloneHost> Host = FStandaloneHost::Create(Context, false, OutError);
    return Host && Host->StartModioSession(OutError) ? std::move(Host) : nullptr;
}

int ExchangeCode(const FCommandContext& Context, FStandaloneHost& Host, const std::string& Code)
{
    if (!IsValidSecurityCodeFormat(Code))
    {
        return Fail(Context, ExitBadInput, "A security code has 5 characters; copy it from the e-mail mod.io sent.");
    }
    const FModioErrorCode Result = Await(Host, [&](FOnErrorOnlyDelegate Done) { Host.Session->AuthenticateUserEmailAsync(TrimWhitespace(Code), Done); });
    if (Result)
    {
        return Fail(Context, ExitFailed, "mod.io refused the code: " + Result.GetErrorMessage() + ". Ask for a new one with `maptorn login --email <address>`.");
    }
    Context.Out << "Logged in to mod.io.\n";
    return ExitSuccess;
}
}

int RunLogin(const FCommandContext& Context, const std::string& EmailArg, const std::string& CodeArg)
{
    std::string Error;
    std::unique_ptr<FStandaloneHost> Host = StartSession(Context, Error);
    if (!Host)
    {
        return Fail(Context, ExitNoEnvironment, Error);
    }
    if (!CodeArg.empty() && EmailArg.empty())
    {
        return ExchangeCode(Context, *Host, CodeArg);
    }
    const std::string Email = EmailArg.empty() ? Ask(Context, "E-mail address: ").value_or("") : EmailArg;
    if (!IsValidEmailAddressFormat(Email))
    {
        return Fail(Context, ExitBadInput, Email.empty() ? "Give the e-mail address of your mod.io account: --email <address>."
                                                         : "\"" + Email + "\" is not an e-mail address.");
    }
    const FModioErrorCode Requested = Await(*Host, [&](FOnErrorOnlyDelegate Done) { Host->Session->RequestEmailAuthCodeAsync(Email, Done); });
    if (Requested.GetValue() == ModioErrorValue::UserAlreadyAuthenticated)
    {
        Context.Out << "Already logged in to mod.io (use `maptorn logout` to switch accounts).\n";
        return ExitSuccess;
    }
    if (Requested)
    {
        return Fail(Context, ExitFailed, "mod.io did not send a code: " + Requested.GetErrorMessage());
    }
    Context.Out << "mod.io sent a 5-character security code to " << Email << ".\n";
    const std::string Code = CodeArg.empty() ? Ask(Context, "Security code: ").value_or("") : CodeArg;
    if (Code.empty())
    {
        Context.Out << "Finish with: maptorn login --code <code>\n";
        return ExitSuccess;
    }
    return ExchangeCode(Context, *Host, Code);
}

int RunLogout(const FCommandContext& Context)
{
    std::string Error;
    std::unique_ptr<FStandaloneHost> Host = StartSession(Context, Error);
    if (!Host)
    {
        return Fail(Context, ExitNoEnvironment, Error);
    }
    const FModioErrorCode Result = Await(*Host, [&](FOnErrorOnlyDelegate Done) { Host->Session->ClearUserDataAsync(Done); });
    if (Result)
    {
        return Fail(Context, ExitFailed, "Could not log out: " + Result.GetErrorMessage());
    }
    Context.Out << "Logged out of mod.io; the stored login is deleted.\n";
    return ExitSuccess;
}

int RunWhoAmI(const FCommandContext& Context)
{
    std::string Error;
    std::unique_ptr<FStandaloneHost> Host = StartSession(Context, Error);
    if (!Host)
    {
        return Fail(Context, ExitNoEnvironment, Error);
    }
    const FModioErrorCode Result = Await(*Host, [&](FOnErrorOnlyDelegate Done) { Host->Session->VerifyUserAuthenticationAsync(Done); });
    if (Result)
    {
        return Fail(Context, ExitFailed, "Not logged in to mod.io: " + Result.GetErrorMessage());
    }
    Context.Out << "Logged in to mod.io at " << Host->Settings.ModioBaseUrl.Value << ".\n";
    return ExitSuccess;
}
}
