// The account page: the terms, the e-mail code, the login that fills the upload page at once, the
// logout; and what a modder sees when mod.io refuses.

#include "Journey/EditorJourneyFixture.h"

TEST_F(FEditorJourney, ALoginThroughTheAccountPageListsTheModdersModsAtOnce)
{
	LeavePluginInProject(NeonProps);
	StartEditor();
	EXPECT_TRUE(Window().Shows("Agree to Mod.io Terms")) << Window().PrintTree();
	EXPECT_TRUE(OpenPage("Upload Mod"));
	EXPECT_TRUE(Window().Shows("Agree to Mod.io Terms")) << "the account page stays until the modder is logged in";

	LogIn();

	// The upload page was chosen before the login, and shows the mods without waiting for the periodic refresh.
	ASSERT_TRUE(WaitForText("Neon Props", 2.0)) << Window().PrintTree();
	EXPECT_TRUE(Window().Shows("Select a Mod to Upload"));
	EXPECT_EQ(Window().Rows("SKelvorWorkshopUploadEntry").size(), 1u) << "only mods whose plug-in is in the project are listed";

	ASSERT_TRUE(OpenPage("Account"));
	ASSERT_TRUE(Press("Logout")) << Window().LastFailure();
	ASSERT_TRUE(WaitForText("Agree to Mod.io Terms")) << Window().PrintTree();
	EXPECT_FALSE(std::filesystem::exists(Editor.LoginFile())) << "logging out forgets the stored login";
}
