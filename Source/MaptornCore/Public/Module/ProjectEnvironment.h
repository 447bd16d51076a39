#pragma once

#include "Common/CoreTypes.h"

#include "Platform/MaptornPlatform.h"

#include <string>

namespace Maptorn::ProjectEnvironment
{
inline constexpr const char* GameSettingsSection = "/Script/Kelvor.KelvorGameUserSettings";
inline constexpr const char* ModDirectoryKey = "ModDirectory";
inline constexpr const char* StreamingSettingsSection = "/Script/Engine.StreamingSettings";
inline constexpr const char* EventDrivenLoaderKey = "s.EventDrivenLoaderEnabled";

// The game's folder for this user: <user settings>/Kelvor.
MAPTORNCORE_API std::string GetGameFolder(IMaptornEngine& Engine);

// Where the game keeps this user's mods: the game's "ModDirectory" setting when it names an
// existing folder, else <game folder>/Saved/Mods; the project's Saved folder when the game is
// not installed for this user.
MAPTORNCORE_API std::string FindModDirectory(IMaptornEngine& Engine);

// <absolute project Saved>/Cooked/Depot and <absolute project Saved>/Cooked/Workshop.
MAPTORNCORE_API std::string GetDepotDirectory(IMaptornEngine& Engine);
MAPTORNCORE_API std::string GetWorkshopDirectory(IMaptornEngine& Engine);
// <absolute project Saved>/Cooked/<Platform>, where the editor's cook leaves a platform's packages.
MAPTORNCORE_API std::string GetCookedDirectory(IMaptornEngine& Engine, const std::string& Platform);

// The absolute path of the project's DefaultEngine.ini.
MAPTORNCORE_API std::string GetProjectEngineSettingsPath(IMaptornEngine& Engine);

// Cooked content needs the event-driven loader: sets it to true in DefaultEngine.ini when it is
// false or missing, and logs LogLineFormat (one %s: the file) to LogTemp. Nothing happens
// when it is already true or the configuration system is absent.
MAPTORNCORE_API void EnsureEventDrivenLoaderEnabled(IMaptornEngine& Engine, IMaptornLog& Log, const char* LogLineFormat);

// The two texts that accompany the same write at start-up and before a cook.
inline constexpr const char* StartupStreamingFixLine = "Disabling EventDrivenLoader: %s";
inline constexpr const char* CookStreamingFixLine = "Enabling EventDrivenLoader: %s";

// A REG_SZ value under HKEY_LOCAL_MACHINE; empty on any failure and on systems without a registry.
MAPTORNCORE_API std::string ReadRegistryString(const std::string& KeyPath, const std::string& ValueName);
}
