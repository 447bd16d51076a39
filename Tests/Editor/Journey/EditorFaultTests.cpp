// What a modder meets when something goes wrong: each failure is seen on the page (or in the editor's
// message box) and the buttons stay usable.

#include "Journey/EditorJourneyFixture.h"

namespace fs = std::filesystem;

using Maptorn::Sandbox::EFaultKind;
using Maptorn::Sandbox::FFault;

TEST_F(EditorJourney, AWrongApiKeyIsNamedOnTheAccountPage)
{
	Editor.NextOptions().ModioApiKey = "ffffffffffffffffffffffffffffffff";
	StartEditor();
	ASSERT_TRUE(Press("I Agree"));
	ASSERT_TRUE(Window().Type("Email Address", Modder));
	ASSERT_TRUE(Press("Send"));
	ASSERT_TRUE(WaitFor([this] { return !Window().TextStartingWith("The code could not be sent: ").empty(); })) << Window().PrintTree();
	EXPECT_FALSE(Window().ShowsContaining("ffffffff")) << "the key itself is never shown";
	EXPECT_EQ(Window().IsButtonEnabled("Send"), true);
}

TEST_F(EditorJourney, AWrongCodeIsNamedAndTheRightOneStillLogsIn)
{
	StartEditor();
	ASSERT_TRUE(Press("I Agree"));
	ASSERT_TRUE(Window().Type("Email Address", Modder));
	ASSERT_TRUE(Press("Send"));
	ASSERT_TRUE(WaitForText("Check your email for the mod.io auth code"));
	ASSERT_TRUE(Window().Type("Auth Code", "ZZZZZ"));
	ASSERT_TRUE(Press("Login"));
	ASSERT_TRUE(WaitFor([this] { return !Window().TextStartingWith("The login was refused: ").empty(); })) << Window().PrintTree();
	EXPECT_TRUE(Window().Shows("The login was refused: The security code is invalid. (HTTP 401, error_ref 11014)")) << Window().PrintTree();
	EXPECT_FALSE(std::filesystem::exists(Editor.LoginFile())) << "no login is kept";
	EXPECT_EQ(Window().BoxText("Auth Code"), "ZZZZZ") << "the code stays to be corrected";

	ASSERT_TRUE(Window().Type("Auth Code", Sandbox.LastCodeFor(Modder)));
	ASSERT_TRUE(Press("Login"));
	EXPECT_TRUE(WaitForText("Logged In")) << Window().PrintTree();
	EXPECT_TRUE(Window().TextStartingWith("The login was refused: ").empty()) << "a success clears the reason";
}

TEST_F(EditorJourney, ARefusedCatalogueIsNamedOnTheBrowserPageAndTheRowsStay)
{
	StartEditor();
	LogIn();
	ASSERT_TRUE(OpenPage("Download Source Plugin"));
	ASSERT_TRUE(WaitFor([this] { return Window().ShowsContaining("Results - Page 1/2"); })) << Window().PrintTree();

	// Refused, not merely busy: a 403 is not worth another try.
	Sandbox.InjectFault(FFault{"/v1/games/1/mods", "GET", 1, EFaultKind::Status, 403});
	ASSERT_TRUE(Press("Refresh.svg")) << Window().LastFailure();
	ASSERT_TRUE(WaitFor([this] { return !Window().TextStartingWith("The catalogue could not be loaded: ").empty(); }))
		<< Window().PrintTree();
	EXPECT_EQ(Window().Rows("SKelvorWorkshopSourcePluginEntry").size(), 20u);

	ASSERT_TRUE(Press("Refresh.svg")) << "the refresh button is usable again";
	EXPECT_TRUE(WaitFor([this] { return Window().TextStartingWith("The catalogue could not be loaded: ").empty(); }));
}

TEST_F(EditorJourney, AnUploadTheServiceRefusesEndsWithTheEditorsMessageAndTheButtonsBack)
{
	StartEditor();
	LogIn();
	CreateMod("Refused Tower", "Never uploaded.");
	ASSERT_TRUE(OpenPage("Upload Mod"));
	ASSERT_TRUE(WaitForText("Refused Tower")) << Window().PrintTree();

	Sandbox.InjectFault(FFault{"/v1/games/1/mods/", "POST", 100, EFaultKind::Status, 403});
	ASSERT_TRUE(PressNear("Refused Tower", "Select Mod"));
	ASSERT_TRUE(Window().Toggle("Windows"));
	ASSERT_TRUE(PressNear("Change note", "Upload Mod")) << Window().LastFailure();
	ASSERT_TRUE(WaitFor([this] { return !MessageBoxes().empty(); }, 60.0)) << Window().PrintTree();
	EXPECT_EQ(MessageBoxes().back().Text, "ERROR: Failed to upload mod, check output log for details");
	EXPECT_TRUE(WaitFor([this] { return Window().IsButtonEnabled("Select Mod").value_or(false); })) << Window().PrintTree();
	EXPECT_TRUE(Window().ShowsContaining("Upload Mod"));
	// The upload's own toast ends in the failure and fades; no second one is raised.
	ASSERT_EQ(Window().Notifications().size(), 1u);
	EXPECT_EQ(Window().Notifications()[0].Text, "Refused Tower: ERROR: Failed to upload mod, check output log for details");
	EXPECT_EQ(Window().Notifications()[0].State, SNotificationItem::CS_Fail);
	EXPECT_TRUE(Window().Notifications()[0].bFading);
}

TEST_F(EditorJourney, ADownloadCutShortEveryTimeInstallsNothingAndSaysSo)
{
	StartEditor();
	LogIn();
	ASSERT_TRUE(OpenPage("Download Source Plugin"));
	ASSERT_TRUE(Window().Type("Search for Source Plugins", "Crate Kit"));
	ASSERT_TRUE(WaitFor([this] { return Window().Shows("1 Results - Page 1/1"); })) << Window().PrintTree();

	// Cut on every try, resumed ones included.
	Sandbox.InjectFault(FFault{"/sandbox/files/", "GET", 100, EFaultKind::CloseMidBody});
	ASSERT_TRUE(PressNear("Crate Kit", "Add to Project"));
	ASSERT_TRUE(WaitFor([this] { return Window().IsButtonEnabled("Add to Project").value_or(false); }, 30.0)) << Window().PrintTree();
	EXPECT_TRUE(Window().Shows("Crate Kit was not added to the project: its download failed (the output log says why)")) << Window().PrintTree();
	EXPECT_TRUE(Window().Shows("Status: Not Installed"));
	ASSERT_EQ(Window().Notifications().size(), 1u);
	EXPECT_EQ(Window().Notifications()[0].Text, "Crate Kit was not added to the project: its download failed (the output log says why)");
	EXPECT_EQ(Window().Notifications()[0].State, SNotificationItem::CS_Fail);
	for (const fs::directory_entry& Entry : fs::directory_iterator(ProjectDir() + "Plugins"))
	{
		EXPECT_EQ(Entry.path().filename().string().rfind("UGC", 0), std::string::npos) << "nothing half-installed: " << Entry.path();
	}
}

TEST_F(EditorJourney, TheEditorRidesOutARateLimitAndACutDownloadAndRefusesATamperedArchive)
{
	StartEditor();
	LogIn();
	ASSERT_TRUE(OpenPage("Download Source Plugin"));
	ASSERT_TRUE(Window().Type("Search for Source Plugins", "Kit"));
	ASSERT_TRUE(WaitFor([this] { return Window().Shows("3 Results - Page 1/1"); })) << Window().PrintTree();

	// mod.io asks to wait a second: the refreshed page comes after it, with no reason shown.
	Sandbox.InjectFault(FFault{"/v1/games/1/mods", "GET", 1, EFaultKind::Status, 429});
	ASSERT_TRUE(Press("Refresh.svg"));
	ASSERT_TRUE(WaitFor([this] { return Window().IsButtonEnabled("Refresh.svg").value_or(false); }, 10.0));
	EXPECT_TRUE(Window().Shows("3 Results - Page 1/1"));
	EXPECT_TRUE(Window().TextStartingWith("The catalogue could not be loaded: ").empty()) << Window().PrintTree();

	// A download cut once goes on from where it stopped.
	FFault CutOnce{"/sandbox/files/", "GET", 1, EFaultKind::CloseAfter};
	CutOnce.CutAfterBytes = 100;
	Sandbox.InjectFault(CutOnce);
	ASSERT_TRUE(PressNear("Crate Kit", "Add to Project"));
	ASSERT_TRUE(WaitFor([this] { return Window().Shows("Status: Installed, Editor Restart Required"); }, 30.0)) << Window().PrintTree();
	const std::string Installed = ProjectDir() + "Plugins/UGC" + std::to_string(CrateKit) + "/";
	EXPECT_TRUE(fs::exists(Installed + "UGC" + std::to_string(CrateKit) + ".uplugin"));

	// An archive whose bytes are not the ones mod.io lists is refused, and nothing of it stays.
	Sandbox.InjectFault(FFault{"/v1/games/1/mods", "GET", 1, EFaultKind::WrongFilehash});
	ASSERT_TRUE(Press("Refresh.svg"));
	ASSERT_TRUE(WaitFor([this] { return Window().IsButtonEnabled("Refresh.svg").value_or(false); }, 10.0));
	ASSERT_TRUE(PressNear("Lamp Kit", "Add to Project"));
	ASSERT_TRUE(WaitFor([this] { return Window().ShowsContaining("Lamp Kit was not added to the project"); }, 30.0)) << Window().PrintTree();
	EXPECT_FALSE(fs::exists(ProjectDir() + "Plugins/UGC1005")) << "the tampered plug-in is not installed";
	EXPECT_TRUE(fs::exists(Installed)) << "the plug-in added before stays";
}
