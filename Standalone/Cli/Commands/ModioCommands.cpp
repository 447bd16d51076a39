// The mod.io commands, each driven through the workshop window's controller: log in and out,
// create a mod, upload or stage one of your mods.

#include "Cli/Commands/Commands.h"
#include "Cli/ProgressLine.h"
#include "Cli/WorkshopRun.h"

#include "Common/FileHelper.h"
#include "Common/StringUtil.h"
#include "Modio/ModioFormatChecks.h"

#include <nlohmann/json.hpp>

#include <istream>
#include <ostream>
#include <unistd.h>

namespace Maptorn::Cli
{
namespace
{
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

std::unique_ptr<FWorkshopRun> StartRun(const FCommandContext& Context, bool bNeedsEngine, int& OutExitCode)
{
    std::string Error;
    std::unique_ptr<FWorkshopRun> Run = FWorkshopRun::Start(Context, bNeedsEngine, Error);
    if (!Run)
    {
        OutExitCode = Fail(Context, ExitNoEnvironment, Error);
    }
    return Run;
}

int NotLoggedIn(const FCommandContext& Context)
{
    return Fail(Context, ExitFailed, "You are not logged in to mod.io on this machine; log in first with `maptorn login`.");
}

int SubmitCode(const FCommandContext& Context, FWorkshopRun& Run, const std::string& Code)
{
    if (!IsValidSecurityCodeFormat(Code))
    {
        return Fail(Context, ExitBadInput, "A security code has 5 characters; copy it from the e-mail mod.io sent.");
    }
    Run.Controller->OnAuthCodeChanged(TrimWhitespace(Code));
    Run.Controller->LoginButtonClicked();
    Run.WaitForModio();
    if (!Run.Controller->IsAuthenticated())
    {
        const std::string Reason = Run.RecentMessage("Error Modio Login, the error code was ").value_or("no answer");
        return Fail(Context, ExitFailed, "mod.io refused the code: " + Reason + ". Ask for a new one with `maptorn login --email <address>`.");
    }
    Context.Out << "Logged in to mod.io.\n";
    return ExitSuccess;
}
}

int RunLogin(const FCommandContext& Context, const std::string& EmailArg, const std::string& CodeArg)
{
    int ExitCode = ExitSuccess;
    std::unique_ptr<FWorkshopRun> Run = StartRun(Context, false, ExitCode);
    if (!Run)
    {
        return ExitCode;
    }
    if (Run->Controller->IsAuthenticated())
    {
        Context.Out << "Already logged in to mod.io (use `maptorn logout` to switch accounts).\n";
        return ExitSuccess;
    }
    // The code of an earlier `maptorn login --email` run.
    if (!CodeArg.empty() && EmailArg.empty())
    {
        return SubmitCode(Context, *Run, CodeArg);
    }
    const std::string Email = EmailArg.empty() ? Ask(Context, "E-mail address: ").value_or("") : EmailArg;
    if (!IsValidEmailAddressFormat(Email))
    {
        return Fail(Context, ExitBadInput, Email.empty() ? "Give the e-mail address of your mod.io account: --email <address>."
                                                         : "\"" + Email + "\" is not an e-mail address.");
    }
    Context.Out << "By logging in you agree to mod.io's terms of use: https://mod.io/terms\n";
    Run->Controller->AgreedToTerms();
    Run->Controller->OnEmailTextChanged(Email);
    Run->Controller->SendAuthButtonClicked();
    Run->WaitForModio();
    if (Run->Controller->IsAuthenticated())
    {
        Context.Out << "Already logged in to mod.io (use `maptorn logout` to switch accounts).\n";
        return ExitSuccess;
    }
    if (Run->Controller->GetLoginIndex() != 2)
    {
        const std::string Reason = Run->RecentMessage("Error Requesting Auth Code, the error code was ").value_or("no answer");
        return Fail(Context, ExitFailed, "mod.io did not send a code (" + Reason + "); check the address and try again.");
    }
    Context.Out << "mod.io sent a 5-character security code to " << Email << ".\n";
    const std::string Code = CodeArg.empty() ? Ask(Context, "Security code: ").value_or("") : CodeArg;
    if (Code.empty())
    {
        Context.Out << "Finish with: maptorn login --code <code>\n";
        return ExitSuccess;
    }
    return SubmitCode(Context, *Run, Code);
}

int RunLogout(const FCommandContext& Context)
{
    int ExitCode = ExitSuccess;
    std::unique_ptr<FWorkshopRun> Run = StartRun(Context, false, ExitCode);
    if (!Run)
    {
        return ExitCode;
    }
    Run->Controller->LogoutButtonClicked();
    Run->WaitForModio();
    if (Run->Controller->IsAuthenticated())
    {
        const std::string Reason = Run->RecentMessage("Error Modio Login, the error code was ").value_or("no answer");
        return Fail(Context, ExitFailed, "Could not log out: " + Reason);
    }
    Context.Out << "Logged out of mod.io; the stored login is deleted.\n";
    return ExitSuccess;
}

int RunWhoAmI(const FCommandContext& Context, bool bJson)
{
    int ExitCode = ExitSuccess;
    std::unique_ptr<FWorkshopRun> Run = StartRun(Context, false, ExitCode);
    if (!Run)
    {
        return ExitCode;
    }
    const bool bLoggedIn = Run->Controller->IsAuthenticated();
    if (bJson)
    {
        Context.Out << nlohmann::json{{"logged_in", bLoggedIn}, {"modio_url", Run->Host->Settings.ModioBaseUrl.Value},
                                      {"own_mods", Run->Client().OwnMods.size()}}.dump(2) << "\n";
        return bLoggedIn ? ExitSuccess : ExitFailed;
    }
    if (!bLoggedIn)
    {
        const std::string Reason = Run->RecentMessage("User not authenticated Error Code ").value_or("no stored login");
        return Fail(Context, ExitFailed, "Not logged in to mod.io (" + Reason + "); log in with `maptorn login`.");
    }
    Context.Out << "Logged in to mod.io at " << Run->Host->Settings.ModioBaseUrl.Value << "; "
                << Run->Client().OwnMods.size() << " of your mods have their plug-in in this project.\n";
    return ExitSuccess;
}

int RunCreate(const FCommandContext& Context, const FCreateRequest& Request)
{
    const std::optional<EModType> Type = ParseModType(Request.TypeWord);
    if (!Type)
    {
        return Fail(Context, ExitBadInput, "Unknown type \"" + Request.TypeWord + "\": use map, mod or gamemode.");
    }
    if (TrimWhitespace(Request.Name).empty() || TrimWhitespace(Request.Summary).empty())
    {
        return Fail(Context, ExitBadInput, "A mod needs a name and a summary: --name \"…\" --summary \"…\".");
    }
    if (!Request.LogoPath.empty() && !FileSystem::FileExists(Request.LogoPath))
    {
        return Fail(Context, ExitBadInput, "The logo " + Request.LogoPath + " does not exist; give a PNG or JPEG file.");
    }
    int ExitCode = ExitSuccess;
    std::unique_ptr<FWorkshopRun> Run = StartRun(Context, true, ExitCode);
    if (!Run)
    {
        return ExitCode;
    }
    FWorkshopController& Window = *Run->Controller;
    if (!Window.IsAuthenticated())
    {
        return NotLoggedIn(Context);
    }
    Window.OnModNameTextChanged(Request.Name);
    Window.OnModSummaryTextChanged(Request.Summary);
    Window.OnCreateModTypeChanged(*Type);
    if (!Request.LogoPath.empty())
    {
        Run->Client().LogoPath = Request.LogoPath;
    }
    if (!FileSystem::FileExists(Run->Client().LogoPath))
    {
        return Fail(Context, ExitBadInput, "No logo: the default " + Run->Client().LogoPath + " is missing; give one with --logo <image>.");
    }
    Window.CreateModButtonClicked();
    Run->WaitForModio();
    const std::string Status = Window.GetCreateModErrorText();
    if (Status.rfind("Created Mod ", 0) != 0)
    {
        return Fail(Context, ExitFailed, "mod.io did not create the mod: " + Status);
    }
    const std::string ModId = Status.substr(12);
    const auto Plugin = Run->Host->Engine.FindPlugin("UGC" + ModId);
    if (Request.bJson)
    {
        Context.Out << nlohmann::json{{"mod_id", ModId}, {"plugin", "UGC" + ModId}, {"plugin_dir", Plugin ? Plugin->BaseDir : ""}}.dump(2) << "\n";
    }
    else
    {
        Context.Out << Status << ".\nIts plug-in UGC" << ModId << " is at " << (Plugin ? Plugin->BaseDir : std::string("(not created)"))
                    << "; put your content there, then `maptorn upload " << ModId << " --windows --android`.\n";
    }
    return Plugin ? ExitSuccess : ExitFailed;
}

int RunUpload(const FCommandContext& Context, const FUploadRequest& Request)
{
    if (!IsPlainModId(Request.ModId))
    {
        return Fail(Context, ExitBadInput, "The mod id must be the number mod.io gave the mod, e.g. 4711 (got \"" + Request.ModId + "\").");
    }
    const bool bStage = !Request.StageDir.empty();
    if (bStage && !FileSystem::DirectoryExists(Request.StageDir))
    {
        return Fail(Context, ExitBadInput, "The stage folder " + Request.StageDir + " does not exist; give your Kelvor install folder.");
    }
    if (!bStage && !Request.bWindows && !Request.bAndroid && !Request.bShareSource)
    {
        return Fail(Context, ExitBadInput, "Choose what to upload: --windows, --android and/or --share-source.");
    }
    int ExitCode = ExitSuccess;
    std::unique_ptr<FWorkshopRun> Run = StartRun(Context, true, ExitCode);
    if (!Run)
    {
        return ExitCode;
    }
    FWorkshopController& Window = *Run->Controller;
    FModioInterface& Client = Run->Client();
    if (!Window.IsAuthenticated())
    {
        return NotLoggedIn(Context);
    }
    Window.OnSelectUploadModClicked(Request.ModId);
    if (Window.GetModId().empty() || !Client.FindOwnMod(Request.ModId))
    {
        return Fail(Context, ExitFailed, "Mod " + Request.ModId + " is not one of your mods with its plug-in UGC" + Request.ModId +
            " in this project (see `maptorn mods`).");
    }
    const ECheckBoxState Windows = Request.bWindows || bStage ? ECheckBoxState::Checked : ECheckBoxState::Unchecked;
    Window.OnModioBuildWindowsStateChanged(Windows);
    Window.OnModioBuildAndroidStateChanged(Request.bAndroid ? ECheckBoxState::Checked : ECheckBoxState::Unchecked);
    Window.OnModioBuildSourceStateChanged(Request.bShareSource ? ECheckBoxState::Checked : ECheckBoxState::Unchecked);
    if (Request.bShareSource && !Window.CanBuildSource())
    {
        return Fail(Context, ExitBadInput, "Only content mods can share their source; mod " + Request.ModId + " is a map or a game mode.");
    }
    Window.OnModioNotesTextChanged(Request.Changelog);
    if (bStage)
    {
        Client.StageDir = Request.StageDir;
        if (Window.GetStageModVisibility() != EVisibility::Visible)
        {
            return Fail(Context, ExitBadInput, "Staging needs the Windows build and an existing stage folder.");
        }
        Window.StageModButtonClicked();
    }
    else
    {
        Window.UploadModButtonClicked();
    }
    if (!Client.bIsUploading)
    {
        return Fail(Context, ExitFailed, "The upload did not start; the log above says why.");
    }

    FProgressLine Progress(Context.Out, isatty(STDOUT_FILENO) != 0);
    Run->TickUntil([&Client] { return !Client.bIsUploading; }, [&] {
        if (!Client.bIsUploading)
        {
            return;
        }
        if (Run->Module->bBusy)
        {
            Progress.Show(bStage ? "Packaging and staging" : "Packaging", 0.0f);
            return;
        }
        int64 Done = -1;
        int64 Total = -1;
        if (const auto Update = Run->Host->Session->QueryCurrentModUpdate())
        {
            Done = Update->Current;
            Total = Update->Total;
        }
        const std::string Step = Window.GetBuildProgressText();
        Progress.Show(Step.substr(0, Step.find(" - ")), Window.GetBuildProgress().value_or(0.0f), Done, Total);
    });
    Progress.End();

    const bool bDone = bStage ? Run->Host->Dialogs.GetLastMessageBoxText() == "Staged mod" : Run->RecentMessage("Upload Complete").has_value();
    if (!bDone)
    {
        return Fail(Context, ExitFailed, std::string(bStage ? "Staging" : "The upload") + " of mod " + Request.ModId +
            " failed; the messages above say where. Your project is as it was, apart from the version stamped in the definition.");
    }
    const int32 Version = Client.OwnModVersions[Request.ModId];
    if (Request.bJson)
    {
        Context.Out << nlohmann::json{{"mod_id", Request.ModId}, {"version", Version}, {"staged", bStage}}.dump(2) << "\n";
    }
    else if (bStage)
    {
        Context.Out << "Staged mod " << Request.ModId << " into " << Request.StageDir << ".\n";
    }
    else
    {
        Context.Out << "Uploaded mod " << Request.ModId << " version " << Version << " to mod.io.\n";
    }
    return ExitSuccess;
}
}
