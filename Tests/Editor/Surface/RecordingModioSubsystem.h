#pragma once

// A recording stand-in for the mod.io plug-in's UModioSubsystem, for the editor tests only: every
// call is written down, and every completion waits until RunPendingHandlers, as the plug-in's do.
// A test scripts an error for the next completion of a call, the progress the plug-in reports,
// the user's mods, and the end of an upload.

#include "ModioSubsystem.h"

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

// The SDK-side types the plug-in's records are made from; here only what the tests need.
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
// A fresh plug-in on a machine without a stored login.
void Reset();

// Queues the Uploaded event of Mod, with Error when the upload failed.
void FinishUpload(int64 Mod, std::optional<Modio::ErrorCode> Error = std::nullopt);
int32 CountCalls(const std::string& Name);
}

// GEngine for the editor tests, with the engine subsystems a test registers.
namespace SurfaceEngine
{
// Null removes it: the engine then has no mod.io subsystem.
void SetModioSubsystem(UModioSubsystem* Subsystem);
// Null removes GEngine itself.
void SetEngineRunning(bool bRunning);
}
