#include "Module/GameInstall.h"

#include "Common/FileHelper.h"
#include "Common/Paths.h"
#include "Common/StringUtil.h"
#include "Module/MaptornModule.h"
#include "Module/ProjectEnvironment.h"

#include <algorithm>
#include <cstdlib>

namespace Maptorn::GameInstall
{
namespace
{
constexpr const char* SteamRegistryKey = "SOFTWARE\\WOW6432Node\\Valve\\Steam";

std::string WithSlashes(std::string Path)
{
    std::replace(Path.begin(), Path.end(), '\\', '/');
    while (Path.size() > 1 && Path.back() == '/')
    {
        Path.pop_back();
    }
    return Path;
}

// The next quoted token from At, with its escapes read; npos when there is none.
std::size_t NextQuoted(const std::string& Text, std::size_t At, std::string& OutToken)
{
    const std::size_t Open = Text.find('"', At);
    if (Open == std::string::npos)
    {
        return std::string::npos;
    }
    OutToken.clear();
    for (std::size_t Index = Open + 1; Index < Text.size(); ++Index)
    {
        if (Text[Index] == '\\' && Index + 1 < Text.size())
        {
            OutToken += Text[++Index];
        }
        else if (Text[Index] == '"')
        {
            return Index + 1;
        }
        else
        {
            OutToken += Text[Index];
        }
    }
    return std::string::npos;
}
}

std::string FindSteamRoot()
{
    const std::string FromRegistry = ProjectEnvironment::ReadRegistryString(SteamRegistryKey, "InstallPath");
    if (!FromRegistry.empty())
    {
        return WithSlashes(FromRegistry);
    }
    const char* Home = std::getenv("HOME");
    const std::string Linux = Home ? std::string(Home) + "/.steam/steam" : std::string();
    return !Linux.empty() && FileSystem::DirectoryExists(Linux) ? Linux : std::string();
}

std::vector<std::string> ReadVdfValues(const std::string& Text, const std::string& Key)
{
    std::vector<std::string> Values;
    std::string Token;
    std::size_t At = 0;
    while ((At = NextQuoted(Text, At, Token)) != std::string::npos)
    {
        if (!EqualsIgnoreCase(Token, Key))
        {
            continue;
        }
        // A key followed by a block, not a value, is skipped.
        const std::size_t ValueStart = Text.find_first_not_of(" \t\r\n", At);
        if (ValueStart == std::string::npos || Text[ValueStart] != '"')
        {
            continue;
        }
        At = NextQuoted(Text, ValueStart, Token);
        if (At == std::string::npos)
        {
            break;
        }
        Values.push_back(Token);
    }
    return Values;
}

std::vector<std::string> ReadSteamLibraries(const std::string& SteamRoot)
{
    std::vector<std::string> Libraries;
    if (SteamRoot.empty())
    {
        return Libraries;
    }
    Libraries.push_back(WithSlashes(SteamRoot));
    const std::optional<std::string> Folders = FileHelper::LoadFileToString(Paths::Combine({SteamRoot, "steamapps", "libraryfolders.vdf"}));
    for (const std::string& Path : Folders ? ReadVdfValues(*Folders, "path") : std::vector<std::string>())
    {
        const std::string Library = WithSlashes(Path);
        const bool bKnown = std::any_of(Libraries.begin(), Libraries.end(), [&](const std::string& Seen) { return EqualsIgnoreCase(Seen, Library); });
        if (!Library.empty() && !bKnown)
        {
            Libraries.push_back(Library);
        }
    }
    return Libraries;
}

std::string FindGameInstallDir(const std::string& SteamRoot, const std::string& AppId)
{
    if (AppId.empty() || AppId.find_first_not_of("0123456789") != std::string::npos)
    {
        return {};
    }
    for (const std::string& Library : ReadSteamLibraries(SteamRoot))
    {
        const std::optional<std::string> Manifest =
            FileHelper::LoadFileToString(Paths::Combine({Library, "steamapps", "appmanifest_" + AppId + ".acf"}));
        const std::vector<std::string> InstallDirs = Manifest ? ReadVdfValues(*Manifest, "installdir") : std::vector<std::string>();
        // The manifest names a folder under common/, never a path of its own.
        if (InstallDirs.empty() || InstallDirs[0].empty() || InstallDirs[0].find_first_of("/\\") != std::string::npos || InstallDirs[0] == "..")
        {
            continue;
        }
        const std::string GameDir = Paths::Combine({Library, "steamapps", "common", InstallDirs[0]});
        if (FileSystem::DirectoryExists(GameDir))
        {
            return GameDir;
        }
    }
    return {};
}

bool UseGameInstall(FMaptornModule& Module, const std::string& InstallDir)
{
    if (InstallDir.empty() || !FileSystem::DirectoryExists(InstallDir))
    {
        return false;
    }
    Module.InstallDir = InstallDir;
    if (!Module.SteamUGC)
    {
        Module.SteamUGC = std::make_unique<FSteamWorkshopDeploy>();
    }
    return true;
}
}
