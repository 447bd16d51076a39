#include "Modio/ModioInterface.h"

#include "Common/StringUtil.h"
#include "Content/ModDefinitions.h"

#include <algorithm>

namespace Maptorn
{
FModioInterface::FModioInterface(FMaptornPlatform& InPlatform, const FMaptornConfig& InConfig)
    : Platform(InPlatform)
    , Config(InConfig)
{
}

FModioInterface::~FModioInterface() = default;

void FModioInterface::StartNextPlatformUpload()
{
    const auto Entry = std::find_if(PendingPlatforms.begin(), PendingPlatforms.end(),
        [this](const auto& Pending) { return Pending.first == CurrentPlatform; });
    if (Entry != PendingPlatforms.end())
    {
        UploadPlatform(Entry->first, Entry->second);
    }
}

void FModioInterface::UploadPlatform(uint8 /*PlatformValue*/, const std::string& /*Directory*/)
{
    // Needs the mod-file upload, which this build does not carry yet.
}

void FModioInterface::StartDownload(const FSourceModInfo& /*Mod*/)
{
    // Needs the ranged download, which this build does not carry yet.
}

FSourceModInfo* FModioInterface::FindCatalogueRecord(const std::string& ModId)
{
    const std::string PluginName = MakeUGCPluginName(ModId);
    for (FSourceModInfo& Record : LastSourceModList.Mods)
    {
        if (EqualsIgnoreCase(Record.PluginName, PluginName))
        {
            return &Record;
        }
    }
    return nullptr;
}
}
