// `make editor-demo`: the modder's whole journey through the editor's own pages, on a sample project in
// a fresh folder, against a seeded mod.io sandbox on loopback. Each page is printed as the modder sees
// it, then the files the journey produced, so a reader can follow what the editor does.

#include "EditorEngine/Driver/StandInEditor.h"
#include "EditorEngine/Driver/WorkshopSteps.h"
#include "EditorEngine/SurfaceTestState.h"
#include "ModioService/ModioSandbox.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

namespace fs = std::filesystem;

namespace
{
constexpr const char* ApiKey = "0123456789abcdef0123456789abcdef";
constexpr const char* Modder = "modder@example.com";

void Show(FWidgetDriver& Window, const char* Title)
{
	std::printf("\n=== %s ===\n%s", Title, Window.PrintTree().c_str());
}

void ListFiles(const fs::path& Folder, const fs::path& Root)
{
	std::error_code Error;
	for (fs::recursive_directory_iterator It(Folder, Error), End; It != End; It.increment(Error))
	{
		if (It->is_regular_file(Error))
		{
			std::printf("  %s (%ju bytes)\n", fs::relative(It->path(), Root).generic_string().c_str(), static_cast<uintmax_t>(It->file_size(Error)));
		}
	}
}

int Fail(FWorkshopSteps& Steps, const char* Step)
{
	std::fprintf(stderr, "editor-demo: %s failed: %s\n%s", Step, Steps.LastFailure().c_str(), Steps.Window().PrintTree().c_str());
	return 1;
}
}

int main(int argc, char** argv)
{
	const fs::path Root = argc > 1 ? fs::absolute(argv[1]) : fs::temp_directory_path() / ("maptorn-editor-demo-" + std::to_string(::getpid()));
	fs::create_directories(Root);

	Maptorn::Sandbox::FModioSandbox Sandbox(Maptorn::Sandbox::FSandboxOptions{0, "", 1, ApiKey, true, true});
	std::string Error;
	if (!Sandbox.Start(Error))
	{
		std::fprintf(stderr, "editor-demo: the mod.io sandbox did not start: %s\n", Error.c_str());
		return 1;
	}
	FStandInEditorOptions Options;
	Options.Root = (Root / "Modder").string();
	Options.StandinBinary = MAPTORN_STANDIN_PATH;
	Options.ModioBaseUrl = Sandbox.GetBaseUrl();
	Options.ModioApiKey = ApiKey;
	// The game as Steam installs it, for the Steam Workshop page's stage.
	const fs::path GameInstall = Root / "SteamLibrary/steamapps/common/Kelvor";
	fs::create_directories(GameInstall);
	Options.GameInstallDir = GameInstall.string();
	FStandInEditor Editor;
	if (!Editor.Start(Options, Error))
	{
		std::fprintf(stderr, "editor-demo: the editor did not start: %s\n", Error.c_str());
		return 1;
	}
	FWorkshopSteps Steps(Editor);
	FWidgetDriver& Window = Editor.Window();
	std::printf("The stand-in editor opened %s and the \"Kelvor Workshop\" tab; mod.io is %s\n", Editor.Layout().ProjectFile.c_str(),
		Sandbox.GetBaseUrl().c_str());
	Show(Window, "Account page, before login");

	if (!Steps.LogIn(Modder, [&Sandbox](const std::string& Email) { return Sandbox.LastCodeFor(Email); }))
	{
		return Fail(Steps, "log in");
	}
	Show(Window, "Account page, logged in as modder@example.com");

	if (!Steps.CreateMod("Signal Tower", "A lit tower for night maps.", "Mod", Editor.Layout().ProjectDir + "Plugins/Maptorn/Resources/KelvorThumbnail.jpg")
		|| !Editor.RunUntil([&] { return Window.ShowsContaining("Created Mod "); }))
	{
		return Fail(Steps, "create a mod");
	}
	Show(Window, "Create Mod page, after \"Create Mod\"");

	if (!Steps.OpenPage("Upload Mod") || !Steps.WaitForText("Signal Tower") || !Steps.PressNear("Signal Tower", "Select Mod")
		|| !Window.Toggle("Windows") || !Window.Toggle("Android") || !Window.Type("Change note", "First release")
		|| !Steps.PressNear("Change note", "Upload Mod"))
	{
		return Fail(Steps, "start the upload");
	}
	Editor.RunUntil([&] { return !Window.TextStartingWith("Uploading ").empty(); }, 60.0);
	Show(Window, "Upload Mod page, uploading");
	if (!Editor.RunUntil([] { return !SurfaceTestState::Get().MessageBoxes.empty(); }, 120.0))
	{
		return Fail(Steps, "upload");
	}
	std::printf("\nMessage box \"%s\": %s\n", SurfaceTestState::Get().MessageBoxes.back().Caption.c_str(),
		SurfaceTestState::Get().MessageBoxes.back().Text.c_str());

	const fs::path StageDir = Root / "Stage";
	fs::create_directories(StageDir);
	SurfaceTestState::Get().FolderAnswers.push_back(StageDir.string());
	if (!Window.Toggle("Android") || !Steps.Press("Select Stage Directory") || !Steps.Press("Stage Mod")
		|| !Editor.RunUntil([&] { return SurfaceTestState::Get().MessageBoxes.size() > 1; }, 60.0))
	{
		return Fail(Steps, "stage");
	}
	Show(Window, "Upload Mod page, after \"Stage Mod\"");

	if (!Steps.OpenPage("Download Source Plugin") || !Window.Type("Search for Source Plugins", "Kit")
		|| !Steps.WaitForText("3 Results - Page 1/1") || !Steps.PressNear("Crate Kit", "Add to Project")
		|| !Steps.WaitForText("Status: Installed, Editor Restart Required", 60.0))
	{
		return Fail(Steps, "add a shared plug-in");
	}
	Show(Window, "Download Source Plugin page, after \"Add to Project\" on Crate Kit");

	// The project's own map: its definition from the Steam Workshop page, its level linked in the
	// definition's details, the depot build's manifest, then the map staged into the game install.
	const size_t BoxesBefore = SurfaceTestState::Get().MessageBoxes.size();
	if (!Steps.OpenPage("Steam Workshop") || !Window.Type("Map Name", "Old Harbour") || !Steps.Press("Create Map Definition"))
	{
		return Fail(Steps, "create the project map");
	}
	FWidgetDriver Details = Editor.OpenAssetDetails("/Game/CustomMaps/SVR_Old_Harbour/definition.definition");
	if (!Details.Type("Map", "/Game/CustomMaps/SVR_Old_Harbour/Harbour.Harbour", true) || !Details.Click("Save"))
	{
		std::fprintf(stderr, "editor-demo: linking the map failed: %s\n", Details.LastFailure().c_str());
		return 1;
	}
	std::printf("\n=== The definition's details panel, after linking the map ===\n%s", Details.PrintTree().c_str());
	if (!Window.Toggle("Android") || !Window.Type("Steam change note", "First build") || !Steps.Press("Deploy Platform Builds")
		|| !Steps.Press("Stage Map", 60.0) || !Editor.RunUntil([&] { return SurfaceTestState::Get().MessageBoxes.size() >= BoxesBefore + 2; }, 60.0))
	{
		return Fail(Steps, "deploy and stage the project map");
	}
	Show(Window, "Steam Workshop page, after \"Deploy Platform Builds\" and \"Stage Map\"");

	std::printf("\n=== The editor's toasts, oldest first ===\n");
	for (const FNotificationView& Toast : Window.Notifications())
	{
		const char* States[] = {"", "running", "done", "failed"};
		std::printf("  [%s] %s\n", States[Toast.State], Toast.Text.c_str());
	}

	std::printf("\n=== Files in the project's Plugins folder ===\n");
	ListFiles(fs::path(Editor.Layout().ProjectDir) / "Plugins", Editor.Layout().ProjectDir);
	std::printf("\n=== Files staged into %s ===\n", StageDir.string().c_str());
	ListFiles(StageDir, StageDir);
	std::printf("\n=== The depot build and the map staged into %s ===\n", GameInstall.string().c_str());
	ListFiles(fs::path(Editor.Layout().ProjectDir) / "Saved/Cooked/Depot", Editor.Layout().ProjectDir);
	ListFiles(GameInstall, GameInstall);
	std::printf("\n=== Mod files on mod.io ===\n");
	for (const Maptorn::Sandbox::FRecordedRequest& Request : Sandbox.RequestLog())
	{
		if (Request.Method == "POST" && Request.Path.find("/files") != std::string::npos)
		{
			std::printf("  %s %s (%zu bytes) -> HTTP %d\n", Request.Method.c_str(), Request.Path.c_str(), Request.BodySize, Request.Status);
		}
	}
	const int32 Shutdowns = Editor.Exit();
	std::printf("\nThe editor closed; the mod.io session was shut down %d time(s). Everything is in %s\n", Shutdowns, Root.string().c_str());
	return 0;
}
