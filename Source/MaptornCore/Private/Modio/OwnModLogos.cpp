// Own mods' logos through the session's media call: the engine plug-in downloads each into its own
// cache, and the upload rows show that file.

#include "Common/FileHelper.h"
#include "Common/StringUtil.h"
#include "Content/ModDefinitions.h"
#include "Modio/ModioInterface.h"

#include <algorithm>

namespace Maptorn
{
void FModioInterface::FetchOwnModLogos()
{
    IModioSession* Session = Platform.ModioSession;
    for (FSourceModInfo& Mod : OwnMods)
    {
        const std::string ModId = Mod.PluginName.substr(3);
        if (const auto Known = OwnModLogos.find(ModId); Known != OwnModLogos.end())
        {
            Mod.ThumbnailPath = Known->second;
            continue;
        }
        const std::optional<int64> Id = ParseModId(ModId);
        if (!Session || !Id || PendingOwnModLogos.contains(ModId))
        {
            continue;
        }
        std::weak_ptr<bool> Alive = AliveToken;
        const bool bAsked = Session->GetModLogoAsync(*Id, [this, Alive, ModId](FModioErrorCode ErrorCode, std::optional<std::string> ImagePath) {
            if (!Alive.expired())
            {
                PendingOwnModLogos.erase(ModId);
                OnOwnModLogo(ModId, ErrorCode, ImagePath);
            }
        });
        if (bAsked)
        {
            PendingOwnModLogos.insert(ModId);
        }
    }
}

void FModioInterface::OnOwnModLogo(const std::string& ModId, const FModioErrorCode& ErrorCode, const std::optional<std::string>& ImagePath)
{
    if (ErrorCode || !ImagePath || !FileSystem::FileExists(*ImagePath))
    {
        LogTemp(Printf("The logo of mod %s could not be downloaded (%d %s)", ModId.c_str(), ErrorCode.GetValue(), ErrorCode.GetErrorMessage().c_str()));
        return;
    }
    OwnModLogos[ModId] = *ImagePath;
    const std::string PluginName = MakeUGCPluginName(ModId);
    const auto Row = std::find_if(OwnMods.begin(), OwnMods.end(),
        [&PluginName](const FSourceModInfo& Mod) { return EqualsIgnoreCase(Mod.PluginName, PluginName); });
    if (Row != OwnMods.end())
    {
        Row->ThumbnailPath = *ImagePath;
        OnUploadListUpdated.Broadcast();
    }
}
}
