// The whole publishing workflow as the editor runs it: the module and its mod.io client over the
// REST session, talking to the sandbox service on loopback, packaging with the stand-in engine's
// tools run as child processes, on a sample project on disk.

#include "Content/ModDefinitions.h"
#include "Module/MaptornModule.h"
#include "Platform/CurlHttp.h"
#include "Platform/RestModioSession.h"
#include "Platform/StandaloneTasks.h"
#include "Platform/StoredLogin.h"
#include "Platform/ZipArchive.h"
#include "ModioService/ModioSandbox.h"
#include "Support/SampleProjectPlatform.h"
#include "Support/SandboxAccounts.h"
#include "Support/TempDir.h"

#include <gtest/gtest.h>
#include <httplib.h>
#include <nlohmann/json.hpp>

#include <chrono>
#include <set>
#include <filesystem>
#include <thread>

using namespace Maptorn;
using namespace Maptorn::Testing;
namespace fs = std::filesystem;

namespace
{
constexpr const char* Modder = "modder@example.com";

class PublishingWorkflow : public ::testing::Test
{
protected:
    PublishingWorkflow()
        : WorkingDirectory(Temp.Path())
        , Project(Temp.Dir() + "Sample", WithStandin())
        , Sandbox(Sandbox::FSandboxOptions{0, "", 1, SandboxApiKey, true, true})
    {
        setenv("XDG_CONFIG_HOME", (Temp.Dir() + "config-home").c_str(), 1);
        bSandboxStarted = Sandbox.Start(StartError);
    }

    ~PublishingWorkflow() override { StopModule(); }

    static Sample::FSampleOptions WithStandin()
    {
        Sample::FSampleOptions Options;
        Options.StandinBinary = MAPTORN_STANDIN_PATH;
        return Options;
    }

    void SetUp() override
    {
        ASSERT_TRUE(Project.Layout.bCreated) << Project.Layout.FailReason;
        ASSERT_TRUE(bSandboxStarted) << StartError;
    }

    // Starts the module as the editor does, with a fresh session that finds the stored login.
    void StartModule()
    {
        Session = std::make_unique<FRestModioSession>(Http, StoredLoginPath(1));
        Platform = std::make_unique<FMaptornPlatform>(FMaptornPlatform{Project.Fakes.Log, Project.Fakes.Dialogs, *Project.Engine,
            *Project.Definitions, Project.Processes, Tasks, Http, Archive, Session.get()});
        Module = std::make_unique<FMaptornModule>(*Platform, FMaptornConfig{"", Sandbox.GetBaseUrl(), 1, SandboxApiKey});
        Module->StartupModule();
        Tick([] { return true; });
        WaitForModio();
        Tick([this] { return !Client().bOwnModRefreshBusy && !Client().bSourceQueryBusy; });
    }

    void StopModule()
    {
        if (Module)
        {
            Module->ShutdownModule();
            Session->RunPendingHandlers();
            Module.reset();
            Session.reset();
        }
    }

    FModioInterface& Client() { return *Module->ModioClient; }

    // Frames with their real duration, as the editor ticks, so pauses last what they say.
    void Tick(const std::function<bool()>& Done)
    {
        auto Last = std::chrono::steady_clock::now();
        for (int Frame = 0; Frame < 60 * 120; ++Frame)
        {
            Tasks.PumpGameThread();
            const auto Now = std::chrono::steady_clock::now();
            Module->Tick(std::chrono::duration<float>(Now - Last).count());
            Last = Now;
            if (Done())
            {
                return;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        FAIL() << "the workflow did not finish";
    }

    void WaitForModio() { Tick([this] { return !Client().bIsModioBusy; }); }

    void LogIn()
    {
        Client().EmailAddress = Modder;
        Client().RequestEmailCode();
        WaitForModio();
        ASSERT_EQ(Client().LoginIndex, 2);
        Client().AuthCode = Sandbox.LastCodeFor(Modder);
        Client().Login();
        WaitForModio();
        ASSERT_TRUE(Client().bIsLoggedIn);
    }

    // Creates a mod of the type on mod.io and locally, and answers its id.
    std::string CreateMod(EModType Type)
    {
        Client().NewModName = "Workflow " + std::string(ModTypeWord(Type));
        Client().NewModSummary = "Made by the publishing workflow test";
        Client().NewModType = Type;
        Client().CreateMod();
        WaitForModio();
        const std::string Status = Client().StatusText;
        EXPECT_EQ(Status.rfind("Created Mod ", 0), 0u) << Status;
        return Status.substr(std::min<std::size_t>(12, Status.size()));
    }

    void RefreshOwnMods()
    {
        Client().RefreshOwnMods();
        Tick([this] { return !Client().bOwnModRefreshBusy; });
    }

    void UploadAndWait(const std::string& ModId)
    {
        Client().SelectedModId = ModId;
        Client().UploadMod(ModId);
        ASSERT_TRUE(Client().bIsUploading);
        Tick([this] { return !Client().bIsUploading; });
    }

    nlohmann::json Get(const std::string& Path) const
    {
        httplib::Client Service("127.0.0.1", Sandbox.GetPort());
        const auto Answer = Service.Get(Path + (Path.find('?') == std::string::npos ? "?" : "&") + "api_key=" + std::string(SandboxApiKey));
        return Answer ? nlohmann::json::parse(Answer->body, nullptr, false) : nlohmann::json();
    }

    nlohmann::json ModFiles(const std::string& ModId) const { return Get("/v1/games/1/mods/" + ModId + "/files")["data"]; }

    int MessageBoxesReading(const std::string& Text) const
    {
        int Count = 0;
        for (const FMessageBoxCall& Box : Project.Fakes.Dialogs.MessageBoxes)
        {
            Count += Box.Text == Text ? 1 : 0;
        }
        return Count;
    }

    FTempDir Temp;
    FScopedWorkingDirectory WorkingDirectory;
    FSampleProjectPlatform Project;
    Sandbox::FModioSandbox Sandbox;
    bool bSandboxStarted = false;
    std::string StartError;
    FStandaloneTasks Tasks;
    FCurlHttp Http{Tasks, FCurlHttpOptions{10, 2, ""}};
    FZipArchive Archive;
    std::unique_ptr<FRestModioSession> Session;
    std::unique_ptr<FMaptornPlatform> Platform;
    std::unique_ptr<FMaptornModule> Module;
};
}

TEST_F(PublishingWorkflow, AnEmailLoginSurvivesARestartOfTheModule)
{
    StartModule();
    EXPECT_FALSE(Client().bIsLoggedIn);
    EXPECT_FALSE(Client().bSourceModsQueried);
    LogIn();
    EXPECT_TRUE(Client().EmailAddress.empty() && Client().AuthCode.empty());
    EXPECT_TRUE(Client().bSourceModsQueried);

    StopModule();
    Sandbox.ClearRequestLog();
    StartModule();
    EXPECT_TRUE(Client().bIsLoggedIn) << "the stored login is verified at start-up";
    EXPECT_FALSE(Client().bIsModioBusy);
    int OwnModReads = 0;
    for (const Sandbox::FRecordedRequest& Request : Sandbox.RequestLog())
    {
        OwnModReads += Request.Path == "/v1/me/mods" && Request.Status == 200 ? 1 : 0;
    }
    EXPECT_EQ(OwnModReads, 1) << "own mods are refreshed right after the verification";

    Client().Logout();
    WaitForModio();
    EXPECT_FALSE(Client().bIsLoggedIn);
    EXPECT_FALSE(fs::exists(StoredLoginPath(1)));
}

TEST_F(PublishingWorkflow, AContentModGoesUpForEveryPlatformAndItsSourceOneFileAfterAnother)
{
    StartModule();
    LogIn();
    const std::string ModId = CreateMod(EModType::Mod);
    RefreshOwnMods();
    ASSERT_TRUE(Client().FindOwnMod(ModId));
    fs::create_directories(Project.InProject("Plugins/UGC" + ModId + "/Saved/Autosaves"));
    Client().bBuildWindows = Client().bBuildAndroid = Client().bShareSource = true;
    Client().UploadChangelog = "First release";
    UploadAndWait(ModId);

    EXPECT_EQ(MessageBoxesReading("Upload Complete"), 1);
    EXPECT_FALSE(Client().bIsModioBusy);
    EXPECT_FALSE(Module->bBusy);
    const nlohmann::json Files = ModFiles(ModId);
    ASSERT_EQ(Files.size(), 5u) << Files.dump();
    std::set<std::string> Platforms;
    for (std::size_t Index = 0; Index < Files.size(); ++Index)
    {
        Platforms.insert(Files[Index]["platforms"][0]["platform"].get<std::string>());
        EXPECT_EQ(Files[Index]["version"], "1");
        EXPECT_EQ(Files[Index]["changelog"], "First release");
        EXPECT_NE(Files[Index]["metadata_blob"].get<std::string>().find("\"VersionUUID\": 1"), std::string::npos);
        if (Index > 0)
        {
            EXPECT_GE(Files[Index]["date_added"].get<int64>() - Files[Index - 1]["date_added"].get<int64>(), 1) << "a pause between files";
        }
    }
    EXPECT_EQ(Platforms, (std::set<std::string>{"source", "windows", "linux", "oculus", "mac"}));
    EXPECT_FALSE(fs::exists(Project.InProject("Plugins/UGC" + ModId + "/Saved"))) << "shared sources never carry Saved";
    EXPECT_NE(Get("/v1/games/1/mods/" + ModId)["metadata_blob"].get<std::string>().find("\"VersionUUID\": 1"), std::string::npos);
    EXPECT_EQ(LoadModDefinition(*Platform, ModId, EModType::Mod)->Version, 1);
}

TEST_F(PublishingWorkflow, StagingNeverUploads)
{
    StartModule();
    LogIn();
    const std::string ModId = CreateMod(EModType::Mod);
    RefreshOwnMods();
    fs::create_directories(Temp.Path() / "Game");
    Client().StageDir = Temp.Dir() + "Game";
    Client().bBuildWindows = true;
    Client().bShareSource = true;
    Client().bStageOnly = true;
    UploadAndWait(ModId);
    EXPECT_EQ(MessageBoxesReading("Staged mod"), 1);
    EXPECT_TRUE(ModFiles(ModId).empty());
    for (const Sandbox::FRecordedRequest& Request : Sandbox.RequestLog())
    {
        EXPECT_FALSE(Request.Method != "GET" && Request.Path.find("/files") != std::string::npos) << Request.Method << " " << Request.Path;
    }
}

TEST_F(PublishingWorkflow, FaultsAtTheServiceEndTheUploadAndReleaseTheClient)
{
    StartModule();
    LogIn();
    const std::string ModId = CreateMod(EModType::Mod);
    RefreshOwnMods();
    Client().bShareSource = true;

    Sandbox.InjectFault({"/v1/games/1/mods/" + ModId + "/files", "POST", 1, Sandbox::EFaultKind::Status, 500});
    UploadAndWait(ModId);
    EXPECT_EQ(MessageBoxesReading("ERROR: Failed to upload mod, check output log for details"), 1);
    EXPECT_FALSE(Client().bIsModioBusy);
    EXPECT_TRUE(Client().PendingPlatforms.empty());

    Sandbox.InjectFault({"/v1/games/1/mods/" + ModId + "/files", "POST", 1, Sandbox::EFaultKind::CloseMidBody});
    UploadAndWait(ModId);
    EXPECT_EQ(MessageBoxesReading("ERROR: Failed to upload mod, check output log for details"), 2);
    EXPECT_FALSE(Client().bIsModioBusy);

    Sandbox.ExpireToken(Session->GetAuthTokenAsString());
    UploadAndWait(ModId);
    EXPECT_EQ(MessageBoxesReading("ERROR: Failed to upload mod, check output log for details"), 3);
    EXPECT_FALSE(Client().bIsModioBusy);
    EXPECT_FALSE(Client().bIsUploading);
    EXPECT_EQ(MessageBoxesReading("Upload Complete"), 0);
}
