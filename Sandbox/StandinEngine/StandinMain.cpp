// The stand-in engine: one program copied under the names of the engine's tools, playing the
// tool whose name it was started under. It finds the engine folder from its own place in it,
// records its command line there, reads the control file there, then does the tool's work.

#include "StandinControl.h"
#include "StandinTools.h"

#include <filesystem>
#include <iostream>

namespace fs = std::filesystem;

namespace
{
using namespace Maptorn::Standin;

// Windows names and native names of the same tool behave alike, and Windows ignores case.
std::string ToolForName(const std::string& FileName)
{
    const struct
    {
        const char* Tool;
        std::vector<const char*> Names;
    } Tools[] = {
        {"UnrealEditor", {"UnrealEditor.exe", "UnrealEditor"}},
        {"UnrealPak", {"UnrealPak.exe", "UnrealPak"}},
        {"RunUAT", {"RunUAT.bat", "RunUAT.sh"}},
    };
    for (const auto& Entry : Tools)
    {
        for (const char* Name : Entry.Names)
        {
            if (EqualsIgnoreCase(FileName, Name))
            {
                return Entry.Tool;
            }
        }
    }
    return "";
}

// R/Engine/Binaries/<Platform>/tool or R/Engine/Build/BatchFiles/tool: R is three folders above the tool's own.
std::string EngineRootFromToolPath(const fs::path& ToolPath)
{
    const fs::path ToolFolder = ToolPath.parent_path();
    const fs::path Group = ToolFolder.parent_path();
    const bool bBinaries = Group.filename() == "Binaries";
    const bool bBatchFiles = Group.filename() == "Build" && ToolFolder.filename() == "BatchFiles";
    if (!ToolPath.is_absolute() || !(bBinaries || bBatchFiles))
    {
        return "";
    }
    return Group.parent_path().parent_path().generic_string();
}

fs::path OwnExecutable()
{
    std::error_code Error;
    return fs::read_symlink("/proc/self/exe", Error);
}

std::string FindEngineRoot(const std::string& Argv0)
{
    const std::string FromExe = EngineRootFromToolPath(OwnExecutable());
    if (!FromExe.empty())
    {
        return FromExe;
    }
    std::error_code Error;
    return EngineRootFromToolPath(fs::absolute(Argv0, Error).lexically_normal());
}

int RunTool(const FToolRun& Run)
{
    if (Run.Tool == "UnrealEditor")
    {
        return RunEditorCook(Run);
    }
    if (Run.Tool == "UnrealPak")
    {
        return RunPakTool(Run);
    }
    return RunAutomationTool(Run);
}
}

int main(int ArgC, char** ArgV)
{
    FToolRun Run;
    Run.Argv.assign(ArgV, ArgV + ArgC);
    const std::string StartedAs = !Run.Argv.empty() && !Run.Argv[0].empty() ? Run.Argv[0] : OwnExecutable().string();
    Run.Tool = ToolForName(fs::path(StartedAs).filename().string());
    if (Run.Tool.empty())
    {
        std::cerr << "maptorn-standin: not an engine tool name: " << StartedAs
                  << " (install it as UnrealEditor, UnrealPak or RunUAT)\n";
        return 2;
    }
    Run.EngineRoot = FindEngineRoot(StartedAs);
    if (Run.EngineRoot.empty())
    {
        std::cerr << Run.Tool << ": the stand-in must run from Engine/Binaries/<Platform>/ or Engine/Build/BatchFiles/\n";
        return 2;
    }

    // Recorded before any check, so a test sees the command line even of a run that fails.
    std::string RecordError;
    if (!AppendRecord(Run.EngineRoot, Run.Tool, Run.Argv, RecordError))
    {
        std::cerr << Run.Tool << ": Warning: " << RecordError << "\n";
    }

    const FControlFile Control = FControlFile::Load(ControlFilePath(Run.EngineRoot));
    Run.bSkipOutputs = Control.GetBool(Run.Tool, "SkipOutputs");
    Run.ControlExitCode = Control.GetInt(Run.Tool, "ExitCode", 0);
    Run.AutomationLogsDir = Control.Get("Standin", "AutomationLogsDir").value_or("");

    const int WorkExitCode = RunTool(Run);
    if (const std::optional<std::string> StdOut = Control.Get(Run.Tool, "StdOut"))
    {
        std::cout << *StdOut << "\n";
    }
    if (const std::optional<std::string> StdErr = Control.Get(Run.Tool, "StdErr"))
    {
        std::cerr << *StdErr << "\n";
    }
    std::cout.flush();
    return FinalExitCode(Run, WorkExitCode);
}
