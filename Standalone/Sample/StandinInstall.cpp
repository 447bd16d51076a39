#include "Sample/StandinInstall.h"

#include "Common/FileHelper.h"
#include "Common/Paths.h"

#include <filesystem>
#include <fstream>

namespace fs = std::filesystem;

namespace Maptorn::Sample
{
namespace
{
constexpr const char* StandinToolPaths[] = {
    "Engine/Binaries/Win64/UnrealEditor.exe",
    "Engine/Binaries/Win64/UnrealPak.exe",
    "Engine/Build/BatchFiles/RunUAT.bat",
    "Engine/Binaries/Linux/UnrealEditor",
    "Engine/Binaries/Linux/UnrealPak",
    "Engine/Build/BatchFiles/RunUAT.sh",
};

bool CopyExecutable(const std::string& Source, const std::string& Destination, std::string& OutError)
{
    if (!FileSystem::CreateDirectoryTree(Paths::GetPath(Destination)))
    {
        OutError = "Could not create the folder " + Paths::GetPath(Destination) + ".";
        return false;
    }
    // Removed first: overwriting a copy that is running right now fails with "text file busy",
    // while a fresh file beside the old, still-running one does not.
    std::error_code Error;
    fs::remove(Destination, Error);
    fs::copy_file(Source, Destination, fs::copy_options::overwrite_existing, Error);
    if (!Error)
    {
        fs::permissions(Destination,
            fs::perms::owner_all | fs::perms::group_read | fs::perms::group_exec | fs::perms::others_read |
                fs::perms::others_exec,
            fs::perm_options::replace, Error);
    }
    if (Error)
    {
        OutError = "Could not install " + Destination + ": " + Error.message();
        return false;
    }
    return true;
}
}

bool InstallStandinEngine(const std::string& EngineRoot, const std::string& StandinBinary,
    const std::string& AutomationLogsDir, std::string& OutError)
{
    if (!FileSystem::FileExists(StandinBinary))
    {
        OutError = "The stand-in engine binary " + StandinBinary + " does not exist.";
        return false;
    }
    for (const char* ToolPath : StandinToolPaths)
    {
        if (!CopyExecutable(StandinBinary, Paths::Combine(EngineRoot, ToolPath), OutError))
        {
            return false;
        }
    }
    std::string Control = "[Standin]\n";
    if (!AutomationLogsDir.empty())
    {
        Control += "AutomationLogsDir=" + AutomationLogsDir + "\n";
    }
    // Written as UTF-8 bytes rather than through FileHelper, which would turn a non-ASCII folder
    // name into UTF-16: plain bytes are what a hand-edited control file holds too.
    const std::string ControlPath = Paths::Combine(EngineRoot, "Engine/Binaries/StandinControl.ini");
    std::ofstream Out(ControlPath, std::ios::binary | std::ios::trunc);
    Out << Control;
    Out.close();
    if (!Out)
    {
        OutError = "Could not write " + ControlPath + ".";
        return false;
    }
    return true;
}

std::string FindStandinBinaryBeside(const std::string& ExecutablePath)
{
    const std::string Candidate = Paths::Combine(Paths::GetPath(ExecutablePath), "maptorn-standin");
    return FileSystem::FileExists(Candidate) ? Candidate : std::string();
}
}
