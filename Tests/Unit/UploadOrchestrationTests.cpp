// The upload queue's rules: the guards, the version stamp, the per-platform files and the
// events that drive them, against an in-process session and task queues run by the test.

#include "Modio/ModioInterface.h"
#include "Support/CannedHttp.h"
#include "Support/FakePlatform.h"
#include "Support/TempDir.h"

#include <gtest/gtest.h>

#include <filesystem>

using namespace Maptorn;
using namespace Maptorn::Testing;
namespace fs = std::filesystem;

namespace
{
class UploadOrchestration : public ::testing::Test
{
protected:
    UploadOrchestration()
        : Client(Platform, FMaptornConfig{"", "https://g-7.modapi.io", 7, "KEY"})
    {
        FPluginInfo Plugin;
        Plugin.Name = "UGC42";
        Plugin.BaseDir = Temp.Dir() + "Plugins/UGC42";
        Fakes.Engine.Plugins.push_back(Plugin);
        fs::create_directories(Temp.Path() / "Plugins/UGC42/Saved/Logs");
        fs::create_directories(Temp.Path() / "Plugins/UGC42/Content");

        FSourceModInfo Row;
        Row.PluginName = "UGC42";
        Row.ModType = EModType::Mod;
        Client.OwnMods.push_back(Row);
        Client.OwnModVersions["42"] = 3;
        Definition = Fakes.Definitions.Add("/UGC42/definition", EModType::Mod);
        Client.bShareSource = true;
    }

    // Runs the packaging worker, then its completion on the game thread.
    void RunTasks()
    {
        Fakes.Tasks.RunBackground();
        Fakes.Tasks.RunGameThread();
    }

    void Event(FModioErrorCode Status = {}, FModioModID Id = 42)
    {
        Client.OnModManagementEvent(FModioModManagementEvent{Id, EModioModManagementEventType::Uploaded, Status});
    }

    int MessageBoxesReading(const std::string& Text) const
    {
        int Count = 0;
        for (const FMessageBoxCall& Box : Fakes.Dialogs.MessageBoxes)
        {
            Count += Box.Text == Text ? 1 : 0;
        }
        return Count;
    }

    FTempDir Temp;
    FFakePlatform Fakes;
    FCannedHttp Http;
    FMaptornPlatform Platform{Fakes.Log, Fakes.Dialogs, Fakes.Engine, Fakes.Definitions, Fakes.Processes, Fakes.Tasks, Http, Fakes.Archive, &Fakes.Session};
    FModioInterface Client;
    std::shared_ptr<FKelvorDefinition> Definition;
};
}

TEST_F(UploadOrchestration, GuardsRefuseWithTheirLinesAndTouchNothing)
{
    Client.bIsModioBusy = true;
    Client.UploadMod("42");
    EXPECT_TRUE(Fakes.Log.Has("LogTemp", ELogVerbosity::Warning, "Cannot upload mod, currently busy"));
    Client.bIsModioBusy = false;

    Client.UploadMod("43");
    EXPECT_TRUE(Fakes.Log.Has("LogTemp", ELogVerbosity::Error, "Cannot find mod 43"));

    Client.OwnModVersions.clear();
    Client.UploadMod("42");
    EXPECT_TRUE(Fakes.Log.Has("LogTemp", ELogVerbosity::Error, "Cannot upload a mod unless you own it"));

    EXPECT_EQ(Definition->Version, 0);
    EXPECT_FALSE(Client.bIsUploading);
    EXPECT_TRUE(Fakes.Session.Calls.empty());
    EXPECT_TRUE(Fakes.Dialogs.MessageBoxes.empty());
    EXPECT_TRUE(Fakes.Tasks.BackgroundQueue.empty());
}

TEST_F(UploadOrchestration, DefinitionProblemsShowAnUploadMessageBox)
{
    Client.OwnMods[0].ModType = EModType::Map;   // the definition is a content mod: no map definition
    Client.UploadMod("42");
    ASSERT_EQ(Fakes.Dialogs.MessageBoxes.size(), 1u);
    EXPECT_EQ(Fakes.Dialogs.MessageBoxes[0].Text, "ERROR: cannot find map definition file");
    EXPECT_EQ(Fakes.Dialogs.MessageBoxes[0].Caption, "Upload");
    EXPECT_TRUE(Fakes.Log.Has("LogTemp", ELogVerbosity::Error, "Failed to find map definition file"));

    Fakes.Definitions.Add("/UGC42/definition", EModType::GameMode);
    Client.OwnMods[0].ModType = EModType::GameMode;
    Client.UploadMod("42");
    ASSERT_EQ(Fakes.Dialogs.MessageBoxes.size(), 2u);
    EXPECT_EQ(Fakes.Dialogs.MessageBoxes[1].Text, "ERROR: GameMode definition did not contain a gamelogic to upload");
    EXPECT_FALSE(Client.bIsModioBusy);
}

TEST_F(UploadOrchestration, ASharedSourceIsStampedUploadedWithoutItsSavedFolderAndCompletesOnce)
{
    Client.UploadChangelog = "Brighter lamps";
    Client.UploadMod("42");
    EXPECT_EQ(Definition->Version, 4);
    EXPECT_EQ(Fakes.Definitions.SavedPackages, std::vector<std::string>{"/UGC42/definition"});
    EXPECT_EQ(Client.OwnModVersions["42"], 4);
    ASSERT_EQ(Fakes.Session.EditModParams.size(), 1u);
    EXPECT_NE(Fakes.Session.EditModParams[0].MetadataBlob->find("\"VersionUUID\": 4"), std::string::npos);
    EXPECT_TRUE(Client.bIsModioBusy && Client.bIsUploading);

    RunTasks();
    ASSERT_EQ(Fakes.Session.ModFileParams.size(), 1u);
    const FModioCreateModFileParams& File = Fakes.Session.ModFileParams[0];
    EXPECT_EQ(File.RootDirectory, Temp.Dir() + "Plugins/UGC42");
    EXPECT_EQ(File.ModfilePlatforms, std::vector<EModioModfilePlatform>{EModioModfilePlatform::Source});
    EXPECT_EQ(File.VersionString, "4");
    EXPECT_EQ(File.Changelog, "Brighter lamps");
    EXPECT_FALSE(fs::exists(Temp.Path() / "Plugins/UGC42/Saved"));
    EXPECT_TRUE(fs::exists(Temp.Path() / "Plugins/UGC42/Content"));
    EXPECT_EQ(Client.StepsTotal, 1);

    Event({}, 99);  // another mod's event
    Client.OnModManagementEvent(FModioModManagementEvent{42, EModioModManagementEventType::Installed, {}});
    EXPECT_TRUE(Client.bIsUploading);
    Event();
    EXPECT_FALSE(Client.bIsModioBusy);
    EXPECT_FALSE(Client.bIsUploading);
    EXPECT_EQ(MessageBoxesReading("Upload Complete"), 1);
    Event();
    EXPECT_EQ(MessageBoxesReading("Upload Complete"), 1) << "a late duplicate event changes nothing";
}

TEST_F(UploadOrchestration, ALateRequestFailureIsToleratedOnlyAfterEveryByteWentOut)
{
    Client.bIsModioBusy = Client.bIsUploading = true;
    Client.UploadModId = "42";
    Client.PendingPlatforms = {{11, "/p"}};
    Client.CurrentPlatform = 11;
    Client.UploadProgress = 1.0f;
    Event({ModioErrorValue::HttpRequestFailed, "timed out"});
    EXPECT_TRUE(Fakes.Log.Has("LogTemp", ELogVerbosity::Warning,
        "Failed to upload 42 mod, it should have finished uploading ... skipping error 20489 timed out"));
    EXPECT_EQ(MessageBoxesReading("Upload Complete"), 1);

    Client.bIsModioBusy = Client.bIsUploading = true;
    Client.PendingPlatforms = {{0, "/w"}, {11, "/p"}};
    Client.CurrentPlatform = 0;
    Client.UploadProgress = 0.5f;
    Event({ModioErrorValue::HttpRequestFailed, "timed out"});
    EXPECT_EQ(MessageBoxesReading("ERROR: Failed to upload mod, check output log for details"), 1);
    EXPECT_TRUE(Fakes.Log.Has("LogTemp", ELogVerbosity::Error, "Failed to upload mod 20489 timed out"));
    EXPECT_FALSE(Client.bIsModioBusy);
    EXPECT_FALSE(Client.bIsUploading);
    EXPECT_TRUE(Client.PendingPlatforms.empty());
}

TEST_F(UploadOrchestration, AFailedPackagingStepReleasesTheClient)
{
    Client.bBuildWindows = true;
    Fakes.Engine.Plugins.clear();   // the plug-in to package is gone
    Client.UploadMod("42");
    RunTasks();
    EXPECT_FALSE(Client.bIsModioBusy);
    EXPECT_FALSE(Client.bIsUploading);
    EXPECT_TRUE(Fakes.Session.ModFileParams.empty());
}

