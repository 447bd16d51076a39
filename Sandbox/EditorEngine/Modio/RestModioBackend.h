#pragma once

// The stand-in editor's mod.io plug-in for real: every call goes to a mod.io-compatible service over
// the standalone host's REST session and libcurl. The HTTP answers and the session's completions both
// wait for RunPendingHandlers, which the editor module pumps every frame, as the plug-in does.

#include "EditorEngine/Modio/SurfaceModio.h"

#include <memory>
#include <string>

namespace Maptorn
{
class FCurlHttp;
class FRestModioSession;
class FStandaloneTasks;
}

class FRestModioBackend final : public IModioSubsystemBackend
{
public:
	// BaseUrl is the service the plug-in talks to (the real one's comes from its own settings);
	// the login is kept in StoredLoginFile across restarts of the editor, as the plug-in keeps it.
	FRestModioBackend(std::string InBaseUrl, std::string StoredLoginFile);
	~FRestModioBackend() override;

	void InitializeAsync(const FModioInitializeOptions& Options, FOnErrorOnlyDelegateFast OnInitComplete) override;
	void SetLogLevel(EModioLogLevel Level) override;
	void RunPendingHandlers() override;
	void ShutdownAsync(FOnErrorOnlyDelegateFast OnShutdownComplete) override;
	FModioErrorCode EnableModManagement(FOnModManagementDelegateFast Callback) override;
	TOptional<FModioModProgressInfo> QueryCurrentModUpdate() override;
	FModioModCreationHandle GetModCreationHandle() override;
	void SubmitNewModAsync(FModioModCreationHandle Handle, FModioCreateModParams Params, FOnSubmitNewModDelegateFast Callback) override;
	void SubmitNewModFileForMod(FModioModID Mod, FModioCreateModFileParams Params) override;
	void SubmitModChangesAsync(FModioModID Mod, FModioEditModParams Params, FOnGetModInfoDelegateFast Callback) override;
	void RequestEmailAuthCodeAsync(const FModioEmailAddress& EmailAddress, FOnErrorOnlyDelegateFast Callback) override;
	void AuthenticateUserEmailAsync(const FModioEmailAuthCode& AuthenticationCode, FOnErrorOnlyDelegateFast Callback) override;
	void VerifyUserAuthenticationAsync(FOnErrorOnlyDelegateFast Callback) override;
	void ClearUserDataAsync(FOnErrorOnlyDelegateFast Callback) override;
	// The user's mods from /v1/me/mods with the session's token, as the plug-in lists them.
	void ListUserCreatedModsAsync(FModioFilterParams Filter, FOnListUserCreatedModsDelegateFast Callback) override;
	// The mod's logo as mod.io lists it, downloaded into the plug-in's cache beside the stored login
	// (a file already there is answered as it is).
	void GetModMediaAsync(FModioModID ModId, EModioLogoSize LogoSize, FOnGetMediaDelegateFast Callback) override;

	// How often the plug-in was asked to shut down since it was made.
	int32 GetShutdownCount() const { return ShutdownCount; }

private:
	void DownloadLogo(const std::string& Url, const std::string& CacheFile, FOnGetMediaDelegateFast Callback);

	int32 ShutdownCount = 0;
	std::string BaseUrl;
	std::string CacheDir;
	int64 GameId = 0;
	std::string ApiKey;
	std::unique_ptr<Maptorn::FStandaloneTasks> Tasks;
	std::unique_ptr<Maptorn::FCurlHttp> Http;
	std::unique_ptr<Maptorn::FRestModioSession> Session;
};
