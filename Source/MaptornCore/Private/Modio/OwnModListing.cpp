#include "Common/StringUtil.h"
#include "Modio/ModioInterface.h"
#include "Modio/SourceModReader.h"

#include <nlohmann/json.hpp>

namespace Maptorn
{
namespace
{
// A listed mod as the mod object of a mod.io answer, so that one reader makes every record. The
// plug-in's mod profile carries no platform list, so own mods listed this way show no platform badge.
nlohmann::json ModObjectOf(const FModioModInfo& Mod)
{
    nlohmann::json Tags = nlohmann::json::array();
    for (const std::string& Tag : Mod.Tags)
    {
        Tags.push_back({{"name", Tag}});
    }
    nlohmann::json Object = {
        {"id", Mod.ModId},
        {"name", Mod.Name},
        {"summary", Mod.Summary},
        {"profile_url", Mod.ProfileUrl},
        {"submitted_by", {{"username", Mod.SubmittedBy}}},
        {"tags", std::move(Tags)},
    };
    if (!Mod.FileVersion.empty() || Mod.FileSize > 0)
    {
        Object["modfile"] = {{"version", Mod.FileVersion}, {"filesize", Mod.FileSize}};
    }
    return Object;
}
}

bool FModioInterface::RefreshOwnModsThroughSession(IModioSession& Session)
{
    const uint64 Generation = ++OwnModRefreshGeneration;
    const bool bStarted = Session.ListUserCreatedModsAsync(
        [this, Alive = std::weak_ptr<bool>(AliveToken), Generation](FModioErrorCode ErrorCode, std::optional<std::vector<FModioModInfo>> Mods) {
            if (!Alive.expired() && Generation == OwnModRefreshGeneration)
            {
                bOwnModRefreshBusy = false;
                OnOwnModsListed(ErrorCode, Mods);
            }
        });
    bOwnModRefreshBusy = bStarted;
    return bStarted;
}

void FModioInterface::OnOwnModsListed(const FModioErrorCode& ErrorCode, const std::optional<std::vector<FModioModInfo>>& Mods)
{
    // A refused list is no list of mods: the rows shown stay as they are.
    if (ErrorCode || !Mods)
    {
        LogTemp(Printf("mod.io refused the list of your mods (%d %s)", ErrorCode.GetValue(), ErrorCode.GetErrorMessage().c_str()),
            ELogVerbosity::Warning);
        return;
    }
    OwnModVersions.clear();
    OwnMods.clear();
    for (const FModioModInfo& Mod : *Mods)
    {
        // Deleted mods cannot take a new file.
        if (Mod.ModId > 0 && Mod.Status != 3)
        {
            KeepOwnMod(ReadSourceModInfo(Platform, *this, ModObjectOf(Mod)));
        }
    }
    FetchOwnModLogos();
    OnUploadListUpdated.Broadcast();
}
}
