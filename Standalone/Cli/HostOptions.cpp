#include "Cli/HostOptions.h"

#include "Common/FileHelper.h"
#include "Common/Paths.h"
#include "Common/StringUtil.h"
#include "Platform/IniConfigCache.h"
#include "Platform/RestModioSessionRequests.h"

#include <cctype>
#include <cstdlib>
#include <iostream>

namespace Maptorn::Cli
{
namespace
{
constexpr const char* ConfigSection = "maptorn";

std::string GetEnv(const char* Name)
{
    const char* Value = std::getenv(Name);
    return Value ? Value : "";
}

std::string EnsureTrailingSlash(std::string Dir)
{
    if (!Dir.empty() && Dir.back() != '/')
    {
        Dir += '/';
    }
    return Dir;
}

class FSettingReader
{
public:
    FSettingReader(const std::string& InConfigFile)
        : ConfigFile(InConfigFile)
    {
        if (!ConfigFile.empty())
        {
            if (const std::optional<std::string> Text = FileHelper::LoadFileToString(ConfigFile))
            {
                Document = IniFile::Parse(*Text);
            }
        }
    }

    FSetting Read(const std::string& FlagValue, const char* FlagName, const char* EnvName, const char* FileKey) const
    {
        if (!FlagValue.empty())
        {
            return {FlagValue, FlagName};
        }
        if (std::string Value = GetEnv(EnvName); !Value.empty())
        {
            return {Value, std::string("environment ") + EnvName};
        }
        if (std::optional<std::string> Value = IniFile::FindValue(Document, ConfigSection, FileKey); Value && !Value->empty())
        {
            return {*Value, "config file " + ConfigFile};
        }
        return {"", "not set"};
    }

private:
    std::string ConfigFile;
    IniFile::FDocument Document;
};

std::string DefaultUserSettingsDir()
{
    for (const char* Name : {"LOCALAPPDATA", "XDG_DATA_HOME"})
    {
        if (std::string Value = GetEnv(Name); !Value.empty())
        {
            return Value;
        }
    }
    const std::string Home = GetEnv("HOME");
    return Home.empty() ? std::string("/tmp") : Paths::Combine(Home, ".local/share");
}

// The key is a secret: on the command line every user could read it in the process list, so it
// comes from a file, or from standard input with "-".
bool ReadApiKeyFile(const std::string& File, FSetting& OutKey, std::string& OutError)
{
    std::string Text;
    if (File == "-")
    {
        std::getline(std::cin, Text);
    }
    else if (std::optional<std::string> Loaded = FileHelper::LoadFileToString(File))
    {
        Text = Loaded->substr(0, Loaded->find('\n'));
    }
    else
    {
        OutError = "The API key file " + File + " cannot be read.";
        return false;
    }
    OutKey = {TrimWhitespace(Text), File == "-" ? "--modio-api-key-file (standard input)" : "--modio-api-key-file " + File};
    if (OutKey.Value.empty())
    {
        OutError = File == "-" ? std::string("No API key came on standard input.") : "The API key file " + File + " is empty.";
        return false;
    }
    return true;
}

bool IsDigits(const std::string& Text)
{
    if (Text.empty())
    {
        return false;
    }
    for (unsigned char C : Text)
    {
        if (!std::isdigit(C))
        {
            return false;
        }
    }
    return true;
}
}

std::string DefaultConfigFilePath()
{
    if (std::string XdgConfig = GetEnv("XDG_CONFIG_HOME"); !XdgConfig.empty())
    {
        return Paths::Combine(XdgConfig, "maptorn", "config.ini");
    }
    const std::string Home = GetEnv("HOME");
    return Home.empty() ? std::string() : Paths::Combine(Home, ".config", "maptorn", "config.ini");
}

bool ResolveSettings(const FHostOptions& Options, FResolvedSettings& OutSettings, std::string& OutError)
{
    std::string ConfigFile = !Options.ConfigFile.empty() ? Options.ConfigFile : GetEnv("MAPTORN_CONFIG");
    if (!ConfigFile.empty() && !FileSystem::FileExists(ConfigFile))
    {
        OutError = "The config file " + ConfigFile + " does not exist. Create it or leave out --config.";
        return false;
    }
    if (ConfigFile.empty() && FileSystem::FileExists(DefaultConfigFilePath()))
    {
        ConfigFile = DefaultConfigFilePath();
    }
    OutSettings.ConfigFile = ConfigFile;

    const FSettingReader Reader(ConfigFile);
    OutSettings.Project = Reader.Read(Options.Project, "--project", "MAPTORN_PROJECT", "project");
    OutSettings.Engine = Reader.Read(Options.Engine, "--engine", "MAPTORN_ENGINE", "engine");
    OutSettings.UserSettingsDir = Reader.Read(Options.UserSettingsDir, "--user-settings-dir", "MAPTORN_USER_SETTINGS_DIR", "user_settings_dir");
    OutSettings.SteamAppId = Reader.Read(Options.SteamAppId, "--steam-app-id", "MAPTORN_STEAM_APP_ID", "steam_app_id");
    OutSettings.ModioBaseUrl = Reader.Read(Options.ModioBaseUrl, "--modio-url", "MAPTORN_MODIO_URL", "modio_url");
    OutSettings.ModioGameId = Reader.Read(Options.ModioGameId, "--modio-game-id", "MAPTORN_MODIO_GAME_ID", "modio_game_id");
    OutSettings.ModioApiKey = Reader.Read(Options.ModioApiKey, "the host", "MAPTORN_MODIO_API_KEY", "modio_api_key");
    if (!Options.ModioApiKeyFile.empty() && !ReadApiKeyFile(Options.ModioApiKeyFile, OutSettings.ModioApiKey, OutError))
    {
        return false;
    }

    if (OutSettings.UserSettingsDir.Value.empty())
    {
        OutSettings.UserSettingsDir = {DefaultUserSettingsDir(), "default"};
    }
    OutSettings.UserSettingsDir.Value = EnsureTrailingSlash(OutSettings.UserSettingsDir.Value);

    if (!OutSettings.ModioGameId.Value.empty() && !IsDigits(OutSettings.ModioGameId.Value))
    {
        OutError = "The mod.io game id must be a number (from " + OutSettings.ModioGameId.Source + ").";
        return false;
    }
    if (!OutSettings.SteamAppId.Value.empty() && !IsDigits(OutSettings.SteamAppId.Value))
    {
        OutError = "The Steam application id must be a number (from " + OutSettings.SteamAppId.Source + ").";
        return false;
    }
    if (OutSettings.ModioBaseUrl.Value.empty() && !OutSettings.ModioGameId.Value.empty())
    {
        // mod.io's own per-game origin.
        OutSettings.ModioBaseUrl = {"https://g-" + OutSettings.ModioGameId.Value + ".modapi.io", "default"};
    }
    if (!OutSettings.ModioBaseUrl.Value.empty())
    {
        OutSettings.ModioBaseUrl.Value = ModioRest::ResolveBaseUrl(OutSettings.ModioBaseUrl.Value, 0);
    }
    return true;
}

FMaptornConfig MakeModuleConfig(const FResolvedSettings& Settings)
{
    FMaptornConfig Config;
    Config.SteamAppId = Settings.SteamAppId.Value;
    Config.ModioApiBaseUrl = Settings.ModioBaseUrl.Value;
    Config.ModioGameId = Settings.ModioGameId.Value.empty() ? 0 : std::strtoll(Settings.ModioGameId.Value.c_str(), nullptr, 10);
    Config.ModioApiKey = Settings.ModioApiKey.Value;
    return Config;
}
}
