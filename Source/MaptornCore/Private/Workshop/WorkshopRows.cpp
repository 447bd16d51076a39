#include "Workshop/WorkshopRows.h"

#include "Common/FileHelper.h"
#include "Common/StringUtil.h"
#include "Modio/ModioInterface.h"
#include "Module/MaptornModule.h"
#include "WorkshopSupport.h"

#include <utility>

namespace Maptorn
{
namespace
{
void OpenModPage(const std::string& Url)
{
    if (FMaptornModule* Module = WorkshopSupport::FindModule())
    {
        Module->GetPlatform().Dialogs.LaunchURL(Url);
    }
}
}

std::string WorkshopRowArt::LogoPath(const FSourceModInfo& Mod)
{
    return !Mod.ThumbnailPath.empty() && FileSystem::FileExists(Mod.ThumbnailPath) ? Mod.ThumbnailPath : std::string();
}

EVisibility WorkshopRowArt::PCBadgeVisibility(const FSourceModInfo& Mod)
{
    return Mod.bWindows ? EVisibility::Visible : EVisibility::Collapsed;
}

EVisibility WorkshopRowArt::AndroidBadgeVisibility(const FSourceModInfo& Mod)
{
    return Mod.bOculus ? EVisibility::Visible : EVisibility::Collapsed;
}

FWorkshopUploadEntry::FWorkshopUploadEntry(FSourceModInfo InMod, std::weak_ptr<void> InOwner, FOnSelect InOnSelect)
    : Mod(std::move(InMod))
    , Owner(std::move(InOwner))
    , OnSelect(std::move(InOnSelect))
{
}

FWorkshopColor FWorkshopUploadEntry::GetSelectColor() const
{
    const FModioInterface* Client = WorkshopSupport::FindClient();
    if (Client && EqualsIgnoreCase(Mod.PluginName, "UGC" + Client->SelectedModId))
    {
        return WorkshopColors::SelectedRow;
    }
    return FWorkshopColor::FromHex(WorkshopColors::UnselectedRowHex);
}

bool FWorkshopUploadEntry::IsButtonEnabled() const
{
    const FModioInterface* Client = WorkshopSupport::FindClient();
    return Client && !Client->bIsModioBusy;
}

std::string FWorkshopUploadEntry::GetLogoPath() const
{
    return WorkshopRowArt::LogoPath(Mod);
}

EVisibility FWorkshopUploadEntry::GetPCBadgeVisibility() const
{
    return WorkshopRowArt::PCBadgeVisibility(Mod);
}

EVisibility FWorkshopUploadEntry::GetAndroidBadgeVisibility() const
{
    return WorkshopRowArt::AndroidBadgeVisibility(Mod);
}

bool FWorkshopUploadEntry::OnModButtonClicked() const
{
    if (!Owner.expired() && OnSelect)
    {
        // Copies: the window may rebuild its rows, this one included, while it handles the click.
        const FOnSelect Callback = OnSelect;
        Callback(WorkshopSupport::ModIdOf(Mod.PluginName));
    }
    return true;
}

bool FWorkshopUploadEntry::OnOpenModPageClicked() const
{
    OpenModPage(Mod.ProfileUrl);
    return true;
}

FWorkshopSourcePluginEntry::FWorkshopSourcePluginEntry(FSourceModInfo InMod, std::weak_ptr<void> InOwner, FOnAdd InOnAdd)
    : Owner(std::move(InOwner))
    , OnAdd(std::move(InOnAdd))
{
    UpdateModInfo(InMod);
}

void FWorkshopSourcePluginEntry::UpdateModInfo(const FSourceModInfo& InMod)
{
    Mod = InMod;
    Status = InMod.InstallState;
}

std::string FWorkshopSourcePluginEntry::GetStatusText() const
{
    return Printf("Status: %s", InstallStateWord(Status));
}

bool FWorkshopSourcePluginEntry::IsButtonEnabled() const
{
    return Status == static_cast<uint8>(ESourceModInstallState::NotInstalled) ||
           Status == static_cast<uint8>(ESourceModInstallState::RequiresUpdate);
}

std::string FWorkshopSourcePluginEntry::GetLogoPath() const
{
    return WorkshopRowArt::LogoPath(Mod);
}

EVisibility FWorkshopSourcePluginEntry::GetPCBadgeVisibility() const
{
    return WorkshopRowArt::PCBadgeVisibility(Mod);
}

EVisibility FWorkshopSourcePluginEntry::GetAndroidBadgeVisibility() const
{
    return WorkshopRowArt::AndroidBadgeVisibility(Mod);
}

bool FWorkshopSourcePluginEntry::OnModButtonClicked() const
{
    if (!Owner.expired() && OnAdd)
    {
        // Copies: the window may rebuild its rows, this one included, while it handles the click.
        const FOnAdd Callback = OnAdd;
        const FSourceModInfo Copy = Mod;
        Callback(Copy);
    }
    return true;
}

bool FWorkshopSourcePluginEntry::OnOpenModPageClicked() const
{
    OpenModPage(Mod.ProfileUrl);
    return true;
}
}
