#pragma once

#include "CoreMinimal.h"
#include "GenericPlatform/GenericPlatformMisc.h"

#include <functional>
#include <string>
#include <vector>

// What the tests set and read of the engine surface's working implementation: the paths the
// engine would answer, the log, message boxes, and the game thread's queue of posted work.
namespace SurfaceTestState
{
struct FLogLine
{
	std::string Category;
	ELogVerbosity::Type Verbosity;
	std::string Text;
};

struct FMessageBox
{
	std::string Caption;
	std::string Text;
};

struct FState
{
	std::string BaseDir = "/";
	std::string ProjectDir;
	std::string EngineDir;
	std::string UserSettingsDir;
	std::vector<FLogLine> Log;
	std::vector<FMessageBox> MessageBoxes;
	EAppReturnType::Type NextAnswer = EAppReturnType::Ok;
	std::vector<std::string> SavedPackages;
	std::vector<std::function<void()>> GameThreadQueue;
	std::vector<std::string> LaunchedUrls;
};

// One state for the process; Reset puts it back as a fresh editor would start.
FState& Get();
void Reset();

// Runs what was posted to the game thread, as the engine does between frames.
void PumpGameThread();
}
