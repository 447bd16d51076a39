// The stand-in engine installed at engine paths and started the way the workshop starts the real
// tools: through the standalone process adapter, with Windows command lines.

#include "Platform/StandaloneProcesses.h"
#include "Sample/SampleProject.h"
#include "Support/StandinEngine.h"
#include "Support/TempDir.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

using namespace Maptorn;
using namespace Maptorn::Testing;
namespace fs = std::filesystem;

namespace
{
struct FRun
{
    bool bStarted = false;
    int32 ExitCode = -1;
    std::string Out;
    std::string Err;
};

// Quotes the arguments that hold blanks, as the core does when it builds a tool's command line.
std::string CommandLineOf(const std::vector<std::string>& Arguments)
{
    std::string Line;
    for (const std::string& Argument : Arguments)
    {
        Line += (Line.empty() ? "" : " ") +
                (Argument.find(' ') == std::string::npos ? Argument : "\"" + Argument + "\"");
    }
    return Line;
}

std::vector<std::string> WithProgram(const std::string& Program, std::vector<std::string> Arguments)
{
    Arguments.insert(Arguments.begin(), Program);
    return Arguments;
}

class StandinEngine : public ::testing::Test
{
protected:
    void SetUp() override
    {
        Layout = Sample::CreateSampleLayout(Temp.Dir() + "Sample");
        ASSERT_TRUE(Layout.bCreated) << Layout.FailReason;
        ASSERT_TRUE(Engine.Install(MAPTORN_STANDIN_PATH, LogsDir)) << Engine.GetInstallError();
    }

    FRun Run(const std::string& Tool, const std::vector<std::string>& Arguments)
    {
        return RunPath(Engine.ToolPath(Tool), Arguments);
    }

    FRun RunPath(const std::string& Program, const std::vector<std::string>& Arguments)
    {
        FRun Result;
        FStandaloneProcesses Processes;
        Result.bStarted = Processes.ExecProcess(Program, CommandLineOf(Arguments), Result.ExitCode, Result.Out, Result.Err);
        return Result;
    }

    // The folder the automation tool names after the engine folder it runs from.
    fs::path AutomationLog() const
    {
        std::string Folder = fs::weakly_canonical(Engine.GetEngineRoot()).generic_string();
        std::replace(Folder.begin(), Folder.end(), '/', '+');
        return fs::path(LogsDir) / Folder / "Log.txt";
    }

    std::string Cooked(const std::string& Path) const { return Layout.ProjectDir + "Saved/Cooked/" + Path; }

    FTempDir Temp;
    Sample::FSampleLayout Layout;
    // A blank in the engine path proves the tools are quoted and found as a whole.
    FStandinEngine Engine{Temp.Dir() + "Epic Games/UE_5.1"};
    std::string LogsDir = Temp.Dir() + "Roaming/Unreal Engine/AutomationTool/Logs";
};
}

TEST_F(StandinEngine, CookRecordsItsExactArgumentsAndCooksEveryPlatform)
{
    const std::vector<std::string> Arguments = {Layout.ProjectFile, "-run=cook",
        "-targetplatform=Windows+LinuxServer", "-UnVersioned", "-map=/UGC12/Maps/Arena+/Game/Maps/Lobby"};
    const FRun Result = Run("UnrealEditor", Arguments);
    ASSERT_TRUE(Result.bStarted);
    EXPECT_EQ(Result.ExitCode, 0) << Result.Err;
    EXPECT_NE(Result.Out.find("Cooking /UGC12/Maps/Arena"), std::string::npos);

    const std::vector<FStandinEngine::FStandinCall> Calls = Engine.ReadRecord();
    ASSERT_EQ(Calls.size(), 1u);
    EXPECT_EQ(Calls[0].Tool, "UnrealEditor");
    EXPECT_EQ(Calls[0].Argv, WithProgram(Engine.ToolPath("UnrealEditor"), Arguments));

    for (const std::string Platform : {"Windows", "LinuxServer"})
    {
        // A plug-in's map goes to its own mount folder, a /Game/ map to the project's.
        for (const std::string File : {"UGC12/Content/Maps/Arena.umap", "UGC12/Content/Maps/Arena.uexp",
                 "KelvorModKit/Content/Maps/Lobby.umap", "KelvorModKit/Content/Maps/Lobby.uexp",
                 "KelvorModKit/Metadata/DevelopmentAssetRegistry.bin"})
        {
            const std::string Path = Cooked(Platform + "/" + File);
            EXPECT_GT(fs::file_size(Path), 100u) << Path;
            EXPECT_NE(ReadTextFile(Path).find(Platform + "/" + File), std::string::npos) << Path;
        }
    }
}

TEST_F(StandinEngine, CookDirCooksTheMountsContent)
{
    const FRun Result = Run("UnrealEditor", {Layout.ProjectFile, "-run=cook", "-targetplatform=Windows", "-cookdir=/UGC12/"});
    ASSERT_TRUE(Result.bStarted);
    EXPECT_EQ(Result.ExitCode, 0) << Result.Err;
    EXPECT_TRUE(fs::exists(Cooked("Windows/UGC12/Content/Cooked.uasset")));
    EXPECT_TRUE(fs::exists(Cooked("Windows/UGC12/Content/Cooked.uexp")));
}

TEST_F(StandinEngine, CookRefusesAMissingProject)
{
    const FRun Result = Run("UnrealEditor", {Layout.ProjectDir + "Missing.uproject", "-run=cook", "-targetplatform=Windows"});
    ASSERT_TRUE(Result.bStarted);
    EXPECT_EQ(Result.ExitCode, 1);
    EXPECT_FALSE(Result.Err.empty());
    EXPECT_FALSE(fs::exists(Layout.ProjectDir + "Saved/Cooked"));
}

TEST_F(StandinEngine, PakHoldsEveryEntryOfTheResponseFile)
{
    const std::string First = Temp.Dir() + "Cooked Files/Arena.umap";
    const std::string Second = Temp.Dir() + "Cooked Files/Arena.uexp";
    WriteTextFile(First, std::string(700, 'a'));
    WriteTextFile(Second, std::string(1234, 'b'));
    const std::string List = Temp.Dir() + "Saved/custommap_paklist.txt";
    // CR LF lines and a blank line, as a list written on Windows may have.
    WriteTextFile(List, "\"" + First + "\" \"../../../KelvorModKit/Content/Maps/Arena.umap\"\r\n\r\n\"" + Second +
                            "\" \"../../../KelvorModKit/Content/Maps/Arena.uexp\"\r\n");
    const std::string Pak = Temp.Dir() + "Out Paks/UGC12.pak";

    const FRun Result = Run("UnrealPak",
        {Pak, "-create=" + List, "-platform=Windows", "-UTF8Output", "-multiprocess", "-patchpaddingalign=2048"});
    ASSERT_TRUE(Result.bStarted);
    EXPECT_EQ(Result.ExitCode, 0) << Result.Err;
    EXPECT_EQ(ReadTextFile(Pak), std::string(700, 'a') + std::string(1234, 'b'));
}

TEST_F(StandinEngine, MissingPakSourceFailsWithoutAPak)
{
    const std::string Present = Temp.Dir() + "present.uasset";
    WriteTextFile(Present, "data");
    const std::string Missing = Temp.Dir() + "no such/missing.uasset";
    const std::string List = Temp.Dir() + "paklist.txt";
    WriteTextFile(List, "\"" + Present + "\" \"a/present.uasset\"\n\"" + Missing + "\" \"a/missing.uasset\"\n");
    const std::string Pak = Temp.Dir() + "Paks/UGC12.pak";

    const FRun Result = Run("UnrealPak", {Pak, "-create=" + List});
    ASSERT_TRUE(Result.bStarted);
    EXPECT_EQ(Result.ExitCode, 1);
    EXPECT_NE(Result.Err.find("LogPakFile: Error: Missing source " + Missing), std::string::npos) << Result.Err;
    EXPECT_FALSE(fs::exists(Pak));
}

TEST_F(StandinEngine, UgcScriptStagesThePluginPakAndLogsUnderTheEngineName)
{
    const std::string Staging = Temp.Dir() + "Staging Area";
    const std::string MetaData = Temp.Dir() + "meta/UGC12.json";
    WriteTextFile(MetaData, "{\"Name\":\"UGC12\"}");
    const std::vector<std::string> Arguments = {"-ScriptsForProject=" + Layout.ProjectFile, "-Compile",
        "-ScriptDir=" + Layout.ProjectDir + "Build/Scripts", "KelvorUGCPak", "-Project=" + Layout.ProjectFile,
        "-Platform=Windows", "-PluginPath=" + Layout.ProjectDir + "Plugins/UGC12/UGC12.uplugin",
        "-BasedOnReleaseVersion=Kelvor_1.4", "-StagingDirectory=" + Staging, "-Stage=True", "-ModioUploader=True",
        "-MetaDataPath=" + MetaData, "-PlatformDir=Windows", "-IsCodeBasedProject=False",
        "-AdditionalCookerOptions=-NeverCookDir=/Game+/Maptorn -UnVersioned", "-Map=/UGC12/Maps/Arena"};
    const FRun Result = Run("RunUAT", Arguments);
    ASSERT_TRUE(Result.bStarted);
    EXPECT_EQ(Result.ExitCode, 0) << Result.Err;

    const std::string PluginFolder = Staging + "/Windows/UGC12/";
    EXPECT_GT(fs::file_size(PluginFolder + "UGC12.pak"), 1024u);
    EXPECT_EQ(ReadTextFile(PluginFolder + "metadata.json"), "{\"Name\":\"UGC12\"}");

    ASSERT_NE(AutomationLog().parent_path().filename().string().find("UE_5.1"), std::string::npos);
    const std::string Log = ReadTextFile(AutomationLog());
    std::string Joined;
    for (const std::string& Argument : Arguments)
    {
        Joined += (Joined.empty() ? "" : " ") + Argument;
    }
    EXPECT_EQ(Log.rfind("Parsing command line: " + Joined + "\n", 0), 0u) << Log;
    EXPECT_TRUE(Log.ends_with("AutomationTool exiting with ExitCode=0\n")) << Log;
}

TEST_F(StandinEngine, ControlFileSetsExitCodeSkipsOutputsAndAddsTexts)
{
    Engine.SetBehaviour("RunUAT", 5, false);
    Engine.SetBehaviour("UnrealPak", 3, true, "pak says hello", "pak complains");
    const std::string List = Temp.Dir() + "paklist.txt";
    WriteTextFile(List, "");
    const std::string Pak = Temp.Dir() + "Paks/UGC12.pak";

    const FRun PakRun = Run("UnrealPak", {Pak, "-create=" + List});
    ASSERT_TRUE(PakRun.bStarted);
    EXPECT_EQ(PakRun.ExitCode, 3);
    EXPECT_TRUE(PakRun.Out.ends_with("pak says hello\n")) << PakRun.Out;
    EXPECT_EQ(PakRun.Err, "pak complains\n");
    EXPECT_FALSE(fs::exists(Pak));

    // The automation tool's section and the [Standin] section survived the pak tool's rewrite.
    const std::string Staging = Temp.Dir() + "Staged";
    const FRun UatRun = Run("RunUAT", {"BuildCookRun", "-project=" + Layout.ProjectFile, "-dlcname=UGC12",
                                          "-StagingDirectory=" + Staging, "-targetplatform=Linux"});
    ASSERT_TRUE(UatRun.bStarted);
    EXPECT_EQ(UatRun.ExitCode, 5);
    EXPECT_TRUE(fs::exists(Staging + "/Linux/Kelvor/Plugins/UGC12/Content/Paks/Linux/UGC12Kelvor-Linux.pak"));
    EXPECT_TRUE(ReadTextFile(AutomationLog()).ends_with("AutomationTool exiting with ExitCode=5\n"));
    EXPECT_EQ(Engine.ReadRecord().size(), 2u);
}

TEST_F(StandinEngine, UnstartableToolCannotBeCreated)
{
    Engine.MakeUnstartable("UnrealPak");
    EXPECT_FALSE(Run("UnrealPak", {"x.pak", "-create=list.txt"}).bStarted);
    EXPECT_FALSE(RunPath(Engine.NativeToolPath("UnrealPak"), {"x.pak", "-create=list.txt"}).bStarted);
    EXPECT_TRUE(Engine.ReadRecord().empty());
    EXPECT_TRUE(Run("UnrealEditor", {}).bStarted);
}

TEST_F(StandinEngine, UnknownToolNameExitsWithTwo)
{
    const std::string Other = Engine.GetEngineRoot() + "/Engine/Binaries/Win64/ShaderCompileWorker.exe";
    fs::copy_file(Engine.ToolPath("UnrealPak"), Other);
    const FRun Result = RunPath(Other, {"-anything"});
    ASSERT_TRUE(Result.bStarted);
    EXPECT_EQ(Result.ExitCode, 2);
    EXPECT_FALSE(Result.Err.empty());
}
