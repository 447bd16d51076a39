#pragma once

// The modder's journey through the editor's own pages: the stand-in editor started on a sample project
// with the stand-in engine tools, its mod.io plug-in talking to the sandbox service on loopback. Tests
// act only through the widgets and check what a modder would: texts on the page, files on disk, mods
// and files on the service.

#include "EditorEngine/Driver/StandInEditor.h"
#include "EditorEngine/Driver/WorkshopSteps.h"
#include "EditorEngine/SurfaceTestState.h"
#include "ModioService/ModioSandbox.h"
#include "Support/TempDir.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include <filesystem>
#include <string>

class FEditorJourney : public ::testing::Test
{
protected:
	static constexpr const char* ApiKey = "0123456789abcdef0123456789abcdef";
	static constexpr const char* Modder = "modder@example.com";
	// The modder's seeded content mod, whose plug-in an earlier machine left in the project.
	static constexpr int64 NeonProps = 1002;
	// A shared source plug-in of another modder's.
	static constexpr int64 CrateKit = 1006;

	FEditorJourney();
	void SetUp() override;

	// Starts the editor on the project SetUp laid out and opens the workshop's tab.
	void StartEditor();

	FWidgetDriver& Window() { return Editor.Window(); }
	// Frames until Done holds (20 s at most).
	bool WaitFor(const std::function<bool()>& Done, double Seconds = 20.0) { return Editor.RunUntil(Done, Seconds); }
	bool WaitForText(const std::string& Text, double Seconds = 20.0) { return Steps.WaitForText(Text, Seconds); }
	bool Press(const std::string& Label) { return Steps.Press(Label); }
	bool PressNear(const std::string& Anchor, const std::string& Label) { return Steps.PressNear(Anchor, Label); }
	bool OpenPage(const std::string& Label) { return Steps.OpenPage(Label); }

	// Terms, e-mail, the code from the modder's mailbox, login: all through the account page.
	void LogIn(const std::string& Email = Modder);
	// A content mod with the default logo, through the create page.
	void CreateMod(const std::string& Name, const std::string& Summary);
	// A plug-in UGC<Id> in the project's Plugins folder, as an earlier machine left it (before the editor starts).
	void LeavePluginInProject(int64 Id);

	// mod.io as anyone can read it: GET Path (with the API key) answered as JSON; null when refused.
	nlohmann::json ServiceGet(const std::string& Path) const;

	std::string ProjectDir() const { return Editor.Layout().ProjectDir; }
	const std::vector<SurfaceTestState::FMessageBox>& MessageBoxes() const { return SurfaceTestState::Get().MessageBoxes; }

	Maptorn::Testing::FTempDir Temp;
	Maptorn::Sandbox::FModioSandbox Sandbox;
	FStandInEditor Editor;
	FWorkshopSteps Steps{Editor};
	bool bSandboxStarted = false;
	std::string StartError;
};

using EditorJourney = FEditorJourney;
