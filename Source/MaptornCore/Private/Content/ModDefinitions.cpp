#include "Content/ModDefinitions.h"

#include "Common/Paths.h"
#include "Common/StringUtil.h"
#include "Modio/ModioInterface.h"

#include <cctype>

namespace Maptorn
{
namespace
{
// A mod id can only name a plug-in mount when it is a plain word: no separators, dots or blanks.
bool IsUsableModId(const std::string& ModId)
{
    if (ModId.empty())
    {
        return false;
    }
    for (unsigned char C : ModId)
    {
        if (!std::isalnum(C) && C != '_' && C != '-')
        {
            return false;
        }
    }
    return true;
}
}

std::string MakeUGCPluginName(const std::string& ModId)
{
    return Printf("UGC%s", ModId.c_str());
}

std::shared_ptr<FKelvorDefinition> LoadAnyModDefinition(FMaptornPlatform& Platform, const std::string& ModId)
{
    if (!IsUsableModId(ModId))
    {
        Platform.Log.Log(LogCategory::LogTemp, ELogVerbosity::Error, Printf("Cannot find Definition for %s", ModId.c_str()));
        return nullptr;
    }
    return Platform.Definitions.LoadObject(Printf("/UGC%s/definition.definition", ModId.c_str()));
}

std::shared_ptr<FKelvorDefinition> LoadModDefinition(FMaptornPlatform& Platform, const std::string& ModId, EModType Kind)
{
    std::shared_ptr<FKelvorDefinition> Definition = LoadAnyModDefinition(Platform, ModId);
    if (!Definition || Definition->Class != Kind)
    {
        return nullptr;
    }
    return Definition;
}

bool CreateUGCPlugin(FMaptornPlatform& Platform, FModioInterface& Client, const std::string& ModId, EModType Type)
{
    const std::string PluginName = MakeUGCPluginName(ModId);
    const std::optional<FPluginInfo> PluginBrowser = Platform.Engine.FindPlugin("PluginBrowser");
    const std::string TemplateDir =
        PluginBrowser ? Paths::Combine(PluginBrowser->BaseDir, "Templates", "ContentOnly") : std::string();

    FPluginDescriptor Descriptor;
    Descriptor.FriendlyName = PluginName;
    Descriptor.bCanContainContent = true;
    std::string FailReason;
    if (!Platform.Engine.CreateAndLoadNewPlugin(PluginName, Platform.Engine.ProjectPluginsDir(), TemplateDir, Descriptor, FailReason))
    {
        Platform.Log.Log(LogCategory::MaptornLog, ELogVerbosity::Error,
            Printf("Failed to create plugin %s: %s", PluginName.c_str(), FailReason.c_str()));
        return false;
    }
    if (const std::optional<FPluginInfo> Created = Platform.Engine.FindPlugin(PluginName))
    {
        Client.CreatedMods[ModId] = *Created;
    }

    std::shared_ptr<FKelvorDefinition> Definition =
        Platform.Definitions.CreateDefinition(Printf("/%s/definition", PluginName.c_str()), Type);
    if (!Definition)
    {
        return false;
    }
    Definition->Label = PluginName;
    Platform.Definitions.MarkPackageDirty(*Definition);
    return Platform.Definitions.SavePackage(*Definition);
}
}
