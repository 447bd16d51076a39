#pragma once

#include "Common/CoreTypes.h"

#include <string>
#include <vector>

namespace Maptorn
{
class FMaptornModule;
}

// Where the Steam copy of the game is installed: Steam's own folder, its library folders
// (steamapps/libraryfolders.vdf) and the game's app manifest in one of them.
namespace Maptorn::GameInstall
{
// Steam's folder: on Windows the registry's "InstallPath" under SOFTWARE\WOW6432Node\Valve\Steam,
// elsewhere ~/.steam/steam; empty when there is none.
MAPTORNCORE_API std::string FindSteamRoot();

// Every library folder Steam knows, Steam's own folder first, without duplicates.
MAPTORNCORE_API std::vector<std::string> ReadSteamLibraries(const std::string& SteamRoot);

// <library>/steamapps/common/<installdir> of the first library holding appmanifest_<AppId>.acf
// whose folder exists; empty when the game is not installed through Steam.
MAPTORNCORE_API std::string FindGameInstallDir(const std::string& SteamRoot, const std::string& AppId);

// The values of quoted keys named Key in a Valve KeyValues text, in order, "\\" read as "\".
MAPTORNCORE_API std::vector<std::string> ReadVdfValues(const std::string& Text, const std::string& Key);

// Gives the module the game folder and, with it, the Steam deploy object that staging needs.
// An empty or missing folder leaves both unset.
MAPTORNCORE_API bool UseGameInstall(FMaptornModule& Module, const std::string& InstallDir);
}
