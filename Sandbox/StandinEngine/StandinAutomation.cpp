// The automation tool in the two forms the workshop uses: the game's own UGC script (Kelvor
// targets) and BuildCookRun packing a plug-in as DLC (Vesko targets). Each leaves its pak where
// the real run stages it, and the tool's own log where the real tool keeps it.

#include "StandinTools.h"

#include <filesystem>
#include <iostream>

namespace fs = std::filesystem;

namespace Maptorn::Standin
{
namespace
{
std::string JoinArguments(const std::vector<std::string>& Argv)
{
    std::string Joined;
    for (std::size_t Index = 1; Index < Argv.size(); ++Index)
    {
        Joined += (Index > 1 ? " " : "") + Argv[Index];
    }
    return Joined;
}

// The real tool names its log folder after the engine folder with every separator turned into '+'.
std::string AutomationLogPath(const FToolRun& Run)
{
    std::string Folder = Run.EngineRoot;
    for (char& Character : Folder)
    {
        Character = Character == '/' ? '+' : Character;
    }
    return JoinPath(JoinPath(Run.AutomationLogsDir, Folder), "Log.txt");
}

void WriteAutomationLog(const FToolRun& Run, const std::string& Command, int ExitCode)
{
    if (Run.AutomationLogsDir.empty())
    {
        return;
    }
    const std::string Log = "Parsing command line: " + JoinArguments(Run.Argv) + "\n"
                            "Initializing script modules...\n"
                            "********** " + Command + " COMMAND STARTED **********\n"
                            "********** " + Command + " COMMAND " + (ExitCode == 0 ? "COMPLETED" : "FAILED") +
                            " **********\n"
                            "AutomationTool exiting with ExitCode=" + std::to_string(ExitCode) + "\n";
    std::string Error;
    if (!WriteOutputFile(AutomationLogPath(Run), Log, Error))
    {
        std::cerr << "AutomationTool: Warning: " << Error << "\n";
    }
}

std::optional<std::string> RequireValue(const FToolRun& Run, const char* Key)
{
    std::optional<std::string> Value = FindValue(Run.Argv, Key);
    if (!Value || Value->empty())
    {
        std::cerr << "AutomationTool: Error: Missing -" << Key << "=\n";
        return std::nullopt;
    }
    return Value;
}

// A few KB of bytes naming the pak, enough for size checks and upload chunking to mean something.
bool WritePak(const FToolRun& Run, const std::string& Path)
{
    std::cout << "Writing pak " << Path << "\n";
    if (Run.bSkipOutputs)
    {
        return true;
    }
    const std::string Label = fs::path(Path).filename().string();
    std::string Error;
    if (!WriteOutputFile(Path, MakeFillerText(Label, SizeForLabel(Label, 3072, 2048)), Error))
    {
        std::cerr << "AutomationTool: Error: " << Error << "\n";
        return false;
    }
    return true;
}

int RunUgcScript(const FToolRun& Run)
{
    const std::optional<std::string> Staging = RequireValue(Run, "StagingDirectory");
    const std::optional<std::string> PlatformDir = Staging ? RequireValue(Run, "PlatformDir") : std::nullopt;
    const std::optional<std::string> PluginPath = PlatformDir ? RequireValue(Run, "PluginPath") : std::nullopt;
    if (!PluginPath)
    {
        return 1;
    }
    const std::string PluginName = fs::path(*PluginPath).stem().string();
    const std::string PluginFolder = JoinPath(JoinPath(*Staging, *PlatformDir), PluginName);
    std::cout << "Cooking and packaging " << PluginName << " for "
              << FindValue(Run.Argv, "Platform").value_or("(no platform)") << "\n";
    if (!WritePak(Run, JoinPath(PluginFolder, PluginName + ".pak")))
    {
        return 1;
    }
    const std::string MetaData = FindValue(Run.Argv, "MetaDataPath").value_or("");
    std::error_code Error;
    if (!Run.bSkipOutputs && !MetaData.empty() && fs::is_regular_file(MetaData, Error))
    {
        fs::copy_file(MetaData, JoinPath(PluginFolder, "metadata.json"), fs::copy_options::overwrite_existing, Error);
        if (Error)
        {
            std::cerr << "AutomationTool: Error: cannot copy " << MetaData << ": " << Error.message() << "\n";
            return 1;
        }
    }
    return 0;
}

// The folder name the engine gives a platform's staged and packed output.
std::string PakPlatformName(const FToolRun& Run, const std::string& TargetPlatform)
{
    if (EqualsIgnoreCase(TargetPlatform, "Android"))
    {
        return EqualsIgnoreCase(FindValue(Run.Argv, "cookflavor").value_or(""), "ASTC") ? "Android_ASTC" : "Android";
    }
    if (EqualsIgnoreCase(TargetPlatform, "Linux"))
    {
        return HasSwitch(Run.Argv, "-Server") ? "LinuxServer" : "Linux";
    }
    if (EqualsIgnoreCase(TargetPlatform, "Windows") || EqualsIgnoreCase(TargetPlatform, "Win64"))
    {
        return "Windows";
    }
    return TargetPlatform;
}

int RunBuildCookRun(const FToolRun& Run)
{
    const std::optional<std::string> Staging = RequireValue(Run, "StagingDirectory");
    const std::optional<std::string> DlcName = Staging ? RequireValue(Run, "dlcname") : std::nullopt;
    const std::optional<std::string> Platform = DlcName ? RequireValue(Run, "targetplatform") : std::nullopt;
    if (!Platform)
    {
        return 1;
    }
    const std::string PakPlatform = PakPlatformName(Run, *Platform);
    std::cout << "********** COOK COMMAND STARTED **********\n"
              << "********** STAGE COMMAND STARTED **********\n"
              << "********** PACKAGE COMMAND STARTED **********\n";
    const std::string PakFolder = JoinPath(JoinPath(*Staging, PakPlatform),
        "Kelvor/Plugins/" + *DlcName + "/Content/Paks/" + PakPlatform);
    return WritePak(Run, JoinPath(PakFolder, *DlcName + "Kelvor-" + PakPlatform + ".pak")) ? 0 : 1;
}
}

int RunAutomationTool(const FToolRun& Run)
{
    const std::vector<std::string>& Argv = Run.Argv;
    std::cout << "Parsing command line: " << JoinArguments(Argv) << "\n";
    std::string Command;
    int WorkExitCode = 1;
    if (Argv.size() > 1 && EqualsIgnoreCase(Argv[1], "BuildCookRun"))
    {
        Command = "BuildCookRun";
        WorkExitCode = RunBuildCookRun(Run);
    }
    else if (HasSwitch(Argv, "KelvorUGCPak"))
    {
        Command = "KelvorUGCPak";
        WorkExitCode = RunUgcScript(Run);
    }
    else
    {
        Command = Argv.size() > 1 ? Argv[1] : "(none)";
        std::cerr << "AutomationTool: Error: Unknown command.\n"
                  << "Usage: RunUAT BuildCookRun -project=<file> -dlcname=<plugin> -StagingDirectory=<dir> ...\n"
                  << "       RunUAT -Compile -ScriptDir=<dir> KelvorUGCPak -PluginPath=<file> -StagingDirectory=<dir> "
                     "-PlatformDir=<dir> ...\n";
    }
    const int ExitCode = FinalExitCode(Run, WorkExitCode);
    WriteAutomationLog(Run, Command, ExitCode);
    std::cout << (WorkExitCode == 0 ? "BUILD SUCCESSFUL\n" : "BUILD FAILED\n")
              << "AutomationTool exiting with ExitCode=" << ExitCode << "\n";
    return WorkExitCode;
}
}
