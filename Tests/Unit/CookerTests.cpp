#include "Build/Cooker.h"
#include "Modio/ModioInterface.h"
#include "Support/FakePlatform.h"
#include "Support/TempDir.h"

#include <gtest/gtest.h>

using namespace Maptorn;
using namespace Maptorn::Testing;

namespace
{
class Cooking : public ::testing::Test
{
protected:
    Cooking()
        : Client(Fakes.Platform, FMaptornConfig{})
    {
        Fakes.Engine.Project = Temp.Dir() + "Proj/";
        Fakes.Engine.EngineRoot = "/ue/";
    }

    std::string ExpectedBase(const char* Platform) const
    {
        return "\"" + Temp.Dir() + "Proj/Proj.uproject\"  -run=cook -targetplatform=" + Platform + "+LinuxServer -UnVersioned";
    }

    FTempDir Temp;
    FFakePlatform Fakes;
    FModioInterface Client;
    FCooker Cooker{Fakes.Platform};
};
}

TEST_F(Cooking, TheMapCookRunsTheQuotedEditorWithTwoBlanksBeforeRunCook)
{
    ASSERT_TRUE(Cooker.CookMap("/Game/CustomMaps/SVR_Bay/Bay", false));
    ASSERT_EQ(Fakes.Processes.Calls.size(), 1u);
    EXPECT_EQ(Fakes.Processes.Calls[0].first, "\"/ue/Engine/Binaries/Win64/UnrealEditor.exe\"");
    EXPECT_EQ(Fakes.Processes.Calls[0].second, ExpectedBase("Android_ASTC") + " -map=/Game/CustomMaps/SVR_Bay/Bay");
    EXPECT_TRUE(Fakes.Log.Has("MaptornLog", ELogVerbosity::Log, "MapURL = /Game/CustomMaps/SVR_Bay/Bay"));
    EXPECT_TRUE(Fakes.Log.Has("MaptornLog", ELogVerbosity::Log, "Cook command: " + Fakes.Processes.Calls[0].second));
    EXPECT_TRUE(Fakes.Log.Has("LogTemp", ELogVerbosity::Log, "Enabling EventDrivenLoader: " + Temp.Dir() + "Proj/Config/DefaultEngine.ini"));
}

TEST_F(Cooking, OutputOnStandardErrorWithExitZeroIsSuccessAndNonZeroIsFailure)
{
    Fakes.Processes.StdErr = "LogInit: Warning: something noisy";
    EXPECT_TRUE(Cooker.CookMap("/Game/M", true));

    Fakes.Processes.ReturnCode = 3;
    Fakes.Processes.StdOut = "out";
    EXPECT_FALSE(Cooker.CookMap("/Game/M", true));
    EXPECT_TRUE(Fakes.Log.Has("MaptornLog", ELogVerbosity::Error,
        "Cook command returned non-zero value: 3 \nout LogInit: Warning: something noisy"));

    Fakes.Processes.bStartable = false;
    EXPECT_FALSE(Cooker.CookMap("/Game/M", true));
    EXPECT_TRUE(Fakes.Log.Has("MaptornLog", ELogVerbosity::Error, "Cook command failed:  "));
}

TEST_F(Cooking, TheDefinitionCookTakesThePlatformsMapAndLogsToLogTemp)
{
    Client.CurrentDefinition = std::make_shared<FKelvorDefinition>();
    Client.CurrentDefinition->Map = "/UGC12/Maps/Arena.Arena";
    Client.CurrentDefinition->VeskoMap = "/UGC12/Maps/Arena_Quest.Arena_Quest";

    ASSERT_TRUE(Cooker.CookDefinition(Client, true, ECookMode::LinkedMap, ""));
    ASSERT_TRUE(Cooker.CookDefinition(Client, false, ECookMode::LinkedMap, ""));
    EXPECT_EQ(Fakes.Processes.Calls[0].second, ExpectedBase("Windows") + " -map=/UGC12/Maps/Arena");
    EXPECT_EQ(Fakes.Processes.Calls[1].second, ExpectedBase("Android_ASTC") + " -map=/UGC12/Maps/Arena_Quest");
    EXPECT_TRUE(Fakes.Log.Has("LogTemp", ELogVerbosity::Log, "MapURL = /UGC12/Maps/Arena"));
    EXPECT_TRUE(Fakes.Log.Has("LogTemp", ELogVerbosity::Log, "Cook command: " + Fakes.Processes.Calls[0].second));
}

TEST_F(Cooking, AnUnlinkedMapIsShownAsACookErrorAndNothingRuns)
{
    Client.CurrentDefinition = std::make_shared<FKelvorDefinition>();
    Client.CurrentDefinition->Map = "/UGC12/Maps/Arena.Arena";
    EXPECT_FALSE(Cooker.CookDefinition(Client, false, ECookMode::LinkedMap, ""));
    ASSERT_EQ(Fakes.Dialogs.MessageBoxes.size(), 1u);
    EXPECT_EQ(Fakes.Dialogs.MessageBoxes[0].Text, "ERROR: Map is not linked in the definition");
    EXPECT_EQ(Fakes.Dialogs.MessageBoxes[0].Caption, "Cook Error");

    Client.CurrentDefinition.reset();
    EXPECT_FALSE(Cooker.CookDefinition(Client, true, ECookMode::LinkedMap, ""));
    EXPECT_TRUE(Fakes.Processes.Calls.empty());
}

TEST_F(Cooking, DirectoryModesCookTheGivenFolder)
{
    ASSERT_TRUE(Cooker.CookDefinition(Client, true, ECookMode::ContentDirectory, "/UGC12/"));
    ASSERT_TRUE(Cooker.CookDefinition(Client, true, ECookMode::ContentDirectoryAlt, "/UGC13/"));
    EXPECT_EQ(Fakes.Processes.Calls[0].second, ExpectedBase("Windows") + " -cookdir=/UGC12/");
    EXPECT_EQ(Fakes.Processes.Calls[1].second, ExpectedBase("Windows") + " -cookdir=/UGC13/");
    EXPECT_TRUE(Fakes.Log.Has("LogTemp", ELogVerbosity::Log, "CookDir = /UGC12/"));
}

TEST_F(Cooking, TheBuildMarkerHoldsTheInvertedDigit)
{
    Cooker.WriteBuildMarker(true);
    EXPECT_EQ(ReadTextFile(Temp.Path() / "Proj/Saved/WorkshopCook.txt"), "Build:0");
    Cooker.WriteBuildMarker(false);
    EXPECT_EQ(ReadTextFile(Temp.Path() / "Proj/Saved/WorkshopCook.txt"), "Build:1");
}
