// Cooking, pak building, packaging and the workshop deploy on a real sample project, running the
// real stand-in engine tools as child processes.

#include "Build/Cooker.h"
#include "Build/PakBuilder.h"
#include "Build/Packager.h"
#include "Build/WorkshopDeploy.h"
#include "Content/ModDefinitions.h"
#include "Module/MaptornModule.h"
#include "Support/ProjectSnapshot.h"
#include "Support/SampleProjectPlatform.h"
#include "Support/StandinEngine.h"
#include "Support/TempDir.h"

#include <gtest/gtest.h>

#include <filesystem>

using namespace Maptorn;
using namespace Maptorn::Testing;
namespace fs = std::filesystem;

namespace
{
class BuildPipeline : public ::testing::Test
{
protected:
    BuildPipeline()
        : Project(Temp.Dir() + "Sample", WithStandin())
        , Layout(Project.Layout)
        , Fakes(Project.Fakes)
        , Definitions(*Project.Definitions)
        , Platform(*Project.Platform)
    {
        Client = std::make_unique<FModioInterface>(Platform, FMaptornConfig{});
        Client->SelectedModId = "12";
        Client->StageDir = Temp.Dir() + "Game";
        fs::create_directories(Client->StageDir);
    }

    static Sample::FSampleOptions WithStandin()
    {
        Sample::FSampleOptions Options;
        Options.StandinBinary = MAPTORN_STANDIN_PATH;
        return Options;
    }

    void SetUp() override { ASSERT_TRUE(Layout.bCreated) << Layout.FailReason; }

    std::shared_ptr<FKelvorDefinition> MakeMapPlugin(const std::string& ModId, bool bWithMaps)
    {
        EXPECT_TRUE(CreateUGCPlugin(Platform, *Client, ModId, EModType::Map));
        std::shared_ptr<FKelvorDefinition> Definition = LoadModDefinition(Platform, ModId, EModType::Map);
        if (Definition && bWithMaps)
        {
            Definition->Map = "/UGC" + ModId + "/Maps/Arena.Arena";
            Definition->VeskoMap = "/UGC" + ModId + "/Maps/Arena_Quest.Arena_Quest";
            Definitions.SavePackage(*Definition);
        }
        return Definition;
    }

    FStandinEngine Standin() const { return FStandinEngine(Layout.EngineRoot); }

    std::string Saved(const std::string& Relative) const { return (fs::path(Layout.ProjectDir) / "Saved" / Relative).generic_string(); }

    FTempDir Temp;
    FSampleProjectPlatform Project;
    const Sample::FSampleLayout& Layout;
    FFakePlatform& Fakes;
    FJsonDefinitions& Definitions;
    FMaptornPlatform& Platform;
    std::unique_ptr<FModioInterface> Client;
    std::atomic<bool> bBusy = true;
};
}

TEST_F(BuildPipeline, TheCookRunsTheEditorWithTheProjectAndBothPlatforms)
{
    Standin().SetBehaviour("UnrealEditor", 0, false, "", "LogShaders: Warning: noisy but fine");
    FCooker Cooker(Platform);
    ASSERT_TRUE(Cooker.CookMap("/UGC12/Maps/Arena", false));

    const std::vector<FStandinEngine::FStandinCall> Calls = Standin().ReadRecord();
    ASSERT_EQ(Calls.size(), 1u);
    EXPECT_EQ(Calls[0].Tool, "UnrealEditor");
    const std::vector<std::string> ExpectedArgs = {Standin().ToolPath("UnrealEditor"), fs::path(Layout.ProjectFile).lexically_normal().generic_string(),
        "-run=cook", "-targetplatform=Android_ASTC+LinuxServer", "-UnVersioned", "-map=/UGC12/Maps/Arena"};
    EXPECT_EQ(Calls[0].Argv, ExpectedArgs);
    EXPECT_TRUE(fs::exists(Saved("Cooked/Android_ASTC/UGC12/Content/Maps/Arena.umap")));
    EXPECT_TRUE(fs::exists(Saved("Cooked/LinuxServer/UGC12/Content/Maps/Arena.umap")));

    Standin().SetBehaviour("UnrealEditor", 1, false);
    EXPECT_FALSE(Cooker.CookMap("/UGC12/Maps/Arena", true));
    Standin().MakeUnstartable("UnrealEditor");
    EXPECT_FALSE(Cooker.CookMap("/UGC12/Maps/Arena", true));
    EXPECT_TRUE(Fakes.Log.Has("MaptornLog", ELogVerbosity::Error, "Cook command failed:  "));
}

TEST_F(BuildPipeline, ThePakHoldsEveryCookedFileAndItsMetadataSitsBesideIt)
{
    MakeMapPlugin("12", true);
    ASSERT_TRUE(FCooker(Platform).CookMap("/UGC12/Maps/Arena", true));
    const std::string Output = Saved("Cooked/Workshop/Out");
    int64 PakSize = -1;
    ASSERT_TRUE(BuildPak(Platform, "12", "Windows", Output, PakSize));

    int64 CookedBytes = 0;
    for (const auto& Entry : fs::recursive_directory_iterator(Saved("Cooked/Windows/UGC12")))
    {
        CookedBytes += Entry.is_regular_file() ? static_cast<int64>(Entry.file_size()) : 0;
    }
    EXPECT_GT(CookedBytes, 0);
    EXPECT_EQ(PakSize, CookedBytes);
    EXPECT_EQ(fs::file_size(Output + "/UGC12.pak"), static_cast<std::uintmax_t>(CookedBytes));
    const std::string PakList = ReadTextFile(Saved("custommap_paklist.txt"));
    EXPECT_NE(PakList.find("\" \"../../../UGCCustomMaps/Content/Maps/Arena.umap\"\r\n"), std::string::npos) << PakList;
    EXPECT_EQ(ReadTextFile(Output + "/metadata.json"), "{\n\t\"EngineVersion\": \"5.1.1\",\n\t\"ModType\": 0\n}");
}

TEST_F(BuildPipeline, AnEmptyCookedFolderStillRunsThePakTool)
{
    MakeMapPlugin("12", true);
    int64 PakSize = -1;
    EXPECT_TRUE(BuildPak(Platform, "12", "Windows", Saved("Out"), PakSize));
    EXPECT_EQ(ReadTextFile(Saved("custommap_paklist.txt")), "");
    EXPECT_EQ(PakSize, 0);
    ASSERT_EQ(Standin().ReadRecord().size(), 1u);
    EXPECT_EQ(Standin().ReadRecord()[0].Tool, "UnrealPak");
}

TEST_F(BuildPipeline, StagingAndroidMovesThePakChunkIntoThePluginsDataFolder)
{
    MakeMapPlugin("12", true);
    Client->bBuildAndroid = true;
    Client->bStageOnly = true;
    // Outside Saved, the project is left as it was.
    const auto ProjectOutsideSaved = [this] {
        FProjectSnapshot Snapshot = SnapshotTree(Layout.ProjectDir);
        std::erase_if(Snapshot, [](const auto& Entry) { return Entry.first.rfind("Saved", 0) == 0; });
        return Snapshot;
    };
    const FProjectSnapshot ProjectBefore = ProjectOutsideSaved();

    bool bCompleted = false;
    FPackager(Platform, *Client, bBusy).RunPackagingTask([&] { bCompleted = true; });
    Fakes.Tasks.RunGameThread();

    ASSERT_TRUE(bCompleted);
    const std::vector<FStandinEngine::FStandinCall> Calls = Standin().ReadRecord();
    ASSERT_EQ(Calls.size(), 2u);
    EXPECT_EQ(Calls[0].Argv.at(1), "BuildCookRun");
    EXPECT_NE(std::find(Calls[0].Argv.begin(), Calls[0].Argv.end(), "-cookflavor=ASTC"), Calls[0].Argv.end());
    EXPECT_NE(std::find(Calls[1].Argv.begin(), Calls[1].Argv.end(), "-Server"), Calls[1].Argv.end());

    // Each Vesko step makes the data folder afresh, so it holds the last step's (the server's) chunk.
    const fs::path DataFolder = fs::path(Client->StageDir) / "UGC12Data";
    EXPECT_TRUE(fs::exists(DataFolder / "UGC12pakchunk0-LinuxServer.pak"));
    EXPECT_FALSE(fs::exists(DataFolder / "UGC12pakchunk0-Android_ASTC.pak"));
    EXPECT_NE(ReadTextFile(DataFolder / "metadata.json").find("\"Id\": \"UGC12\""), std::string::npos);
    EXPECT_FALSE(fs::exists(Saved("Cooked/Workshop/Temp")));
    EXPECT_FALSE(fs::exists(Saved("Cooked/Workshop/UGC12/Android_ASTC")));
    EXPECT_TRUE(Client->PendingPlatforms.empty());
    EXPECT_EQ(ProjectOutsideSaved(), ProjectBefore);
    // The automation tool's own log is echoed line by line.
    EXPECT_TRUE(std::any_of(Fakes.Log.Lines.begin(), Fakes.Log.Lines.end(), [](const FLogLine& Line) {
        return Line.Category == "LogTemp" && Line.Message.rfind("Parsing command line: ", 0) == 0;
    }));
}

TEST_F(BuildPipeline, UploadPackagesLandInTheQueuedFoldersAndAnExitCodeOfOneStillCounts)
{
    MakeMapPlugin("12", true);
    MakeMapPlugin("9", false);
    Standin().SetBehaviour("RunUAT", 1, false);
    Client->bBuildWindows = true;
    Client->bBuildAndroid = true;

    bool bCompleted = false;
    FPackager(Platform, *Client, bBusy).RunPackagingTask([&] { bCompleted = true; });
    Fakes.Tasks.RunGameThread();

    ASSERT_TRUE(bCompleted);
    ASSERT_EQ(Client->PendingPlatforms.size(), 4u);
    EXPECT_TRUE(fs::exists(Client->PendingPlatforms[0].second + "/UGC12/UGC12.pak"));
    EXPECT_TRUE(fs::exists(Client->PendingPlatforms[2].second + "/UGC12/UGC12pakchunk0-Android_ASTC.pak"));
    const std::vector<FStandinEngine::FStandinCall> Calls = Standin().ReadRecord();
    ASSERT_EQ(Calls.size(), 4u);
    const std::string& NeverCook = *std::find_if(Calls[0].Argv.begin(), Calls[0].Argv.end(),
        [](const std::string& Arg) { return Arg.rfind("-AdditionalCookerOptions=", 0) == 0; });
    EXPECT_NE(NeverCook.find("/modio+/UGC9"), std::string::npos) << NeverCook;
    EXPECT_EQ(NeverCook.find("+/UGC12"), std::string::npos) << NeverCook;
}

TEST_F(BuildPipeline, AnAutomationToolThatCannotStartLeavesNothingQueuedAndNotBusy)
{
    MakeMapPlugin("12", true);
    Standin().MakeUnstartable("RunUAT");
    Client->bBuildWindows = true;
    bool bCompleted = false;
    FPackager(Platform, *Client, bBusy).RunPackagingTask([&] { bCompleted = true; });
    Fakes.Tasks.RunGameThread();
    EXPECT_FALSE(bCompleted);
    EXPECT_FALSE(bBusy);
    EXPECT_TRUE(Client->PendingPlatforms.empty());
    ASSERT_EQ(Fakes.Dialogs.MessageBoxes.size(), 1u);
    EXPECT_EQ(Fakes.Dialogs.MessageBoxes[0].Caption, "Package");
}

TEST_F(BuildPipeline, TheDeployWritesTheManifestWhenNoPlatformIsChosen)
{
    FMaptornModule Module(Platform, FMaptornConfig{});
    Module.SVR = std::make_unique<FSVRInterface>(Platform);
    Module.SVR->MapName = "Old Harbour";
    ASSERT_TRUE(Module.SVR->CreateMapDefinition("Harbour"));
    Module.SVR->GetMapDefinition()->Version = 3;
    Module.bBusy = true;

    ASSERT_TRUE(RunWorkshopDeploy(Module));

    EXPECT_EQ(ReadTextFile(Saved("Cooked/Depot/SVR_Harbour/metadata.json")),
        "{\n\t\"Id\": \"SVR_Harbour\",\n\t\"Version\": 3,\n\t\"MapLabel\": \"Old Harbour\",\n\t\"IsCustomGameMode\": false,\n"
        "\t\"CustomGameModeLabel\": \"\",\n\t\"AndroidPakSize\": 0,\n\t\"WindowsPakSize\": 0,\n\t\"LinuxServerPakSize\": 0,\n"
        "\t\"VeskoLinuxServerPakSize\": 0,\n\t\"EngineVersion\": \"4.27\"\n}");
    EXPECT_FALSE(Module.bBusy);
    ASSERT_EQ(Fakes.Dialogs.MessageBoxes.size(), 1u);
    EXPECT_EQ(Fakes.Dialogs.MessageBoxes[0].Text, "Successfully built!");
    EXPECT_EQ(Fakes.Dialogs.MessageBoxes[0].Caption, "Kelvor Build");
    EXPECT_TRUE(Standin().ReadRecord().empty());
}

