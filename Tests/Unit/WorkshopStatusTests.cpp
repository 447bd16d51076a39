#include "Module/MaptornModule.h"
#include "Support/WorkshopTest.h"
#include "Workshop/WorkshopController.h"
#include "Workshop/WorkshopTab.h"

#include <gtest/gtest.h>

using namespace Maptorn;
using namespace Maptorn::Testing;

namespace
{
class WorkshopStatus : public FWorkshopTest
{
};
}

TEST_F(WorkshopStatus, WithoutAClientEveryGetterHasItsOwnAnswer)
{
    Module.ModioClient.reset();

    // The throbbers, progress rows and upload/stage buttons hide; the idle controls show.
    EXPECT_EQ(Controller.IsLoggingIn(), EVisibility::Hidden);
    EXPECT_EQ(Controller.GetCreateModSpinnerVisibility(), EVisibility::Hidden);
    EXPECT_EQ(Controller.GetModUploadProgressVisibility(), EVisibility::Hidden);
    EXPECT_EQ(Controller.GetModDownloadVisibility(), EVisibility::Hidden);
    EXPECT_EQ(Controller.GetUploadModVisibility(), EVisibility::Hidden);
    EXPECT_EQ(Controller.GetStageModVisibility(), EVisibility::Hidden);
    EXPECT_EQ(Controller.IsModioBusy(), EVisibility::Visible);
    EXPECT_EQ(Controller.ShowLoginButton(), EVisibility::Visible);
    EXPECT_EQ(Controller.GetCreateModVisibility(), EVisibility::Visible);

    EXPECT_EQ(Controller.GetPageStatus(), "0 Results - Page 1/1");
    EXPECT_EQ(Controller.GetLoginIndex(), 0);
    EXPECT_FALSE(Controller.IsAuthenticated());
    EXPECT_FALSE(Controller.IsNextPageEnabled());
    EXPECT_FALSE(Controller.IsPreviousPageEnabled());
    EXPECT_FALSE(Controller.CanGatherSourceMods());
    EXPECT_FALSE(Controller.CanBuildSource());

    EXPECT_EQ(Controller.GetBuildProgress(), std::optional<float>(0.0f));
    EXPECT_EQ(Controller.GetDownloadProgress(), std::optional<float>(0.0f));
    EXPECT_EQ(Controller.GetBuildProgressText(), "");
    EXPECT_EQ(Controller.GetDownloadProgressText(), "");
    EXPECT_EQ(Controller.GetCreateModErrorText(), "");
    EXPECT_EQ(Controller.GetModId(), "");
    EXPECT_EQ(Controller.GetStageDirText(), "Select your Steam Kelvor install directory to stage a map");
    EXPECT_EQ(Controller.IsWindowsBuild(), ECheckBoxState::Unchecked);
    EXPECT_EQ(Controller.IsAndroidBuild(), ECheckBoxState::Unchecked);
    EXPECT_EQ(Controller.IsSharingSource(), ECheckBoxState::Unchecked);
}

TEST_F(WorkshopStatus, WithoutAClientHandlersAnswerHandledAndOnlyLogoutTouchesTheBoxes)
{
    Module.ModioClient.reset();
    Controller.OnEmailTextChanged("modder@example.com");
    Controller.OnAuthCodeChanged("12345");

    EXPECT_TRUE(Controller.AgreedToTerms());
    EXPECT_TRUE(Controller.SendAuthButtonClicked());
    EXPECT_TRUE(Controller.OnNextModPageClicked());
    EXPECT_TRUE(Controller.UploadModButtonClicked());
    EXPECT_TRUE(Controller.SelectLogoImage());
    EXPECT_TRUE(Fakes.Dialogs.MessageBoxes.empty());

    EXPECT_TRUE(Controller.LogoutButtonClicked());
    EXPECT_EQ(Controller.GetEmailBoxText(), "");
    EXPECT_EQ(Controller.GetAuthCodeBoxText(), "");
}

TEST(WorkshopWithoutModule, GettersAnswerWhileNoModuleIsLoaded)
{
    ASSERT_FALSE(FMaptornModule::IsAvailable());
    FWorkshopController Controller;
    EXPECT_EQ(Controller.GetTabIndex(), 0);
    EXPECT_EQ(Controller.GetBusyVisibility(), EVisibility::Collapsed);
    EXPECT_EQ(Controller.GetStandbyVisibility(), EVisibility::Visible);
    EXPECT_EQ(Controller.GetConfigState(), "v");
    EXPECT_EQ(Controller.GetPageStatus(), "0 Results - Page 1/1");
    EXPECT_TRUE(Controller.StageButtonClicked());
    EXPECT_TRUE(Controller.SubmitVeskoClicked());
    EXPECT_EQ(MakeWorkshopTabs()[1].GetActiveVisibility(), EVisibility::Collapsed);
}

TEST_F(WorkshopStatus, BusyIndicatorAndStandbyFollowTheBuildTasksAndTheSteamUpload)
{
    EXPECT_EQ(Controller.GetBusyVisibility(), EVisibility::Collapsed);
    EXPECT_EQ(Controller.GetStandbyVisibility(), EVisibility::Visible);

    Module.bBusy = true;
    EXPECT_EQ(Controller.GetBusyVisibility(), EVisibility::Visible);
    EXPECT_EQ(Controller.GetStandbyVisibility(), EVisibility::Collapsed);

    Module.bBusy = false;
    Module.SteamUGC = std::make_unique<FSteamWorkshopDeploy>();
    EXPECT_EQ(Controller.GetStandbyVisibility(), EVisibility::Visible);
    Module.SteamUGC->bUploadInProgress = true;
    EXPECT_EQ(Controller.GetStandbyVisibility(), EVisibility::Collapsed);
    EXPECT_EQ(Controller.GetBusyVisibility(), EVisibility::Collapsed);
}

TEST_F(WorkshopStatus, VersionTextIsThePluginDescriptorsVersionName)
{
    FPluginInfo Plugin;
    Plugin.Name = "Maptorn";
    Plugin.VersionName = "1.4.2";
    Fakes.Engine.Plugins.push_back(Plugin);
    EXPECT_EQ(Controller.GetConfigState(), "v1.4.2");
}
