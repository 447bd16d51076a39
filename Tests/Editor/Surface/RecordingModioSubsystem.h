#pragma once

// A recording stand-in for the mod.io plug-in's UModioSubsystem, for the editor tests only: every
// call is written down, and every completion waits until RunPendingHandlers, as the plug-in's do.
// A test scripts an error for the next completion of a call, the progress the plug-in reports,
// the user's mods, and the end of an upload.

#include "EditorEngine/Modio/SurfaceModio.h"

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

// The backend of every UModioSubsystem while a recording test runs.
class FRecordingModioBackend final : public IModioSubsystemBackend
{
public:
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
	void ListUserCreatedModsAsync(FModioFilterParams Filter, FOnListUserCreatedModsDelegateFast Callback) override;
	// The recording plug-in has no media: every logo is missing.
	void GetModMediaAsync(FModioModID ModId, EModioLogoSize LogoSize, FOnGetMediaDelegateFast Callback) override;
};

namespace RecordingModio
{
struct FState
{
	// Call names in order, e.g. "InitializeAsync".
	std::vector<std::string> Calls;
	std::optional<FModioInitializeOptions> InitOptions;
	std::optional<EModioLogLevel> LogLevel;
	std::vector<std::string> Emails;
	std::vector<std::string> Codes;
	std::vector<int64> HandlesSubmitted;
	std::vector<FModioCreateModParams> CreateParams;
	std::vector<std::pair<int64, FModioEditModParams>> EditParams;
	std::vector<std::pair<int64, FModioCreateModFileParams>> ModFiles;

	// The next completion of the named call fails with this error.
	std::map<std::string, Modio::ErrorCode> ScriptedErrors;
	std::vector<std::function<void()>> Pending;
	FOnModManagementDelegateFast ModManagement;
	std::optional<Modio::ModProgressInfo> Progress;
	std::vector<FModioModInfo> UserMods;
	int64 NextNewModId = 0;
	int64 LastHandle = 0;
	int32 PumpCount = 0;
	bool bInitialized = false;
	// The plug-in keeps the login on disk: it survives an editor restart.
	bool bLoggedIn = false;
};

FState& Get();
// A fresh plug-in on a machine without a stored login, made the backend of every UModioSubsystem.
void Reset();

// Queues the Uploaded event of Mod, with Error when the upload failed.
void FinishUpload(int64 Mod, std::optional<Modio::ErrorCode> Error = std::nullopt);
int32 CountCalls(const std::string& Name);
}
