#pragma once

// The stand-in editor as a whole: a project opened from disk, modules loaded and started as the
// editor starts them, tabs invoked from the Tools menu, frames that tick every editor object and run
// what was posted to the game thread, and the engine's exit.

#include "CoreMinimal.h"
#include "Modules/ModuleInterface.h"
#include "Textures/SlateIcon.h"
#include "Widgets/Docking/SDockTab.h"

#include <optional>
#include <string>

namespace SurfaceEditor
{
struct FProjectPaths
{
	std::string ProjectFile;     // the .uproject
	std::string EngineRoot;      // the folder holding Engine/
	std::string UserSettingsDir; // the user's settings folder (%LOCALAPPDATA% on Windows), ends with "/"
};

// Opens the project: its folders, its plug-ins as the plug-in manager finds them, and its config
// files, read and written on disk (the user's settings in Saved/Config/<Platform>Editor over the
// project's Config/Default*.ini, as the engine layers them).
void OpenProject(const FProjectPaths& Paths);

// Loads and starts the editor module, once; later calls answer the loaded one.
IModuleInterface& LoadEditorModule();

struct FTabInfo
{
	FText DisplayName;
	bool bInToolsCategory = false;
	FSlateIcon Icon;
};
// What the Tools menu shows for a registered nomad tab; nothing when none is registered under TabId.
std::optional<FTabInfo> FindTab(const FName& TabId);
// Opens the tab as a click in the Tools menu does; null when none is registered under TabId.
TSharedPtr<SDockTab> InvokeTab(const FName& TabId);
// Closes an open tab: the window it spawned is gone.
void CloseTab(const FName& TabId);

// The details panel of an asset, as double-clicking it in the content browser opens it: one row per
// property with its name and a box; pressing Enter in a box sets the property and marks the package
// dirty; "Save" writes the package. Null when no such asset is loaded.
TSharedPtr<SWidget> OpenAssetDetails(const FString& ObjectPath);

// One editor frame: every tickable editor object ticks, then what was posted to the game thread runs.
void Frame(float DeltaSeconds);

// The engine's exit: the pre-exit delegates, then the loaded module's shutdown and its deletion.
void Exit();
}
