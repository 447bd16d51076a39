// Creating a mod and editing it: one form-data request each, with the bearer token. The logo is
// read whole (mod.io takes 8 MB at most), so a missing or oversized one is refused before sending.

#include "Common/FileHelper.h"
#include "Common/Paths.h"
#include "Modio/ModioRequests.h"
#include "Platform/RestModFileRequests.h"
#include "Platform/RestModioSession.h"
#include "Platform/RestModioSessionRequests.h"

#include <fstream>
#include <iterator>

namespace Maptorn
{
namespace
{
constexpr int64 MaxLogoBytes = 8 * 1024 * 1024;

std::optional<FModioErrorCode> ReadLogo(const std::string& Path, std::string& OutBytes)
{
    const int64 Size = Path.empty() ? -1 : FileSystem::FileSize(Path);
    std::ifstream File(Path, std::ios::binary);
    if (Size <= 0 || !File)
    {
        return FModioErrorCode{ModioRest::ErrorValue::BadParameter, "The logo file cannot be read: " + Path};
    }
    if (Size > MaxLogoBytes)
    {
        return FModioErrorCode{ModioRest::ErrorValue::BadParameter, "The logo file is larger than 8 MB: " + Path};
    }
    OutBytes.assign(std::istreambuf_iterator<char>(File), std::istreambuf_iterator<char>());
    if (static_cast<int64>(OutBytes.size()) != Size)
    {
        return FModioErrorCode{ModioRest::ErrorValue::BadParameter, "The logo file cannot be read: " + Path};
    }
    return std::nullopt;
}

// The form-data body: the fields, then the logo when there is one.
std::string MakeModBody(const ModioRest::FFormFields& Fields, const std::string& LogoPath, const std::string& Logo)
{
    if (LogoPath.empty())
    {
        return ModioRest::MakeFormHead(Fields) + ModioRest::MakeFormTail(false);
    }
    const ModioRest::FFormFile File{"logo", Paths::GetCleanFilename(LogoPath), ModioRest::ImageContentType(Logo.substr(0, 8))};
    return ModioRest::MakeFormHead(Fields, File) + Logo + ModioRest::MakeFormTail(true);
}
}

namespace
{
// A completion that also carries a result, called for a failure: the error and no result.
template <typename TCallback>
FOnErrorOnlyDelegate FailureOnly(const TCallback& Callback)
{
    return [Callback](FModioErrorCode Error) {
        if (Callback)
        {
            Callback(std::move(Error), std::nullopt);
        }
    };
}
}

FModioModCreationHandle FRestModioSession::GetModCreationHandle()
{
    return FModioModCreationHandle{++LastModCreationHandle};
}

void FRestModioSession::SubmitNewModAsync(FModioModCreationHandle, const FModioCreateModParams& Params, FOnSubmitNewModDelegate Callback)
{
    const FOnErrorOnlyDelegate OnError = FailureOnly(Callback);
    if (const std::optional<FModioErrorCode> Refusal = RefusalToStartAuthorized())
    {
        Complete(OnError, *Refusal);
        return;
    }
    std::string Logo;
    if (const std::optional<FModioErrorCode> Unreadable = ReadLogo(Params.PathToLogoFile, Logo))
    {
        Complete(OnError, *Unreadable);
        return;
    }
    PostModForm(ModioRest::ModsUrl(BaseUrl, GameId), MakeModBody(ModioRest::AddModFields(Params), Params.PathToLogoFile, Logo),
        [this, Callback](const std::string& Body) {
            const std::optional<FModioModID> Mod = ModioRest::ReadModId(Body);
            if (Mod)
            {
                Post([Callback, Mod] {
                    if (Callback)
                    {
                        Callback(FModioErrorCode{}, Mod);
                    }
                });
            }
            return Mod.has_value();
        },
        OnError);
}

void FRestModioSession::SubmitModChangesAsync(FModioModID Mod, const FModioEditModParams& Params, FOnSubmitModChangesDelegate Callback)
{
    const FOnErrorOnlyDelegate OnError = FailureOnly(Callback);
    if (const std::optional<FModioErrorCode> Refusal = RefusalToStartAuthorized())
    {
        Complete(OnError, *Refusal);
        return;
    }
    const ModioRest::FFormFields Fields = ModioRest::EditModFields(Params);
    const std::string LogoPath = Params.LogoPath.value_or(std::string());
    if (Fields.empty() && !Params.LogoPath)
    {
        Complete(OnError, FModioErrorCode{ModioRest::ErrorValue::BadParameter, "Nothing to change: no field of the mod is set"});
        return;
    }
    std::string Logo;
    if (Params.LogoPath)
    {
        if (const std::optional<FModioErrorCode> Unreadable = ReadLogo(LogoPath, Logo))
        {
            Complete(OnError, *Unreadable);
            return;
        }
    }
    // mod.io edits with POST now (PUT before); form-data takes the logo as well as the fields.
    PostModForm(ModioRest::ModUrl(BaseUrl, GameId, Mod), MakeModBody(Fields, LogoPath, Logo),
        [this, Callback](const std::string& Body) {
            std::optional<FModioModInfo> Info = ModioRest::ReadModInfo(Body);
            const bool bRead = Info.has_value();
            if (bRead)
            {
                Post([Callback, Info = std::move(Info)] {
                    if (Callback)
                    {
                        Callback(FModioErrorCode{}, Info);
                    }
                });
            }
            return bRead;
        },
        OnError);
}

void FRestModioSession::PostModForm(const std::string& Url, const std::string& Body, std::function<bool(const std::string&)> OnAccepted,
    FOnErrorOnlyDelegate OnError)
{
    const std::string Token = AccessToken;
    FHttpRequestPtr Request = ModioRequests::MakeAuthorizedRequest(Http, "POST", Url, Token);
    if (Request)
    {
        Request->SetHeader("Content-Type", ModioRest::FormContentType());
        Request->SetContentAsString(Body);
    }
    Send(Request,
        [this, OnAccepted = std::move(OnAccepted), OnError, Token](int32 Status, const std::string& Answer) {
            if (Status < 200 || Status >= 300)
            {
                Complete(OnError, ModioRest::ErrorFromAnswer(Status, Answer), Token);
                ForgetLoginIfRefused(Status, Token);
            }
            else if (!OnAccepted(Answer))
            {
                Complete(OnError, ModioRest::UnexpectedAnswer());
            }
        },
        OnError);
}
}
