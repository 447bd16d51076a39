#pragma once

// The stand-in editor's mod.io plug-in. UModioSubsystem's calls go to one backend: the recording
// backend of the adapter tests, or the REST backend that talks to a mod.io-compatible service. Either
// way every completion waits for RunPendingHandlers, as the plug-in's do.

#include "ModioSubsystem.h"

#include <cstdint>
#include <string>

// The SDK-side types the plug-in's records are made from; here only what the stand-in needs.
namespace Modio
{
class ErrorCode
{
public:
	int Value = 0;
	std::string Message;
};

struct ModCreationHandle
{
	int64 Value = 0;
};

class ModProgressInfo
{
public:
	int64 Mod = 0;
	EModioModProgressState State = EModioModProgressState::Initializing;
	uint64 Current = 0;
	uint64 Total = 0;
};
}

FModioModCreationHandle ToUnreal(const Modio::ModCreationHandle& In);
Modio::ModCreationHandle ToModio(const FModioModCreationHandle& In);
FModioModProgressInfo ToUnreal(const Modio::ModProgressInfo& In);

// What UModioSubsystem does, behind its non-virtual calls.
class IModioSubsystemBackend
{
public:
	virtual ~IModioSubsystemBackend() = default;
	virtual void InitializeAsync(const FModioInitializeOptions& Options, FOnErrorOnlyDelegateFast OnInitComplete) = 0;
	virtual void SetLogLevel(EModioLogLevel Level) = 0;
	virtual void RunPendingHandlers() = 0;
	virtual void ShutdownAsync(FOnErrorOnlyDelegateFast OnShutdownComplete) = 0;
	virtual FModioErrorCode EnableModManagement(FOnModManagementDelegateFast Callback) = 0;
	virtual TOptional<FModioModProgressInfo> QueryCurrentModUpdate() = 0;
	virtual FModioModCreationHandle GetModCreationHandle() = 0;
	virtual void SubmitNewModAsync(FModioModCreationHandle Handle, FModioCreateModParams Params, FOnSubmitNewModDelegateFast Callback) = 0;
	virtual void SubmitNewModFileForMod(FModioModID Mod, FModioCreateModFileParams Params) = 0;
	virtual void SubmitModChangesAsync(FModioModID Mod, FModioEditModParams Params, FOnGetModInfoDelegateFast Callback) = 0;
	virtual void RequestEmailAuthCodeAsync(const FModioEmailAddress& EmailAddress, FOnErrorOnlyDelegateFast Callback) = 0;
	virtual void AuthenticateUserEmailAsync(const FModioEmailAuthCode& AuthenticationCode, FOnErrorOnlyDelegateFast Callback) = 0;
	virtual void VerifyUserAuthenticationAsync(FOnErrorOnlyDelegateFast Callback) = 0;
	virtual void ClearUserDataAsync(FOnErrorOnlyDelegateFast Callback) = 0;
	virtual void ListUserCreatedModsAsync(FModioFilterParams Filter, FOnListUserCreatedModsDelegateFast Callback) = 0;
	virtual void GetModMediaAsync(FModioModID ModId, EModioLogoSize LogoSize, FOnGetMediaDelegateFast Callback) = 0;
};

// GEngine of the stand-in editor and the engine subsystems it holds.
namespace SurfaceEngine
{
// Null removes it: the engine then has no mod.io subsystem.
void SetModioSubsystem(UModioSubsystem* Subsystem);
// Null removes GEngine itself.
void SetEngineRunning(bool bRunning);
// What every UModioSubsystem forwards to; must be set while a subsystem is in use.
void SetModioBackend(IModioSubsystemBackend* Backend);
}
