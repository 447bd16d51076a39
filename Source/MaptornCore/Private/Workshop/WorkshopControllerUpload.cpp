// The upload and stage page's handlers: the chosen mod, the platform and share choices, the stage
// folder, the own-mod list, and starting the orchestration that uploads or stages.
#include "Workshop/WorkshopController.h"

#include "Common/FileHelper.h"
#include "Common/Paths.h"
#include "Common/StringUtil.h"
#include "Content/ModDefinitions.h"
#include "Modio/ModioInterface.h"
#include "Module/MaptornModule.h"
#include "WorkshopSupport.h"

namespace Maptorn
{
namespace
{
// Sets one of the client's build choices and logs "Checked <what>" / "Unchecked <what>".
void SetBuildChoice(bool FModioInterface::*Choice, ECheckBoxState State, const char* What)
{
    if (FModioInterface* Client = WorkshopSupport::FindClient())
    {
        const bool bChecked = State == ECheckBoxState::Checked;
        Client->*Choice = bChecked;
        WorkshopSupport::LogWindow(ELogVerbosity::Log, Printf("%s %s", bChecked ? "Checked" : "Unchecked", What));
    }
}

ECheckBoxState Toggled(bool FModioInterface::*Choice)
{
    const FModioInterface* Client = WorkshopSupport::FindClient();
    return Client && !(Client->*Choice) ? ECheckBoxState::Checked : ECheckBoxState::Unchecked;
}

// Starts the upload orchestration for the chosen mod, staging instead of uploading when asked.
void StartUpload(bool bStageOnly)
{
    FModioInterface* Client = WorkshopSupport::FindClient();
    if (Client && !Client->SelectedModId.empty())
    {
        Client->bStageOnly = bStageOnly;
        Client->UploadMod(Client->SelectedModId);
    }
}
}

std::string FWorkshopController::GetChangeNoteBoxText() const
{
    const FModioInterface* Client = WorkshopSupport::FindClient();
    return Client ? Client->UploadChangelog : std::string();
}

void FWorkshopController::OnModioNotesTextChanged(const std::string& Text)
{
    if (FModioInterface* Client = WorkshopSupport::FindClient())
    {
        Client->UploadChangelog = Text;
    }
}

void FWorkshopController::OnModioVersionTextChanged(const std::string& Text)
{
    if (FModioInterface* Client = WorkshopSupport::FindClient())
    {
        Client->Version = Text;
    }
}

void FWorkshopController::OnModioBuildWindowsStateChanged(ECheckBoxState State)
{
    SetBuildChoice(&FModioInterface::bBuildWindows, State, "windows build");
}

void FWorkshopController::OnModioBuildAndroidStateChanged(ECheckBoxState State)
{
    SetBuildChoice(&FModioInterface::bBuildAndroid, State, "android build");
}

void FWorkshopController::OnModioBuildSourceStateChanged(ECheckBoxState State)
{
    SetBuildChoice(&FModioInterface::bShareSource, State, "Share Source");
}

bool FWorkshopController::OnModioBuildWindowsStateChanged()
{
    OnModioBuildWindowsStateChanged(Toggled(&FModioInterface::bBuildWindows));
    return true;
}

bool FWorkshopController::OnModioBuildAndroidStateChanged()
{
    OnModioBuildAndroidStateChanged(Toggled(&FModioInterface::bBuildAndroid));
    return true;
}

bool FWorkshopController::OnModioBuildSourceStateChanged()
{
    OnModioBuildSourceStateChanged(Toggled(&FModioInterface::bShareSource));
    return true;
}

void FWorkshopController::OnSelectUploadModClicked(const std::string& ModId)
{
    FModioInterface* Client = WorkshopSupport::FindClient();
    if (!Client)
    {
        return;
    }
    if (ModId.empty())
    {
        Client->SelectedModId.clear();
        RememberShareChoice(ModId, nullptr);
        return;
    }
    Client->SelectedModId = ModId;
    const FSourceModInfo* OwnMod = WorkshopSupport::FindOwnMod(*Client, ModId);
    // Sharing source is for content mods only.
    if (Client->bShareSource && (!OwnMod || OwnMod->ModType != EModType::Mod))
    {
        Client->bShareSource = false;
    }
    RememberShareChoice(ModId, OwnMod);
}

void FWorkshopController::RememberShareChoice(const std::string& ModId, const FSourceModInfo* OwnMod)
{
    FMaptornModule* Module = WorkshopSupport::FindModule();
    const std::shared_ptr<FKelvorDefinition> Definition = Module && !ModId.empty() ? LoadAnyModDefinition(Module->GetPlatform(), ModId) : nullptr;
    ShareDefinition = Definition;
    bShareChecked = !ModId.empty();
    // The definition decides while it can be read; mod.io's type for the mod otherwise.
    bShareAllowed = Definition ? Definition->IsContentMod() : (OwnMod && OwnMod->ModType == EModType::Mod);
}

void FWorkshopController::OnUploadSelectionChanged(const std::string& Item)
{
    // The label shows the chosen id, which the client keeps.
    OnSelectUploadModClicked(Item);
}

bool FWorkshopController::SelectStageDir()
{
    FMaptornModule* Module = WorkshopSupport::FindModule();
    FModioInterface* Client = Module ? Module->ModioClient.get() : nullptr;
    if (!Client)
    {
        return true;
    }
    FMaptornPlatform& Platform = Module->GetPlatform();
    const std::optional<std::string> Picked = Platform.Dialogs.OpenDirectoryDialog("Select your Steam Kelvor folder", WorkshopSupport::ProjectFolder(Platform.Engine));
    if (Picked && !Picked->empty() && FileSystem::DirectoryExists(*Picked))
    {
        Client->StageDir = *Picked;
        WorkshopSupport::LogWindow(ELogVerbosity::Log, Printf("Stage Dir: %s", Picked->c_str()));
    }
    return true;
}

bool FWorkshopController::UploadModButtonClicked()
{
    StartUpload(false);
    return true;
}

bool FWorkshopController::StageModButtonClicked()
{
    // The same orchestration, which stages into StageDir instead of uploading.
    StartUpload(true);
    return true;
}

bool FWorkshopController::OnRefreshUploadListClicked()
{
    if (CanRefreshUploadList())
    {
        WorkshopSupport::FindClient()->RefreshOwnMods();
    }
    return true;
}

bool FWorkshopController::CanRefreshUploadList() const
{
    const FModioInterface* Client = WorkshopSupport::FindClient();
    return Client && Client->bIsLoggedIn && !Client->bOwnModRefreshBusy;
}

void FWorkshopController::RefreshUploadModList()
{
    MakeUploadRows();
    Notify(ViewEvents.UploadRowsRebuilt);
}

void FWorkshopController::MakeUploadRows()
{
    UploadRows.clear();
    if (const FModioInterface* Client = WorkshopSupport::FindClient())
    {
        for (const FSourceModInfo& Mod : Client->OwnMods)
        {
            UploadRows.emplace_back(Mod, AliveToken, [this](const std::string& ModId) { OnSelectUploadModClicked(ModId); });
        }
    }
}

const std::vector<std::string>& FWorkshopController::GetModIds()
{
    const FModioInterface* Client = WorkshopSupport::FindClient();
    // Rebuilt only when the count differs: the combo keeps its items (and selection) otherwise.
    if (Client && ModIdItems.size() != Client->OwnMods.size())
    {
        ModIdItems.clear();
        for (const FSourceModInfo& Mod : Client->OwnMods)
        {
            ModIdItems.push_back(WorkshopSupport::ModIdOf(Mod.PluginName));
        }
    }
    return ModIdItems;
}
}
