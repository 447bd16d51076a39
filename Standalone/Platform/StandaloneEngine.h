#pragma once

#include "Platform/EnginePort.h"
#include "Platform/IniConfigCache.h"

#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace Maptorn
{
struct FStandaloneEngineSettings
{
    std::string ProjectFile;      // absolute path of the .uproject
    std::string EngineRoot;       // folder that holds Engine/
    std::string UserSettingsDir;  // the user's settings folder, ends with "/"
    std::string BaseDir;          // absolute, ends with "/"
};

// The engine as the standalone host sees it: a project folder with its .uproject, an engine
// folder with Engine/Build/Build.version and Engine/Plugins, and an INI config cache. Every
// directory it answers is absolute and ends with "/".
class FStandaloneEngine final : public IMaptornEngine
{
public:
    explicit FStandaloneEngine(const FStandaloneEngineSettings& Settings);

    std::string GetBaseDir() override;
    std::string ProjectDir() override;
    std::string GetProjectFilePath() override;
    std::string ProjectContentDir() override;
    std::string ProjectConfigDir() override;
    std::string ProjectSavedDir() override;
    std::string ProjectPluginsDir() override;
    std::string EngineDir() override;
    std::string UserSettingsDir() override;
    std::string EngineUserDir() override;

    // Empty when Build.version is missing or malformed: the host then has no engine it can
    // trust, and whoever needs the version reports that instead of using a guessed one.
    std::string EngineVersionString() override;

    std::optional<FPluginInfo> FindPlugin(const std::string& Name) override;
    // Project plug-ins first, then engine ones, each sorted by name.
    std::vector<FPluginInfo> GetEnabledPlugins() override;
    bool CreateAndLoadNewPlugin(const std::string& Name, const std::string& PluginsParentDir,
        const std::string& TemplateDir, const FPluginDescriptor& Descriptor, std::string& OutFailReason) override;

    IConfigCache* GetConfig() override;

private:
    struct FEngineVersion
    {
        int Major = 0;
        int Minor = 0;
        std::string Text;
    };

    struct FCatalogueEntry
    {
        FPluginInfo Info;
        bool bIsProjectPlugin = false;
    };

    static std::optional<FEngineVersion> ReadEngineVersion(const std::string& EngineDir);
    void ScanPlugins();
    void AddToCatalogueLocked(FCatalogueEntry Entry);
    std::optional<std::string> CheckNewPluginLocked(const std::string& Name, const std::string& TargetDir,
        const std::string& TemplateDir) const;

    std::string BaseDir;
    std::string ProjectFile;
    std::string ProjectDirectory;
    std::string EngineDirectory;
    std::string UserSettingsDirectory;
    std::optional<FEngineVersion> Version;

    FIniConfigCache ConfigCache;

    std::mutex CatalogueMutex;
    std::vector<FCatalogueEntry> Catalogue; // project plug-ins, then engine ones, each sorted by name
};
}
