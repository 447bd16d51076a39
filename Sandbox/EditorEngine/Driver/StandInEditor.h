#pragma once

// The stand-in editor opened on a sample project, as a modder starts theirs: the stand-in engine's
// tools installed, the workshop's settings in the project's config, the mod.io plug-in pointed at a
// service, the editor module loaded, and the "Kelvor Workshop" tab opened from the Tools menu. Frames
// pass in real time, so child processes and transfers move on while the editor waits.

#include "EditorEngine/Driver/WidgetDriver.h"
#include "EditorEngine/Modio/RestModioBackend.h"

#include "Sample/SampleProject.h"

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>

struct FStandInEditorOptions
{
	// Everything goes under here: the project, the engine, the user's settings, the working folder.
	std::string Root;
	std::string StandinBinary;
	std::string ModioBaseUrl;
	int64 ModioGameId = 1;
	std::string ModioApiKey;
	std::string SteamAppId = "1172620";
	// KelvorInstallDir in the user's settings; empty leaves the game to be found through Steam.
	std::string GameInstallDir;
};

class FStandInEditor
{
public:
	FStandInEditor() = default;
	~FStandInEditor();
	FStandInEditor(const FStandInEditor&) = delete;
	FStandInEditor& operator=(const FStandInEditor&) = delete;

	// Lays out the project and the engine, without starting the editor; false with OutError when a step fails.
	bool Prepare(const FStandInEditorOptions& Options, std::string& OutError);
	// Starts the editor on the prepared project and opens the workshop's tab.
	bool Launch(std::string& OutError);
	// Prepare, then Launch.
	bool Start(const FStandInEditorOptions& Options, std::string& OutError);
	// Starts the editor again on the same project, as after a restart (the login stays on disk).
	bool Restart(std::string& OutError);
	// Closes the editor: the engine's exit, the module's shutdown. Answers how often the mod.io
	// plug-in was asked to shut down during it.
	int32 Exit();
	bool IsRunning() const { return bRunning; }
	// The settings the next Launch writes and starts with.
	FStandInEditorOptions& NextOptions() { return Options; }

	// The open tab, as a person sees it.
	FWidgetDriver& Window() { return Driver; }
	// The details panel of an asset (ObjectPath "/Game/Folder/definition.definition"), opened as from the
	// content browser; a driver that finds nothing when no such asset is loaded.
	FWidgetDriver OpenAssetDetails(const std::string& ObjectPath);
	const Maptorn::Sample::FSampleLayout& Layout() const { return SampleLayout; }
	const std::string& LoginFile() const { return StoredLoginFile; }

	// One frame; its delta time is the real time since the last one, as the engine's is.
	void Frame();
	// Frames until Done holds, for at most TimeoutSeconds of real time.
	bool RunUntil(const std::function<bool()>& Done, double TimeoutSeconds = 30.0);
	// Frames for the given real time.
	void RunFor(double Seconds);

private:
	FStandInEditorOptions Options;
	Maptorn::Sample::FSampleLayout SampleLayout;
	std::string StoredLoginFile;
	std::filesystem::path PreviousWorkingDirectory;
	std::unique_ptr<FRestModioBackend> Modio;
	std::unique_ptr<UModioSubsystem> Subsystem;
	FWidgetDriver Driver;
	bool bRunning = false;
	std::chrono::steady_clock::time_point LastFrame = std::chrono::steady_clock::now();
};
