#pragma once

#include "Module/MaptornConfig.h"

#include <optional>
#include <string>
#include <vector>

namespace Maptorn::Cli
{
// What the command line says; empty strings were not given.
struct FHostOptions
{
    std::string Project;
    std::string Engine;
    std::string ConfigFile;
    std::string UserSettingsDir;
    std::string SteamAppId;
    std::string ModioBaseUrl;
    std::string ModioGameId;
    std::string ModioApiKey;        // set by the host itself (the demo); never a command-line flag
    std::string ModioApiKeyFile;    // a file holding the key, or "-" for standard input
    std::string LogFile;
    bool bAssumeYes = false;
    bool bVerbose = false;
    bool bJson = false;           // --json before the command: the command prints JSON
};

// One configuration value and where it came from, for `maptorn env`.
struct FSetting
{
    std::string Value;
    std::string Source;   // "--flag", "environment NAME", "config file PATH", "default", or "not set"
};

struct FResolvedSettings
{
    FSetting Project;
    FSetting Engine;
    FSetting UserSettingsDir;
    FSetting SteamAppId;
    FSetting ModioBaseUrl;
    FSetting ModioGameId;
    FSetting ModioApiKey;
    std::string ConfigFile;   // the file read, empty when none
};

// Flags win over environment variables, which win over the config file, which wins over defaults.
// Fails with a message a modder can act on when a value is malformed.
bool ResolveSettings(const FHostOptions& Options, FResolvedSettings& OutSettings, std::string& OutError);

FMaptornConfig MakeModuleConfig(const FResolvedSettings& Settings);

// The config file looked for when none is named: $XDG_CONFIG_HOME/maptorn/config.ini or
// ~/.config/maptorn/config.ini.
std::string DefaultConfigFilePath();
}
