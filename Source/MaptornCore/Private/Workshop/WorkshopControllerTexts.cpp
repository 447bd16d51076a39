// The texts and progress values the window shows: stage folder, share-source note, upload and
// download progress, and the browser's page line.
#include "Workshop/WorkshopController.h"

#include "Common/StringUtil.h"
#include "Modio/ModioInterface.h"
#include "Module/MaptornModule.h"
#include "WorkshopSupport.h"

namespace Maptorn
{
std::string FWorkshopController::GetInstallDirText() const
{
    const FMaptornModule* Module = WorkshopSupport::FindModule();
    if (!Module || Module->InstallDir.empty())
    {
        return "Kelvor installation not found, can't stage";
    }
    return "Kelvor install: " + Module->InstallDir;
}

std::string FWorkshopController::GetStageDirText() const
{
    const FModioInterface* Client = WorkshopSupport::FindClient();
    if (Client && !Client->StageDir.empty())
    {
        return "Stage Dir: " + Client->StageDir;
    }
    return "Select your Steam Kelvor install directory to stage a map";
}

std::string FWorkshopController::GetSourceBuildText() const
{
    if (bShareChecked)
    {
        if (const std::shared_ptr<FKelvorDefinition> Definition = ShareDefinition.lock())
        {
            bShareAllowed = Definition->IsContentMod();
        }
    }
    if (bShareAllowed)
    {
        return "You must have the rights to share the assets inside your plugin folder. This will upload your plugin for other modders to use on mod.io";
    }
    return "Cannot distribute Maps or GameModes, this feature is for Content Mods.";
}

std::optional<float> FWorkshopController::GetBuildProgress() const
{
    const FModioInterface* Client = WorkshopSupport::FindClient();
    return Client && Client->bIsUploading ? Client->UploadProgress : 0.0f;
}

std::string FWorkshopController::GetBuildProgressText() const
{
    const FModioInterface* Client = WorkshopSupport::FindClient();
    if (!Client)
    {
        return {};
    }
    if (!Client->bIsUploading)
    {
        return "Packaging...";
    }
    return WorkshopSupport::UploadProgressText(*Client);
}

EVisibility FWorkshopController::GetModDownloadVisibility() const
{
    const FModioInterface* Client = WorkshopSupport::FindClient();
    return Client && Client->ActiveDownload ? EVisibility::Visible : EVisibility::Hidden;
}

std::optional<float> FWorkshopController::GetDownloadProgress() const
{
    const FModioInterface* Client = WorkshopSupport::FindClient();
    return Client && Client->ActiveDownload ? Client->ActiveDownload->GetProgress() : 0.0f;
}

std::string FWorkshopController::GetDownloadProgressText() const
{
    const FModioInterface* Client = WorkshopSupport::FindClient();
    if (!Client)
    {
        return {};
    }
    return Client->ActiveDownload ? WorkshopSupport::DownloadProgressText(*Client) : "Finishing up...";
}

std::string FWorkshopController::GetPageStatus() const
{
    const FModioInterface* Client = WorkshopSupport::FindClient();
    if (!Client)
    {
        return Printf("%d Results - Page %d/%d", 0, 1, 1);
    }
    const FSourceModList& List = Client->LastSourceModList;
    return Printf("%d Results - Page %d/%d", List.TotalResults, List.CurrentPage, List.TotalPages);
}

bool FWorkshopController::CanGatherSourceMods() const
{
    const FModioInterface* Client = WorkshopSupport::FindClient();
    return Client && !Client->bSourceQueryBusy;
}

bool FWorkshopController::IsNextPageEnabled() const
{
    const FModioInterface* Client = WorkshopSupport::FindClient();
    return CanGatherSourceMods() && Client->LastSourceModList.CurrentPage < Client->LastSourceModList.TotalPages;
}

bool FWorkshopController::IsPreviousPageEnabled() const
{
    const FModioInterface* Client = WorkshopSupport::FindClient();
    return CanGatherSourceMods() && Client->LastSourceModList.CurrentPage > 1;
}
}
