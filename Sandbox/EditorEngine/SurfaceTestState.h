#pragma once

#include "CoreMinimal.h"
#include "GenericPlatform/GenericPlatformMisc.h"

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Maptorn
{
class FStandaloneEngine;
}

class SStandInNotificationItem;

// The stand-in editor's state: the paths the engine would answer, the project it has open, the log,
// message boxes and the answers a person gives to dialogs, and the game thread's queue of posted work.
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
	// The .uproject of the open project; empty when the editor runs without one.
	std::string ProjectFile;
	std::string EngineDir;
	std::string UserSettingsDir;
	// The open project's plug-ins and config files on disk, as the engine finds them; null without a project.
	std::shared_ptr<Maptorn::FStandaloneEngine> Project;
	std::vector<FLogLine> Log;
	std::vector<FMessageBox> MessageBoxes;
	// The answer to every message box, unless one is queued in MessageBoxAnswers.
	EAppReturnType::Type NextAnswer = EAppReturnType::Ok;
	std::deque<EAppReturnType::Type> MessageBoxAnswers;
	// What a person picks in the next folder or file dialog; nothing queued (or nullopt) cancels it.
	std::deque<std::optional<std::string>> FolderAnswers;
	std::deque<std::optional<std::string>> FileAnswers;
	std::vector<std::string> SavedPackages;
	std::vector<std::string> LaunchedUrls;
	// Every toast raised, oldest first, faded ones included.
	std::vector<TSharedRef<SStandInNotificationItem>> Notifications;
};

// One state for the process; Reset puts it back as a fresh editor would start.
FState& Get();
void Reset();

// Any thread: runs Work on the game thread at the next pump, as the engine's task graph does.
void PostToGameThread(std::function<void()> Work);
// Runs what was posted to the game thread, as the engine does between frames.
void PumpGameThread();

// Ends every HTTP transfer and connection of the editor, as the engine's HTTP module does at exit.
void CloseHttp();

// The editor's own config files (GEditorPerProjectIni, GEngineIni, GEditorIni) move into the open
// project's Saved/Config, layered over its Config/Default*.ini.
void UseProjectConfigFiles();
}
