#include "Build/Packager.h"
#include "Modio/ModioInterface.h"
#include "Support/FakePlatform.h"
#include "Support/TempDir.h"

#include <gtest/gtest.h>

#include <filesystem>

using namespace Maptorn;
using namespace Maptorn::Testing;
namespace fs = std::filesystem;

namespace
{
FPluginInfo ContentPlugin(const std::string& Name, const std::string& Project)
{
    FPluginInfo Plugin;
    Plugin.Name = Name;
    Plugin.FriendlyName = Name;
    Plugin.bCanContainContent = true;
    Plugin.bEnabled = true;
    Plugin.BaseDir = Project + "Plugins/" + Name;
    Plugin.DescriptorFileName = Plugin.BaseDir + "/" + Name + ".uplugin";
    return Plugin;
}

class Packaging : public ::testing::Test
{
protected:
    Packaging()
        : Client(Fakes.Platform, FMaptornConfig{})
    {
        Fakes.Engine.Project = Temp.Dir() + "Proj/";
        Fakes.Engine.UserSettings = Temp.Dir() + "User/";
        Fakes.Engine.Plugins = {ContentPlugin("UGC12", Fakes.Engine.Project), ContentPlugin("UGC9", Fakes.Engine.Project)};
        FPluginInfo Maptorn = ContentPlugin("Maptorn", Fakes.Engine.Project);
        Maptorn.bCanContainContent = false;
        Fakes.Engine.Plugins.push_back(Maptorn);
        Definition = Fakes.Definitions.Add("/UGC12/definition", EModType::Map);
        Definition->Label = "UGC12";
        Definition->Map = "/UGC12/Maps/Arena.Arena";
        Client.SelectedModId = "12";
        Client.StageDir = Temp.Dir() + "Game";
        bBusy = true;
    }

    void RunTask()
    {
        FPackager(Fakes.Platform, Client, bBusy).RunPackagingTask([this] { bCompleted = true; });
        Fakes.Tasks.RunGameThread();
    }

    std::string Workshop() const { return Temp.Dir() + "Proj/Saved/Cooked/Workshop"; }

    FTempDir Temp;
    FFakePlatform Fakes;
    FModioInterface Client;
    std::shared_ptr<FKelvorDefinition> Definition;
    std::atomic<bool> bBusy = false;
    bool bCompleted = false;
};
}

TEST_F(Packaging, StagingForWindowsRunsOnlyTheClientIntoTheStageFolderAndQueuesNothing)
{
    Client.bBuildWindows = true;
    Client.bStageOnly = true;
    RunTask();
    ASSERT_EQ(Fakes.Processes.Calls.size(), 1u);
    EXPECT_EQ(Fakes.Processes.Calls[0].first, "/engine/Engine/Build/BatchFiles/RunUAT.bat");
    EXPECT_NE(Fakes.Processes.Calls[0].second.find("-StagingDirectory=\"" + Temp.Dir() + "Game\""), std::string::npos);
    EXPECT_NE(Fakes.Processes.Calls[0].second.find("-Stage=\"True\""), std::string::npos);
    EXPECT_TRUE(Client.PendingPlatforms.empty());
    EXPECT_TRUE(bCompleted);
}

TEST_F(Packaging, AndroidBuildsStageFromTheWorkshopFolderEvenWhenStaging)
{
    Client.bBuildAndroid = true;
    Client.bStageOnly = true;
    RunTask();
    ASSERT_EQ(Fakes.Processes.Calls.size(), 2u);
    for (const auto& Call : Fakes.Processes.Calls)
    {
        EXPECT_NE(Call.second.find("-StagingDirectory=\"" + Workshop() + "/UGC12\""), std::string::npos) << Call.second;
    }
    EXPECT_TRUE(Fakes.Processes.Calls[1].second.ends_with(" -Server -NoClient"));
    EXPECT_TRUE(Client.PendingPlatforms.empty());
}

TEST_F(Packaging, OtherContentPluginsAreNeverCookedAndAMaplessDefinitionCooksItsFolder)
{
    Definition->Map.clear();
    Client.bBuildWindows = true;
    Client.bStageOnly = true;
    RunTask();
    const std::string& Params = Fakes.Processes.Calls.at(0).second;
    EXPECT_NE(Params.find("/VRFramework+/modio+/UGC9 \"\""), std::string::npos) << "only the other content plug-in: " << Params;
    EXPECT_TRUE(Params.ends_with(" -CookDir=\"/UGC12/\"")) << Params;
}

TEST_F(Packaging, AMissingPluginStopsEverythingWithItsMessage)
{
    Client.SelectedModId = "404";
    Client.bBuildWindows = true;
    RunTask();
    ASSERT_EQ(Fakes.Dialogs.MessageBoxes.size(), 2u);
    EXPECT_EQ(Fakes.Dialogs.MessageBoxes[0].Text, "ERROR: cannot find plugin UGC404");
    EXPECT_EQ(Fakes.Dialogs.MessageBoxes[0].Caption, "Upload");
    EXPECT_EQ(Fakes.Dialogs.MessageBoxes[1].Text, "ERROR: Failed to package for windows, check output log for details");
    EXPECT_FALSE(bBusy);
    EXPECT_TRUE(Fakes.Processes.Calls.empty());
    EXPECT_FALSE(bCompleted);
}

TEST_F(Packaging, EveryFailedStepClearsBusyEmptiesTheQueueAndPostsNoCompletion)
{
    const std::vector<std::pair<std::size_t, std::string>> Cases = {
        {0, "ERROR: Failed to package for windows, check output log for details"},
        {1, "ERROR: Failed to package linux server, check output log for details"},
        {2, "ERROR: Failed to package for android, check output log for details"},
        {3, "ERROR: Failed to package linux server, check output log for details"},
    };
    for (const auto& [FailingCall, Message] : Cases)
    {
        Fakes.Processes.Calls.clear();
        Fakes.Dialogs.MessageBoxes.clear();
        Client.PendingPlatforms.clear();
        Fakes.Processes.UnstartableFromCall = FailingCall;
        Client.bBuildWindows = true;
        Client.bBuildAndroid = true;
        bBusy = true;
        bCompleted = false;
        RunTask();
        EXPECT_EQ(Fakes.Processes.Calls.size(), FailingCall + 1);
        ASSERT_EQ(Fakes.Dialogs.MessageBoxes.size(), 1u) << FailingCall;
        EXPECT_EQ(Fakes.Dialogs.MessageBoxes[0].Text, Message);
        EXPECT_EQ(Fakes.Dialogs.MessageBoxes[0].Caption, "Package");
        EXPECT_FALSE(bBusy);
        EXPECT_TRUE(Client.PendingPlatforms.empty());
        EXPECT_FALSE(bCompleted);
    }
}
