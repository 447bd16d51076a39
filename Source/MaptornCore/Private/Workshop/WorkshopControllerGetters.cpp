// The getters the window binds to every frame: status, account, create page and the upload
// page's visibilities. None changes state.
#include "Workshop/WorkshopController.h"

#include "Common/FileHelper.h"
#include "Common/StringUtil.h"
#include "Modio/ModioFormatChecks.h"
#include "Modio/ModioInterface.h"
#include "Module/MaptornModule.h"
#include "WorkshopSupport.h"

namespace Maptorn
{
namespace
{
EVisibility VisibleIf(bool bVisible)
{
    return bVisible ? EVisibility::Visible : EVisibility::Hidden;
}

ECheckBoxState CheckedIf(bool bChecked)
{
    return bChecked ? ECheckBoxState::Checked : ECheckBoxState::Unchecked;
}

// The chosen mod is one of the user's own, and nothing else runs on mod.io.
bool CanActOnChosenMod(const FModioInterface& Client)
{
    return !Client.bIsModioBusy && WorkshopSupport::FindOwnMod(Client, Client.SelectedModId) != nullptr;
}
}

EVisibility FWorkshopController::GetBusyVisibility() const
{
    const FMaptornModule* Module = WorkshopSupport::FindModule();
    return Module && Module->bBusy ? EVisibility::Visible : EVisibility::Collapsed;
}

EVisibility FWorkshopController::GetStandbyVisibility() const
{
    const FMaptornModule* Module = WorkshopSupport::FindModule();
    const bool bWorking = Module && (Module->bBusy || (Module->SteamUGC && Module->SteamUGC->bUploadInProgress));
    return bWorking ? EVisibility::Collapsed : EVisibility::Visible;
}

std::string FWorkshopController::GetConfigState() const
{
    FMaptornModule* Module = WorkshopSupport::FindModule();
    const std::optional<FPluginInfo> Plugin = Module ? Module->GetPlatform().Engine.FindPlugin(FMaptornModule::ModuleName) : std::nullopt;
    return Printf("v%s", Plugin ? Plugin->VersionName.c_str() : "");
}

int32 FWorkshopController::GetTabIndex() const
{
    const FMaptornModule* Module = WorkshopSupport::FindModule();
    if (!Module || (Module->ModioClient && !Module->ModioClient->bIsLoggedIn))
    {
        return 0;
    }
    return Module->TabIndex;
}

EVisibility FWorkshopController::IsModioBusy() const
{
    const FModioInterface* Client = WorkshopSupport::FindClient();
    return Client && Client->bIsModioBusy ? EVisibility::Hidden : EVisibility::Visible;
}

EVisibility FWorkshopController::IsLoggingIn() const
{
    const FModioInterface* Client = WorkshopSupport::FindClient();
    return VisibleIf(Client && Client->bIsModioBusy);
}

EVisibility FWorkshopController::ShowLoginButton() const
{
    const FModioInterface* Client = WorkshopSupport::FindClient();
    if (!Client)
    {
        return EVisibility::Visible;
    }
    if (Client->bIsModioBusy)
    {
        return EVisibility::Hidden;
    }
    return VisibleIf(IsValidEmailAddressFormat(Client->EmailAddress) || IsValidSecurityCodeFormat(Client->AuthCode) || Client->bIsLoggedIn);
}

bool FWorkshopController::IsAuthenticated() const
{
    const FModioInterface* Client = WorkshopSupport::FindClient();
    return Client && Client->bIsLoggedIn;
}

int32 FWorkshopController::GetLoginIndex() const
{
    const FModioInterface* Client = WorkshopSupport::FindClient();
    if (!Client)
    {
        return 0;
    }
    // 3 is the "Logged In" slot, which the client's own step never holds.
    return Client->bIsLoggedIn ? 3 : Client->LoginIndex;
}

std::string FWorkshopController::GetLoginErrorText() const
{
    const FModioInterface* Client = WorkshopSupport::FindClient();
    return Client ? Client->LoginError : std::string();
}

std::string FWorkshopController::GetSourceQueryErrorText() const
{
    const FModioInterface* Client = WorkshopSupport::FindClient();
    return Client && !Client->LastSourceQueryError.empty() ? "The catalogue could not be loaded: " + Client->LastSourceQueryError : std::string();
}

std::string FWorkshopController::GetDownloadErrorText() const
{
    const FModioInterface* Client = WorkshopSupport::FindClient();
    return Client ? Client->LastDownloadError : std::string();
}

std::string FWorkshopController::GetCreateModErrorText() const
{
    const FModioInterface* Client = WorkshopSupport::FindClient();
    return Client ? Client->CreateModError : std::string();
}

EVisibility FWorkshopController::GetCreateModSpinnerVisibility() const
{
    const FModioInterface* Client = WorkshopSupport::FindClient();
    return VisibleIf(Client && Client->bIsModioBusy);
}

EVisibility FWorkshopController::GetCreateModVisibility() const
{
    const FModioInterface* Client = WorkshopSupport::FindClient();
    if (!Client)
    {
        return EVisibility::Visible;
    }
    if (Client->bIsModioBusy)
    {
        return EVisibility::Hidden;
    }
    return VisibleIf(!Client->NewModName.empty() && !Client->NewModSummary.empty() && Client->bIsLoggedIn);
}

EModType FWorkshopController::GetModType() const
{
    return ModType;
}

std::string FWorkshopController::GetModId() const
{
    const FModioInterface* Client = WorkshopSupport::FindClient();
    return Client ? Client->SelectedModId : std::string();
}

bool FWorkshopController::CanBuildSource() const
{
    const FModioInterface* Client = WorkshopSupport::FindClient();
    const FSourceModInfo* Mod = Client ? WorkshopSupport::FindOwnMod(*Client, Client->SelectedModId) : nullptr;
    return Mod && Mod->ModType == EModType::Mod;
}

EVisibility FWorkshopController::GetUploadModVisibility() const
{
    const FModioInterface* Client = WorkshopSupport::FindClient();
    return VisibleIf(Client && CanActOnChosenMod(*Client) && (Client->bBuildAndroid || Client->bBuildWindows || Client->bShareSource));
}

EVisibility FWorkshopController::GetStageModVisibility() const
{
    const FModioInterface* Client = WorkshopSupport::FindClient();
    return VisibleIf(Client && CanActOnChosenMod(*Client) && Client->bBuildWindows && !Client->StageDir.empty() &&
                     FileSystem::DirectoryExists(Client->StageDir));
}

EVisibility FWorkshopController::GetModUploadProgressVisibility() const
{
    const FModioInterface* Client = WorkshopSupport::FindClient();
    return VisibleIf(Client && Client->bIsModioBusy && Client->bIsUploading);
}

ECheckBoxState FWorkshopController::IsWindowsBuild() const
{
    const FModioInterface* Client = WorkshopSupport::FindClient();
    return CheckedIf(Client && Client->bBuildWindows);
}

ECheckBoxState FWorkshopController::IsAndroidBuild() const
{
    const FModioInterface* Client = WorkshopSupport::FindClient();
    return CheckedIf(Client && Client->bBuildAndroid);
}

ECheckBoxState FWorkshopController::IsSharingSource() const
{
    const FModioInterface* Client = WorkshopSupport::FindClient();
    return CheckedIf(Client && Client->bShareSource);
}
}
