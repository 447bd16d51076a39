#pragma once

#include "Common/CoreTypes.h"

#include "Platform/ConfigCachePort.h"

#include <optional>
#include <string>
#include <vector>

namespace Maptorn
{
// What the plug-in manager knows of one plug-in.
struct MAPTORNCORE_API FPluginInfo
{
    std::string Name;            // the descriptor's file name without extension, also the content mount "/Name/"
    std::string FriendlyName;
    bool bCanContainContent = false;
    bool bEnabled = false;
    std::string BaseDir;         // folder holding the descriptor
    std::string DescriptorFileName;
    std::string ContentDir;      // BaseDir + "/Content"
    std::string VersionName;
};

// The fresh descriptor written for a plug-in created from a template.
struct MAPTORNCORE_API FPluginDescriptor
{
    std::string FriendlyName;
    std::string Description;
    std::string Category = "Other";
    std::string CreatedBy;
    std::string VersionName = "1.0";
    bool bCanContainContent = true;
};

// Stands for the engine's paths (FPaths), its version, the plug-in manager and the config cache.
// Directory getters may answer relative paths, as the engine does; callers make them absolute
// with the base directory where they need to.
class MAPTORNCORE_API IMaptornEngine
{
public:
    virtual ~IMaptornEngine() = default;

    // Folder that relative paths are taken against (FPlatformProcess::BaseDir).
    virtual std::string GetBaseDir() = 0;
    virtual std::string ProjectDir() = 0;
    virtual std::string GetProjectFilePath() = 0;
    virtual std::string ProjectContentDir() = 0;
    virtual std::string ProjectConfigDir() = 0;
    virtual std::string ProjectSavedDir() = 0;
    virtual std::string ProjectPluginsDir() = 0;
    virtual std::string EngineDir() = 0;
    // The user's per-application settings folder (%LOCALAPPDATA% on Windows), ending in "/".
    virtual std::string UserSettingsDir() = 0;
    // The engine's per-user folder: <user settings>/UnrealEngine/<major.minor>/.
    virtual std::string EngineUserDir() = 0;

    // Like "5.1.1-23901901+++UE5+Release-5.1".
    virtual std::string EngineVersionString() = 0;

    // Plug-in manager.
    virtual std::optional<FPluginInfo> FindPlugin(const std::string& Name) = 0;
    virtual std::vector<FPluginInfo> GetEnabledPlugins() = 0;
    // Copies the template folder into PluginsParentDir/Name, writes a fresh descriptor and mounts
    // the plug-in. False, with nothing left behind, when the name is taken or a step fails.
    virtual bool CreateAndLoadNewPlugin(const std::string& Name, const std::string& PluginsParentDir,
        const std::string& TemplateDir, const FPluginDescriptor& Descriptor, std::string& OutFailReason) = 0;

    // The configuration cache; null when the engine's configuration system is not available.
    virtual IConfigCache* GetConfig() = 0;
};
}
