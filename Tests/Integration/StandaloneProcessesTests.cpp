#include "Platform/StandaloneProcesses.h"
#include "Support/TempDir.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include <stdlib.h>

using namespace Maptorn;
namespace fs = std::filesystem;

namespace
{
constexpr const char* PrintArgumentsScript = "for a in \"$@\"; do printf '[%s]\\n' \"$a\"; done\n";

// Real child processes run shell scripts written into a fresh folder of their own.
class StandaloneProcesses : public ::testing::Test
{
protected:
    std::string WriteScript(const std::string& Name, const std::string& Body, bool bExecutable = true)
    {
        const fs::path Path = Folder.Path() / Name;
        Testing::WriteTextFile(Path, "#!/bin/sh\n" + Body);
        fs::permissions(Path, bExecutable ? fs::perms::owner_all : fs::perms::owner_read | fs::perms::owner_write);
        return Path.string();
    }

    struct FRun
    {
        bool bCreated = false;
        int32 ReturnCode = -1;
        std::string StdOut;
        std::string StdErr;
    };

    FRun Run(const std::string& Url, const std::string& Params = "")
    {
        FRun Result;
        Result.bCreated = Processes.ExecProcess(Url, Params, Result.ReturnCode, Result.StdOut, Result.StdErr);
        return Result;
    }

    Testing::FTempDir Folder;
    FStandaloneProcesses Processes;
};

std::string NumberLines(int First, int Last)
{
    std::string Text;
    for (int Number = First; Number <= Last; ++Number)
    {
        Text += std::to_string(Number) + "\n";
    }
    return Text;
}

std::size_t CountPipes(const std::string& DescriptorTargets)
{
    std::istringstream Lines(DescriptorTargets);
    std::size_t Count = 0;
    for (std::string Line; std::getline(Lines, Line);)
    {
        Count += Line.rfind("pipe:", 0) == 0 ? 1 : 0;
    }
    return Count;
}
}

// The tool, in a folder with spaces, sees its arguments as Windows would split them.
TEST_F(StandaloneProcesses, ArgumentsArriveAsWindowsWouldSplitThemToAToolInAFolderWithSpaces)
{
    const std::string Script = WriteScript("Program Files/My Tool/run tool.sh", PrintArgumentsScript);
    const FRun Result = Run(Script, "plain  \"with spaces\" \"\" \\\"quoted\\\" C:\\Dir\\file \"a\"\"b\" tab\tsplit");
    ASSERT_TRUE(Result.bCreated);
    EXPECT_EQ(Result.StdOut, "[plain]\n[with spaces]\n[]\n[\"quoted\"]\n[C:\\Dir\\file]\n[a\"b]\n[tab]\n[split]\n");
    EXPECT_EQ(Result.StdErr, "");
    EXPECT_EQ(Result.ReturnCode, 0);

    const FRun PreQuoted = Run("\"" + Script + "\" -first", "-second");
    ASSERT_TRUE(PreQuoted.bCreated);
    EXPECT_EQ(PreQuoted.StdOut, "[-first]\n[-second]\n");
}

TEST_F(StandaloneProcesses, TheChildsExitCodeOrItsKillingSignalPlus128IsReturned)
{
    const FRun Failed = Run(WriteScript("fail.sh", "exit 42\n"));
    ASSERT_TRUE(Failed.bCreated);
    EXPECT_EQ(Failed.ReturnCode, 42);

    const FRun Killed = Run(WriteScript("crash.sh", "echo before\nkill -9 $$\necho after\n"));
    ASSERT_TRUE(Killed.bCreated);
    EXPECT_EQ(Killed.ReturnCode, 128 + 9);
    EXPECT_EQ(Killed.StdOut, "before\n");
}

// Several megabytes on each stream, the error stream first, so a reader that drains one pipe to
// its end before the other would hang with the child blocked on a full pipe. The echo sees every line.
TEST_F(StandaloneProcesses, LargeOutputOnBothStreamsIsCapturedAndEchoedWithoutDeadlock)
{
    std::size_t LineCount = 0;
    std::string LastLine;
    Processes.SetOutputEcho([&](const std::string& Line, bool bIsStdErr)
    {
        LineCount += 1;
        LastLine = bIsStdErr ? LastLine : Line;
    });
    const FRun Result = Run(WriteScript("large.sh", "seq 1 400000 >&2\nseq 1 400000\nseq 400001 800000 >&2\n"));
    ASSERT_TRUE(Result.bCreated);
    EXPECT_EQ(LineCount, 1200000u);
    EXPECT_EQ(LastLine, "400000");
    EXPECT_EQ(Result.ReturnCode, 0);
    ASSERT_EQ(Result.StdOut.size(), NumberLines(1, 400000).size());
    EXPECT_TRUE(Result.StdOut == NumberLines(1, 400000));
    ASSERT_EQ(Result.StdErr.size(), NumberLines(1, 800000).size());
    EXPECT_TRUE(Result.StdErr == NumberLines(1, 800000));
}

TEST_F(StandaloneProcesses, MissingOrNonExecutableProgramIsNotCreated)
{
    for (const std::string& Program : { (Folder.Path() / "no-such-tool").string(), std::string("maptorn-no-such-program-on-path"),
             std::string(), WriteScript("plain.sh", "exit 0\n", false), Folder.Path().string() })
    {
        EXPECT_FALSE(Run(Program, "-x").bCreated) << Program;
    }
}

// A tool that asks a question must not wait on, or take, the console's input: it reads its end.
TEST_F(StandaloneProcesses, ChildInheritsEnvironmentAndWorkingDirectoryButNotTheConsolesInput)
{
    ASSERT_EQ(::setenv("MAPTORN_PROCESSES_TEST", "inherited value", 1), 0);
    FRun Result;
    {
        Testing::FScopedWorkingDirectory WorkingDirectory(Folder.Path());
        Result = Run(WriteScript("env.sh",
            "echo \"$MAPTORN_PROCESSES_TEST\"\npwd -P\nif read Line; then echo \"got $Line\"; else echo eof; fi\n"));
    }
    ::unsetenv("MAPTORN_PROCESSES_TEST");

    ASSERT_TRUE(Result.bCreated);
    EXPECT_EQ(Result.StdOut, "inherited value\n" + fs::canonical(Folder.Path()).string() + "\neof\n");
}

TEST_F(StandaloneProcesses, EchoSeesEachLineOfBothStreamsAndOutputsAreStillCaptured)
{
    std::vector<std::string> StdOutLines;
    std::vector<std::string> StdErrLines;
    Processes.SetOutputEcho([&](const std::string& Line, bool bIsStdErr)
    {
        (bIsStdErr ? StdErrLines : StdOutLines).push_back(Line);
    });
    const FRun Result = Run(WriteScript("echo.sh",
        "echo 'Cooking 1/2'\necho 'warning: x' >&2\nprintf 'Cooking 2/2\\r\\n'\necho\nprintf 'Done'\n"));
    Processes.SetOutputEcho(nullptr);

    ASSERT_TRUE(Result.bCreated);
    EXPECT_EQ(StdOutLines, (std::vector<std::string>{"Cooking 1/2", "Cooking 2/2", "", "Done"}));
    EXPECT_EQ(StdErrLines, (std::vector<std::string>{"warning: x"}));
    EXPECT_EQ(Result.StdOut, "Cooking 1/2\nCooking 2/2\r\n\nDone");
    EXPECT_EQ(Result.StdErr, "warning: x\n");
}

// Each child must see only its own two pipes: another worker's pipe leaking into it would keep
// that worker waiting for an end of output until this child exits.
TEST_F(StandaloneProcesses, ConcurrentRunsKeepTheirOutputsAndPipesToThemselves)
{
    const std::string Script =
        WriteScript("fds.sh", "echo \"$1\"\necho \"err $1\" >&2\nreadlink /proc/$$/fd/*\nexit $2\n");
    const FRun Alone = Run(Script, "alone 0");
    ASSERT_TRUE(Alone.bCreated);
    const std::size_t PipesSeenAlone = CountPipes(Alone.StdOut);

    constexpr int ThreadCount = 8;
    constexpr int RunsPerThread = 10;
    std::vector<std::string> Failures[ThreadCount];
    std::vector<std::thread> Threads;
    for (int ThreadIndex = 0; ThreadIndex < ThreadCount; ++ThreadIndex)
    {
        Threads.emplace_back([&, ThreadIndex]
        {
            for (int RunIndex = 0; RunIndex < RunsPerThread; ++RunIndex)
            {
                const std::string Token = std::to_string(ThreadIndex) + "-" + std::to_string(RunIndex);
                FRun Result;
                Result.bCreated = Processes.ExecProcess(
                    Script, Token + " " + std::to_string(ThreadIndex), Result.ReturnCode, Result.StdOut, Result.StdErr);
                if (!Result.bCreated || Result.ReturnCode != ThreadIndex || Result.StdOut.rfind(Token + "\n", 0) != 0
                    || CountPipes(Result.StdOut) != PipesSeenAlone || Result.StdErr != "err " + Token + "\n")
                {
                    Failures[ThreadIndex].push_back(Token + ": " + Result.StdOut + Result.StdErr);
                }
            }
        });
    }
    for (std::thread& Thread : Threads)
    {
        Thread.join();
    }
    for (const std::vector<std::string>& ThreadFailures : Failures)
    {
        EXPECT_TRUE(ThreadFailures.empty()) << ThreadFailures.front();
    }
}
