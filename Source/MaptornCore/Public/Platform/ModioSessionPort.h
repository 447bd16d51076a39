#pragma once

#include "Common/CoreTypes.h"

#include "Modio/ModioSdkTypes.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace Maptorn
{
using FOnErrorOnlyDelegate = std::function<void(FModioErrorCode)>;
using FOnSubmitNewModDelegate = std::function<void(FModioErrorCode, std::optional<FModioModID>)>;
using FOnSubmitModChangesDelegate = std::function<void(FModioErrorCode, std::optional<FModioModInfo>)>;
using FOnModManagementDelegate = std::function<void(FModioModManagementEvent)>;
using FOnListUserCreatedModsDelegate = std::function<void(FModioErrorCode, std::optional<std::vector<FModioModInfo>>)>;
// The path of the image file on disk.
using FOnGetModLogoDelegate = std::function<void(FModioErrorCode, std::optional<std::string>)>;

// Stands for the mod.io engine plug-in's subsystem. Completions are queued and run only by
// RunPendingHandlers, which the module's tick calls, so they run on the game thread.
class MAPTORNCORE_API IModioSession
{
public:
    virtual ~IModioSession() = default;

    virtual void InitializeAsync(const FModioInitializeOptions& Options, FOnErrorOnlyDelegate OnInitComplete) = 0;
    virtual void SetLogLevel(EModioLogLevel Level) = 0;
    virtual FModioErrorCode EnableModManagement(FOnModManagementDelegate Callback) = 0;
    virtual void VerifyUserAuthenticationAsync(FOnErrorOnlyDelegate Callback) = 0;
    virtual void RequestEmailAuthCodeAsync(const std::string& EmailAddress, FOnErrorOnlyDelegate Callback) = 0;
    virtual void AuthenticateUserEmailAsync(const std::string& AuthCode, FOnErrorOnlyDelegate Callback) = 0;
    virtual void ClearUserDataAsync(FOnErrorOnlyDelegate Callback) = 0;
    virtual void ShutdownAsync(FOnErrorOnlyDelegate Callback) = 0;
    virtual void RunPendingHandlers() = 0;

    virtual std::optional<FModioModProgressInfo> QueryCurrentModUpdate() = 0;
    // Empty when nobody is logged in. Never to be logged.
    virtual std::string GetAuthTokenAsString() = 0;

    virtual FModioModCreationHandle GetModCreationHandle() = 0;
    virtual void SubmitNewModAsync(FModioModCreationHandle Handle, const FModioCreateModParams& Params,
        FOnSubmitNewModDelegate Callback) = 0;
    virtual void SubmitModChangesAsync(FModioModID Mod, const FModioEditModParams& Params,
        FOnSubmitModChangesDelegate Callback) = 0;
    // Progress is read with QueryCurrentModUpdate; the end arrives as an Uploaded mod-management event.
    virtual void SubmitNewModFileForMod(FModioModID Mod, const FModioCreateModFileParams& Params) = 0;

    // Optional: the logged-in user's own mods, for a session that has no token to hand out (the
    // engine plug-in). False when the session cannot list them; the callback then never runs.
    virtual bool ListUserCreatedModsAsync(FOnListUserCreatedModsDelegate /*Callback*/) { return false; }
    // Optional: a mod's 320x180 logo downloaded into the session's own cache (the engine plug-in's
    // media call). False when the session has none; the callback then never runs.
    virtual bool GetModLogoAsync(FModioModID /*Mod*/, FOnGetModLogoDelegate /*Callback*/) { return false; }
};
}
