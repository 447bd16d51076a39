// The real `maptorn` program as a modder's shell or a CI job runs it, against a sandbox on loopback
// that can hold a transfer open or cut it short: global options in either place, plain progress
// lines in a log, messages that say what the connection did, and Ctrl-C or SIGTERM in the middle
// of a transfer ending with 130, no temporary file left and the project's plug-ins as they were.

#include "ModioService/ModioSandbox.h"
#include "Platform/StandaloneProcesses.h"
#include "Sample/SampleProject.h"
#include "Support/CliEnvironment.h"
#include "Support/ProjectSnapshot.h"
#include "Support/SandboxAccounts.h"
#include "Support/TempDir.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

using namespace Maptorn;
using namespace Maptorn::Testing;
namespace fs = std::filesystem;

namespace
{

class CliProcess : public ::testing::Test
{
protected:
    CliProcess()
        : Service(Sandbox::FSandboxOptions{0, "", 1, SandboxApiKey, true, true})
    {
        Sample::FSampleOptions Options;
        Options.StandinBinary = MAPTORN_STANDIN_PATH;
        Layout = Sample::CreateSampleLayout(Temp.Dir() + "Sample", Options);
        IsolateCliEnvironment(Temp, std::string(SandboxApiKey));
        fs::create_directories(Temp.Path() / "tmp");
        bStarted = Service.Start(StartError);
    }

    void SetUp() override
    {
        ASSERT_TRUE(Layout.bCreated) << Layout.FailReason;
        ASSERT_TRUE(bStarted) << StartError;
    }

    std::string CommonParams(const std::string& ModioUrl = {}) const
    {
        return "--project \"" + Layout.ProjectDir + "\" --engine \"" + Layout.EngineRoot + "\" --user-settings-dir \"" + Layout.UserSettingsDir +
            "\" --modio-url " + (ModioUrl.empty() ? Service.GetBaseUrl() : ModioUrl) + " --modio-game-id 1 --modio-api-key-file \"" + Temp.Dir() +
            "api-key\" ";
    }

    // Runs maptorn to its end with the sandbox's settings before Params, or with Params alone.
    int32 Run(const std::string& Params, std::string& Out, bool bWithCommon = true)
    {
        int32 ExitCode = -1;
        std::string Err;
        Out.clear();
        FStandaloneProcesses Processes;
        EXPECT_TRUE(Processes.ExecProcess(MAPTORN_CLI_PATH, (bWithCommon ? CommonParams() : std::string()) + Params, ExitCode, Out, Err));
        Out += Err;
        return ExitCode;
    }

    // Starts maptorn with its output in a file and its temporary files under Temp/tmp.
    pid_t Spawn(const std::string& Params)
    {
        const std::string Command = "exec \"" + std::string(MAPTORN_CLI_PATH) + "\" " + CommonParams() + Params;
        const std::string OutFile = Temp.Dir() + "interrupted.out";
        const std::string TmpDir = Temp.Dir() + "tmp";
        const pid_t Child = fork();
        if (Child == 0)
        {
            const int Fd = open(OutFile.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
            dup2(Fd, STDOUT_FILENO);
            dup2(Fd, STDERR_FILENO);
            setenv("TMPDIR", TmpDir.c_str(), 1);
            execl("/bin/sh", "sh", "-c", Command.c_str(), static_cast<char*>(nullptr));
            _exit(127);
        }
        return Child;
    }

    // True once Ready answers true: the transfer has begun and the sandbox holds it open.
    static bool WaitFor(const std::function<bool()>& Ready)
    {
        for (int Try = 0; Try < 3000 && !Ready(); ++Try)
        {
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
        return Ready();
    }

    // A folder of the upload's own under TMPDIR; with bWithBody only once its body file is there.
    bool UploadFolderExists(bool bWithBody) const
    {
        std::error_code Error;
        for (const fs::directory_entry& Entry : fs::directory_iterator(Temp.Path() / "tmp", Error))
        {
            if (Entry.path().filename().string().rfind("maptorn-upload-", 0) == 0 && (!bWithBody || fs::exists(Entry.path() / "body.form")))
            {
                return true;
            }
        }
        return false;
    }

    int32 StopWith(pid_t Child, int Signal)
    {
        kill(Child, Signal);
        int Status = 0;
        waitpid(Child, &Status, 0);
        return WIFEXITED(Status) ? WEXITSTATUS(Status) : -WTERMSIG(Status);
    }

    std::string Output() const { return ReadTextFile(Temp.Path() / "interrupted.out"); }
    fs::path InProject(const std::string& Relative) const { return fs::path(Layout.ProjectDir) / Relative; }

    FTempDir Temp;
    Sample::FSampleLayout Layout;
    Sandbox::FModioSandbox Service;
    bool bStarted = false;
    std::string StartError;
};
}

TEST_F(CliProcess, AnInterruptedDownloadLeavesNoArchiveAndThePluginAsItWas)
{
    fs::create_directories(InProject("Plugins/UGC1005/Content"));
    WriteTextFile(InProject("Plugins/UGC1005/UGC1005.uplugin"), "{\"FileVersion\": 3, \"FriendlyName\": \"mine\"}");
    WriteTextFile(InProject("Plugins/UGC1005/Content/Mine.txt"), "my work");
    const FProjectSnapshot Plugins = SnapshotTree(InProject("Plugins"));

    for (const int Signal : {SIGINT, SIGTERM})
    {
        SCOPED_TRACE(Signal == SIGINT ? "SIGINT" : "SIGTERM");
        Service.ClearRequestLog();
        Service.InjectFault(Sandbox::FFault{"/sandbox/files/", "GET", 1, Sandbox::EFaultKind::Stall, 200, 60000});
        const pid_t Child = Spawn("install 1005 --yes");
        ASSERT_TRUE(WaitFor([this] { return fs::exists(InProject("Saved/Downloads/UGC1005.zip")); })) << Output();

        EXPECT_EQ(StopWith(Child, Signal), 130) << Output();
        EXPECT_FALSE(fs::exists(InProject("Saved/Downloads/UGC1005.zip"))) << "the partial archive is removed";
        EXPECT_FALSE(fs::exists(InProject("Saved/Downloads/UGC1005"))) << "so is the extract folder";
        EXPECT_EQ(SnapshotTree(InProject("Plugins")), Plugins);
        EXPECT_NE(Output().find("Interrupted"), std::string::npos) << Output();
    }
}

TEST_F(CliProcess, AnInterruptedUploadLeavesNoBodyFileAndNoFileOnTheService)
{
    std::string Out;
    ASSERT_EQ(Run("login --email modder@example.com", Out), 0) << Out;
    ASSERT_EQ(Run("login --code " + Service.LastCodeFor("modder@example.com"), Out), 0) << Out;
    Out.clear();
    ASSERT_EQ(Run("create --name \"Harbour Sprint\" --summary \"Race through the docks\" --type map --json", Out), 0) << Out;
    const std::string ModId = nlohmann::json::parse(Out.substr(Out.find('{')), nullptr, false).value("mod_id", std::string());
    ASSERT_FALSE(ModId.empty()) << Out;
    ASSERT_EQ(Run("plugin set " + ModId + " --map /UGC" + ModId + "/Maps/Docks.Docks", Out), 0) << Out;

    const std::string FilesPath = "/v1/games/1/mods/" + ModId + "/files";
    Service.InjectFault(Sandbox::FFault{FilesPath, "POST", 1, Sandbox::EFaultKind::Stall, 200, 60000});
    const pid_t Child = Spawn("upload " + ModId + " --windows");
    ASSERT_TRUE(WaitFor([this] { return UploadFolderExists(true); })) << Output();

    EXPECT_EQ(StopWith(Child, SIGINT), 130) << Output();
    EXPECT_FALSE(fs::exists(InProject("Saved/modio_upload.tmp")));
    EXPECT_FALSE(UploadFolderExists(false)) << "the upload's archive and body are removed";
}

TEST_F(CliProcess, GlobalOptionsWorkBeforeOrAfterTheCommand)
{
    const std::string Project = "--project \"" + Layout.ProjectDir + "\" --engine \"" + Layout.EngineRoot + "\"";
    std::string Before, After;
    EXPECT_EQ(Run(Project + " env", Before, false), 0) << Before;
    EXPECT_EQ(Run("env " + Project, After, false), 0) << After;
    EXPECT_EQ(Before, After);
    EXPECT_NE(After.find(Layout.ProjectDir), std::string::npos) << After;

    std::string Out;
    const std::string Modio = "--modio-url " + Service.GetBaseUrl() + " --modio-game-id 1 --modio-api-key-file \"" + Temp.Dir() + "api-key\"";
    ASSERT_EQ(Run("install 1006 --yes --json " + Project + " --user-settings-dir \"" + Layout.UserSettingsDir + "\" " + Modio, Out, false), 0) << Out;
    EXPECT_EQ(nlohmann::json::parse(Out.substr(Out.find('{')), nullptr, false).value("plugin", std::string()), "UGC1006") << Out;
    fs::remove_all(InProject("Plugins/UGC1006"));
    ASSERT_EQ(Run("--json install 1006", Out), 0) << Out;
    EXPECT_EQ(nlohmann::json::parse(Out.substr(Out.find('{')), nullptr, false).value("plugin", std::string()), "UGC1006") << Out;
}

TEST_F(CliProcess, ProgressInALogIsPlainLinesAndAQuietShutdownSaysNothing)
{
    std::string Out;
    ASSERT_EQ(Run("--verbose install 1006", Out), 0) << Out;
    EXPECT_NE(Out.find("Downloading UGC1006 100%"), std::string::npos) << Out;
    EXPECT_EQ(Out.find('\r'), std::string::npos) << "no carriage return goes into a log";
    EXPECT_EQ(Out.find("Error Shutdown Modio SDK"), std::string::npos) << "nothing failed at shut-down";
}

TEST_F(CliProcess, FailedTransfersSayWhatTheConnectionDid)
{
    std::string Out;
    Service.InjectFault(Sandbox::FFault{"/sandbox/files/", "GET", 4, Sandbox::EFaultKind::CloseMidBody, 200, 0});
    EXPECT_EQ(Run("install 1006", Out), 1) << Out;
    EXPECT_NE(Out.find("the server closed the connection after "), std::string::npos) << Out;
    EXPECT_EQ(Out.find("No such file"), std::string::npos) << Out;
    EXPECT_FALSE(fs::exists(InProject("Plugins/UGC1006")));

    EXPECT_EQ(Run("install 1006 " + CommonParams("http://127.0.0.1:9"), Out, false), 1) << Out;
    EXPECT_NE(Out.find("could not connect to 127.0.0.1:9"), std::string::npos) << Out;
    EXPECT_EQ(Out.find("response code 0"), std::string::npos) << Out;
}
