// The `maptorn` binary run as a child process on real sample projects.

#include "ModioService/ModioSandbox.h"
#include "ModioService/SandboxZip.h"
#include "Platform/StandaloneProcesses.h"
#include "Platform/StoredLogin.h"
#include "Sample/SampleProject.h"
#include "Support/DefaultLogoBytes.h"
#include "Support/ProjectSnapshot.h"
#include "Support/StandinEngine.h"
#include "Support/TempDir.h"

#include <gtest/gtest.h>
#include <httplib.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdlib>
#include <filesystem>

using namespace Maptorn;
using namespace Maptorn::Testing;
namespace fs = std::filesystem;

namespace
{
struct FRun
{
    int32 ExitCode = -1;
    std::string Out;
    std::string Err;
};

std::string Quote(const std::string& Text)
{
    return "\"" + Text + "\"";
}

class MaptornCli : public ::testing::Test
{
protected:
    MaptornCli()
    {
        Sample::FSampleOptions Options;
        Options.StandinBinary = MAPTORN_STANDIN_PATH;
        Layout = Sample::CreateSampleLayout(Temp.Dir() + "Sample", Options);
        // Keep the developer's own configuration out of the tests.
        setenv("XDG_CONFIG_HOME", (Temp.Dir() + "config-home").c_str(), 1);
        for (const char* Name : {"MAPTORN_CONFIG", "MAPTORN_PROJECT", "MAPTORN_ENGINE", "MAPTORN_MODIO_GAME_ID", "MAPTORN_MODIO_API_KEY"})
        {
            unsetenv(Name);
        }
    }

    FRun Run(const std::string& Params)
    {
        FRun Result;
        FStandaloneProcesses Processes;
        EXPECT_TRUE(Processes.ExecProcess(MAPTORN_CLI_PATH, Params, Result.ExitCode, Result.Out, Result.Err));
        return Result;
    }

    // A mod named Name that shares its source plug-in, added the way a modder adds one.
    static void PublishSourceMod(Sandbox::FModioSandbox& Service, const std::string& Name)
    {
        httplib::Client Http("127.0.0.1", Service.GetPort());
        const httplib::Headers Bearer = {{"Authorization", "Bearer " + Service.IssueTokenFor("modder@example.com")}};
        const httplib::Result Mod = Http.Post("/v1/games/1/mods", Bearer, httplib::MultipartFormDataItems{
            {"logo", DefaultLogoBytes(), "logo.jpg", "image/jpeg"}, {"name", Name, "", ""},
            {"summary", "Odd name", "", ""}, {"tags[]", "Mod", "", ""}});
        ASSERT_TRUE(Mod && Mod->status == 201) << (Mod ? Mod->body : "no answer");
        const std::string ModId = std::to_string(nlohmann::json::parse(Mod->body)["id"].get<int64>());
        FTempDir Zip;
        ASSERT_TRUE(Sandbox::WriteZip(Zip.Dir() + "src.zip", {{"UGC" + ModId + "/UGC" + ModId + ".uplugin", "{}"}}));
        const httplib::Result File = Http.Post("/v1/games/1/mods/" + ModId + "/files", Bearer, httplib::MultipartFormDataItems{
            {"filedata", ReadTextFile(Zip.Path() / "src.zip"), "src.zip", "application/zip"}, {"version", "1.0.0", "", ""},
            {"platforms[]", "source", "", ""}});
        ASSERT_TRUE(File && File->status == 201) << (File ? File->body : "no answer");
    }

    std::string InSample() const
    {
        return "--project " + Quote(Layout.ProjectDir) + " --engine " + Quote(Layout.EngineRoot) + " --user-settings-dir " +
               Quote(Layout.UserSettingsDir) + " ";
    }

    struct FRefusal
    {
        std::string Params;
        int32 ExitCode;
        std::string Says;
    };

    // Each command exits with its code, says what is wrong, and the sample stays byte for byte as it was.
    void ExpectRefusedWithoutChanges(const std::vector<FRefusal>& Cases)
    {
        const FProjectSnapshot Before = SnapshotTree(Layout.Root);
        for (const FRefusal& Case : Cases)
        {
            const FRun Result = Run(InSample() + Case.Params);
            EXPECT_EQ(Result.ExitCode, Case.ExitCode) << Case.Params << "\n" << Result.Out << Result.Err;
            EXPECT_NE((Result.Out + Result.Err).find(Case.Says), std::string::npos) << Case.Params << "\n" << Result.Out << Result.Err;
        }
        EXPECT_EQ(SnapshotTree(Layout.Root), Before);
    }

    FTempDir Temp;
    FScopedWorkingDirectory WorkingDirectory{Temp.Path()};
    Sample::FSampleLayout Layout;
};
}

TEST_F(MaptornCli, TheProjectMapIsCreatedLinkedToItsLevelAndStagedIntoTheGameInstall)
{
    const FRun Result = Run(InSample() + "map create Harbour --name " + Quote("Old Harbour"));
    EXPECT_EQ(Result.ExitCode, 0) << Result.Out << Result.Err;
    const fs::path DefinitionFile = fs::path(Layout.ProjectDir) / "Content/CustomMaps/SVR_Harbour/definition.json";
    const std::string Definition = ReadTextFile(DefinitionFile);
    EXPECT_NE(Definition.find("\"Class\": \"Kelvor_Map\""), std::string::npos) << Definition;
    EXPECT_NE(Definition.find("\"Label\": \"SVR_Harbour\""), std::string::npos) << Definition;
    EXPECT_NE(Definition.find("\"DisplayName\": \"Old_Harbour\""), std::string::npos) << Definition;

    const FRun Linked = Run(InSample() + "map set --map /Game/CustomMaps/SVR_Harbour/Harbour.Harbour");
    EXPECT_EQ(Linked.ExitCode, 0) << Linked.Out << Linked.Err;
    EXPECT_NE(ReadTextFile(DefinitionFile).find("\"Map\": \"/Game/CustomMaps/SVR_Harbour/Harbour.Harbour\""), std::string::npos);

    const fs::path Game = Temp.Path() / "Kelvor";
    fs::create_directories(Game);
    const FRun Staged = Run(InSample() + "stage-steam --install-dir " + Quote(Game.generic_string()));
    EXPECT_EQ(Staged.ExitCode, 0) << Staged.Out << Staged.Err;
    EXPECT_TRUE(fs::is_regular_file(Game / "Kelvor/Content/CustomMaps/SVR_Harbour/Harbour.umap")) << Staged.Out;
}

TEST_F(MaptornCli, RefusedInputExitsNonZeroAndChangesNothingOnDisk)
{
    const std::vector<FRefusal> Cases = {
        {"map create Short --name ab", 1, "[Error] The map name needs to be 3-32 characters long"},
        {"map create Long --name " + std::string(33, 'x'), 1, "[Error] The map name needs to be 3-32 characters long"},
        {"map create " + Quote("bad/id") + " --name Forest", 2, "map id"},
        {"plugin create 12 --type vehicle", 2, "use map, mod or gamemode"},
        {"plugin create abc --type map", 2, "mod id must be the number"},
        {"plugin create 12", 2, "--type is required"},
        {"map set", 2, "Say what to set"},
        {"map set --map Harbour", 2, "is not an object path"},
        {"map set --map /Game/CustomMaps/SVR_Harbour/Harbour.Harbour", 1, "no map definition yet"},
    };
    ExpectRefusedWithoutChanges(Cases);
}

TEST_F(MaptornCli, WithoutAProjectTheToolSaysWhereItLookedAndChangesNothing)
{
    fs::create_directories(Temp.Path() / "Empty");
    FScopedWorkingDirectory InEmpty(Temp.Path() / "Empty");
    const FRun Found = Run("env");
    EXPECT_EQ(Found.ExitCode, 3);
    EXPECT_NE(Found.Err.find("No Unreal project found"), std::string::npos) << Found.Err;

    const FRun Named = Run("--project " + Quote(Temp.Dir() + "Nowhere") + " map create Bay --name Bay");
    EXPECT_EQ(Named.ExitCode, 3);
    EXPECT_NE(Named.Err.find("does not exist"), std::string::npos) << Named.Err;
    EXPECT_TRUE(fs::is_empty(Temp.Path() / "Empty"));
}

TEST_F(MaptornCli, PluginCreationNeedsTheEngineFolder)
{
    const FRun Result = Run("--project " + Quote(Layout.ProjectDir) + " plugin create 12 --type map");
    EXPECT_EQ(Result.ExitCode, 3);
    EXPECT_NE(Result.Err.find("--engine"), std::string::npos) << Result.Err;
    EXPECT_FALSE(fs::exists(fs::path(Layout.ProjectDir) / "Plugins/UGC12"));

    const FRun WrongEngine = Run("--project " + Quote(Layout.ProjectDir) + " --engine " + Quote(Temp.Dir()) + " plugin create 12 --type map");
    EXPECT_EQ(WrongEngine.ExitCode, 3);
    EXPECT_NE(WrongEngine.Err.find("Build.version"), std::string::npos) << WrongEngine.Err;
}

TEST_F(MaptornCli, ASecondPluginWithTheSameIdIsRefusedAndTheFirstIsKept)
{
    ASSERT_EQ(Run(InSample() + "plugin create 77 --type gamemode").ExitCode, 0);
    const FProjectSnapshot Before = SnapshotTree(Layout.Root);
    const FRun Again = Run(InSample() + "plugin create 77 --type map");
    EXPECT_EQ(Again.ExitCode, 1);
    EXPECT_NE(Again.Err.find("was not created; the project is unchanged"), std::string::npos) << Again.Err;
    EXPECT_EQ(SnapshotTree(Layout.Root), Before);

    const FRun Env = Run(InSample() + "env");
    EXPECT_NE(Env.Out.find("UGC77 (GameMode)"), std::string::npos) << Env.Out;
}

TEST_F(MaptornCli, EnvShowsWhereEachValueCameFromAndNeverTheApiKey)
{
    const std::string Secret = "0123456789abcdef0123456789abcdef";
    WriteTextFile(Temp.Path() / "maptorn.ini", "[maptorn]\nmodio_game_id=5\nsteam_app_id=42\nmodio_api_key=" + Secret + "\n");
    setenv("MAPTORN_MODIO_GAME_ID", "6", 1);
    const FRun Result = Run(InSample() + "--config " + Quote(Temp.Dir() + "maptorn.ini") + " env");
    unsetenv("MAPTORN_MODIO_GAME_ID");

    EXPECT_EQ(Result.ExitCode, 0) << Result.Err;
    EXPECT_NE(Result.Out.find("6  (environment MAPTORN_MODIO_GAME_ID)"), std::string::npos) << Result.Out;
    EXPECT_NE(Result.Out.find("42  (config file"), std::string::npos) << Result.Out;
    EXPECT_NE(Result.Out.find("https://g-6.modapi.io  (default)"), std::string::npos) << Result.Out;
    EXPECT_NE(Result.Out.find("set, 32 characters"), std::string::npos) << Result.Out;
    EXPECT_EQ((Result.Out + Result.Err).find(Secret), std::string::npos);

    const FRun Flag = Run(InSample() + "--modio-game-id 7 env");
    EXPECT_NE(Flag.Out.find("7  (--modio-game-id)"), std::string::npos) << Flag.Out;
}

TEST_F(MaptornCli, EnvReadsAndNeverWrites)
{
    const FProjectSnapshot Before = SnapshotTree(Layout.Root);
    const FRun Result = Run(InSample() + "env");
    EXPECT_EQ(Result.ExitCode, 0) << Result.Err;
    EXPECT_NE(Result.Out.find("s.EventDrivenLoaderEnabled is False"), std::string::npos) << Result.Out;
    EXPECT_EQ(SnapshotTree(Layout.Root), Before);
    EXPECT_FALSE(fs::exists(Temp.Path() / "steam_appid.txt"));
}

TEST_F(MaptornCli, MalformedConfigurationIsRefusedWithItsSource)
{
    const FRun Result = Run(InSample() + "--modio-game-id twelve env");
    EXPECT_EQ(Result.ExitCode, 3);
    EXPECT_NE(Result.Err.find("game id must be a number (from --modio-game-id)"), std::string::npos) << Result.Err;
}

TEST_F(MaptornCli, EveryCommandExplainsItself)
{
    for (const std::string Command : {"", "env ", "map ", "map create ", "plugin ", "plugin create ", "cook ", "pak ", "package ", "deploy ",
             "browse ", "mods ", "login ", "logout ", "whoami ", "create ", "upload ", "stage ", "stage-steam ", "deploy ", "plugin set ", "sample ", "demo ", "deps ", "deps add "})
    {
        const FRun Result = Run(Command + "--help");
        EXPECT_EQ(Result.ExitCode, 0) << Command;
        EXPECT_NE(Result.Out.find("Usage"), std::string::npos) << Command << Result.Out;
    }
}

TEST_F(MaptornCli, DemoRunsEveryStepAndCleansUp)
{
    const FRun Result = Run("demo --dir " + Quote(Temp.Dir() + "demo"));
    EXPECT_EQ(Result.ExitCode, 0) << Result.Out << Result.Err;
    EXPECT_NE(Result.Out.find("Demo: 12 of 12 steps succeeded."), std::string::npos) << Result.Out;
    EXPECT_FALSE(fs::exists(Temp.Path() / "demo"));
}

TEST_F(MaptornCli, BuildCommandsShowTheToolOutputAndReportTheOutcome)
{
    ASSERT_EQ(Run(InSample() + "plugin create 31 --type map").ExitCode, 0);

    const FRun Cook = Run(InSample() + "cook 31 --cookdir /UGC31/");
    EXPECT_EQ(Cook.ExitCode, 0) << Cook.Out << Cook.Err;
    EXPECT_NE(Cook.Out.find("  | "), std::string::npos) << "the editor's own lines are shown: " << Cook.Out;

    const FRun Pak = Run(InSample() + "pak 31 --platform Windows");
    EXPECT_EQ(Pak.ExitCode, 0) << Pak.Out << Pak.Err;
    EXPECT_TRUE(fs::exists(fs::path(Layout.ProjectDir) / "Saved/Cooked/Workshop/UGC31.pak"));

    const FRun Package = Run(InSample() + "package 31 --windows --android");
    EXPECT_EQ(Package.ExitCode, 0) << Package.Out << Package.Err;
    EXPECT_NE(Package.Out.find("Packaged platform 1 into "), std::string::npos) << Package.Out;
}

TEST_F(MaptornCli, BuildCommandsRefuseBadInputWithoutTouchingTheProject)
{
    const std::vector<FRefusal> Cases = {
        {"package 31", 2, "--windows, --android or both"},
        {"package 31 --windows --stage-dir " + Quote(Temp.Dir() + "NoGame"), 2, "does not exist"},
        {"cook 31 --map /Game/X", 2, "Name what to cook"},
        {"cook", 2, "Name what to cook"},
        {"pak x1", 2, "mod id must be the number"},
        {"deploy", 1, "no map definition yet"},
        {"cook 31", 1, "has no definition"},
    };
    ExpectRefusedWithoutChanges(Cases);
}

TEST_F(MaptornCli, AFailedPackageSaysWhichPlatformFailed)
{
    ASSERT_EQ(Run(InSample() + "plugin create 31 --type map").ExitCode, 0);
    FStandinEngine(Layout.EngineRoot).MakeUnstartable("RunUAT");
    const FRun Result = Run(InSample() + "package 31 --android");
    EXPECT_EQ(Result.ExitCode, 1);
    EXPECT_NE(Result.Out.find("[Package] ERROR: Failed to package for android, check output log for details"), std::string::npos) << Result.Out;
}

TEST_F(MaptornCli, BrowseAndModsTalkToModioAndShowTheBrowsersStatusWords)
{
    Sandbox::FModioSandbox Service(Sandbox::FSandboxOptions{0, "", 1, "0123456789abcdef0123456789abcdef", true, true});
    std::string Error;
    ASSERT_TRUE(Service.Start(Error)) << Error;
    WriteTextFile(Temp.Path() / "api-key", "0123456789abcdef0123456789abcdef\n");
    const std::string Modio = "--modio-url " + Service.GetBaseUrl() + "/v1 --modio-game-id 1 --modio-api-key-file " + Quote(Temp.Dir() + "api-key") + " ";

    const FRun Browse = Run(InSample() + Modio + "browse --sort name --search Kit");
    EXPECT_EQ(Browse.ExitCode, 0) << Browse.Out << Browse.Err;
    EXPECT_NE(Browse.Out.find("Crate Kit"), std::string::npos) << Browse.Out;
    EXPECT_NE(Browse.Out.find("Not Installed"), std::string::npos) << Browse.Out;
    EXPECT_LT(Browse.Out.find("Crate Kit"), Browse.Out.find("Lamp Kit")) << "sorted by name";

    const FRun Json = Run(InSample() + Modio + "browse --page 2 --json");
    EXPECT_EQ(Json.ExitCode, 0) << Json.Err;
    EXPECT_NE(Json.Out.find("\"page\": 2"), std::string::npos) << Json.Out;

    const FRun LoggedOut = Run(InSample() + Modio + "mods");
    EXPECT_EQ(LoggedOut.ExitCode, 1);
    EXPECT_NE(LoggedOut.Err.find("not logged in"), std::string::npos) << LoggedOut.Err;

    ASSERT_EQ(Run(InSample() + "plugin create 1001 --type map").ExitCode, 0);
    ASSERT_TRUE(SaveStoredLogin(StoredLoginPath(1), {Service.IssueTokenFor("modder@example.com"), 4102444800, Service.GetBaseUrl()}));
    const FRun Mods = Run(InSample() + Modio + "mods");
    EXPECT_EQ(Mods.ExitCode, 0) << Mods.Out << Mods.Err;
    EXPECT_NE(Mods.Out.find("Harbour Run"), std::string::npos) << Mods.Out;
    EXPECT_EQ(Mods.Out.find("Neon Props"), std::string::npos) << "no local plug-in, not offered";
}

// Against the strict service: every sort key is one mod.io documents, and a search is one
// encoded name filter, whatever characters it holds.
TEST_F(MaptornCli, EverySortWordReachesTheStrictService)
{
    Sandbox::FModioSandbox Service(Sandbox::FSandboxOptions{0, "", 1, "0123456789abcdef0123456789abcdef", true, true});
    std::string Error;
    ASSERT_TRUE(Service.Start(Error)) << Error;
    WriteTextFile(Temp.Path() / "api-key", "0123456789abcdef0123456789abcdef");
    const std::string Modio = "--modio-url " + Service.GetBaseUrl() + " --modio-game-id 1 --modio-api-key-file " + Quote(Temp.Dir() + "api-key") + " ";

    for (const char* Sort : {"popular", "subscribers", "newest", "updated", "rating", "downloads", "name", "-name", "installed"})
    {
        const FRun Browse = Run(InSample() + Modio + "browse --json --sort " + Sort);
        EXPECT_EQ(Browse.ExitCode, 0) << Sort << Browse.Err;
    }
}

TEST_F(MaptornCli, BrowseWithoutModioSettingsOrServiceSaysWhatToDo)
{
    const FRun Unset = Run(InSample() + "browse");
    EXPECT_EQ(Unset.ExitCode, 3);
    EXPECT_NE(Unset.Err.find("--modio-game-id"), std::string::npos) << Unset.Err;

    WriteTextFile(Temp.Path() / "api-key", "k\n");
    const FRun Unreachable = Run(InSample() + "--modio-url http://127.0.0.1:9 --modio-game-id 1 --modio-api-key-file " + Quote(Temp.Dir() + "api-key") + " browse");
    EXPECT_EQ(Unreachable.ExitCode, 1);
    EXPECT_NE(Unreachable.Err.find("could not be reached"), std::string::npos) << Unreachable.Err;

    const FRun NoKeyFile = Run(InSample() + "--modio-game-id 1 --modio-api-key-file " + Quote(Temp.Dir() + "missing") + " browse");
    EXPECT_EQ(NoKeyFile.ExitCode, 3) << NoKeyFile.Err;
    EXPECT_NE(NoKeyFile.Err.find("cannot be read"), std::string::npos) << NoKeyFile.Err;
}
