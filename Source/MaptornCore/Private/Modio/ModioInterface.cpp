#include "Modio/ModioInterface.h"

#include "Common/StringUtil.h"
#include "Content/ModDefinitions.h"
#include "Modio/SourceModReader.h"

#include <algorithm>

namespace Maptorn
{
FModioInterface::FModioInterface(FMaptornPlatform& InPlatform, const FMaptornConfig& InConfig)
    : Platform(InPlatform)
    , Config(InConfig)
    , Http(InPlatform.Http, RequestTimers, &InPlatform.Log)
{
}

FModioInterface::~FModioInterface() = default;

void FModioInterface::QueueDownload(const FSourceModInfo& Mod)
{
    if (ActiveDownload)
    {
        DownloadQueue.push_back(Mod);
        DownloadsRemaining = static_cast<int32>(DownloadQueue.size());
        if (FSourceModInfo* Record = FindCatalogueRecord(Mod.PluginName.substr(3)))
        {
            Record->InstallState = static_cast<uint8>(ESourceModInstallState::DownloadPending);
        }
        return;
    }
    StartDownload(Mod);
}

void FModioInterface::CancelDownloads()
{
    DownloadQueue.clear();
    DownloadsRemaining = 0;
    if (ActiveDownload)
    {
        ActiveDownload->Cancel();
    }
}

void FModioInterface::StartDownload(const FSourceModInfo& Mod)
{
    const std::string ModId = StartsWithIgnoreCase(Mod.PluginName, "UGC") ? Mod.PluginName.substr(3) : Mod.PluginName;
    if (FSourceModInfo* Record = FindCatalogueRecord(ModId))
    {
        Record->InstallState = static_cast<uint8>(ESourceModInstallState::Downloading);
    }
    ActiveDownload = std::make_shared<FPluginModDownload>(Platform, Http, RequestTimers);
    ActiveDownload->ExpectedMd5 = Mod.FileMd5;
    ActiveDownload->DownloadMod(Mod.BinaryUrl, Mod.PluginName, VersionNumber(Mod.Version), ModId);
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
