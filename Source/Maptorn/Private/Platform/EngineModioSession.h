#pragma once

#include "CoreMinimal.h"
#include "ModioSubsystem.h"
#include "Platform/ModioSessionPort.h"

#include <functional>
#include <map>
#include <memory>
#include <vector>

// The mod.io session port over the engine plug-in's UModioSubsystem, looked up through GEngine on
// every call. The plug-in runs its completions only inside its RunPendingHandlers; what this
// adapter answers itself (when the subsystem is absent) waits in its own queue, run by the same
// RunPendingHandlers, so the core sees one order either way.
class FEngineModioSession final : public Maptorn::IModioSession
{
public:
	FEngineModioSession() = default;
	~FEngineModioSession() override = default;
	FEngineModioSession(const FEngineModioSession&) = delete;
	FEngineModioSession& operator=(const FEngineModioSession&) = delete;

	void InitializeAsync(const Maptorn::FModioInitializeOptions& Options, Maptorn::FOnErrorOnlyDelegate OnInitComplete) override;
	void SetLogLevel(Maptorn::EModioLogLevel Level) override;
	Maptorn::FModioErrorCode EnableModManagement(Maptorn::FOnModManagementDelegate Callback) override;
	void VerifyUserAuthenticationAsync(Maptorn::FOnErrorOnlyDelegate Callback) override;
	void RequestEmailAuthCodeAsync(const std::string& EmailAddress, Maptorn::FOnErrorOnlyDelegate Callback) override;
	void AuthenticateUserEmailAsync(const std::string& AuthCode, Maptorn::FOnErrorOnlyDelegate Callback) override;
	void ClearUserDataAsync(Maptorn::FOnErrorOnlyDelegate Callback) override;
	// Pumps the handlers until the plug-in's shutdown has completed (the editor may be gone by the
	// next frame), for at most MaxShutdownPumps rounds.
	void ShutdownAsync(Maptorn::FOnErrorOnlyDelegate Callback) override;
	void RunPendingHandlers() override;

	std::optional<Maptorn::FModioModProgressInfo> QueryCurrentModUpdate() override;
	// The published plug-in hands out no token: always empty. The user's own mods come from
	// ListUserCreatedModsAsync instead.
	std::string GetAuthTokenAsString() override;
	bool ListUserCreatedModsAsync(Maptorn::FOnListUserCreatedModsDelegate Callback) override;
	// The plug-in's media call at the size the rows show (320x180).
	bool GetModLogoAsync(Maptorn::FModioModID Mod, Maptorn::FOnGetModLogoDelegate Callback) override;

	Maptorn::FModioModCreationHandle GetModCreationHandle() override;
	void SubmitNewModAsync(Maptorn::FModioModCreationHandle Handle, const Maptorn::FModioCreateModParams& Params,
		Maptorn::FOnSubmitNewModDelegate Callback) override;
	void SubmitModChangesAsync(Maptorn::FModioModID Mod, const Maptorn::FModioEditModParams& Params,
		Maptorn::FOnSubmitModChangesDelegate Callback) override;
	void SubmitNewModFileForMod(Maptorn::FModioModID Mod, const Maptorn::FModioCreateModFileParams& Params) override;

	static constexpr int32 MaxShutdownPumps = 500;
	static constexpr float ShutdownPumpSeconds = 0.01f;

private:
	static UModioSubsystem* FindSubsystem();
	// The answer to a call made while the engine has no mod.io subsystem.
	static Maptorn::FModioErrorCode NoSubsystemError();

	// A plug-in delegate that hands the converted result to Callback, unless this adapter is gone.
	FOnErrorOnlyDelegateFast ErrorOnly(Maptorn::FOnErrorOnlyDelegate Callback) const;
	// Runs Handler in the next RunPendingHandlers.
	void Post(std::function<void()> Handler);
	void FailLater(Maptorn::FOnErrorOnlyDelegate Callback);

	Maptorn::FOnModManagementDelegate ModManagementCallback;
	// The core's handles stand for the plug-in's opaque ones.
	std::map<int64, FModioModCreationHandle> CreationHandles;
	int64 LastCreationHandle = 0;
	std::vector<std::function<void()>> PendingHandlers;
	// Plug-in delegates hold a weak reference: once the adapter is gone they do nothing.
	std::shared_ptr<bool> Lifetime = std::make_shared<bool>(true);
};
