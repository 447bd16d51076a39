// The source-plug-in browser's handlers: paging, sort and search over the client's catalogue
// query, the rows of the last page, and adding a plug-in to the project.
#include "Workshop/WorkshopController.h"

#include "Common/StringUtil.h"
#include "Content/ModDefinitions.h"
#include "Modio/ModioInterface.h"
#include "Module/MaptornModule.h"
#include "WorkshopSupport.h"

#include <algorithm>

namespace Maptorn
{
namespace
{
std::string OverwriteQuestion(const std::string& PluginName)
{
    return Printf("You are downloading %s this may be a plugin you're currently working on. This will OVERWRITE the files in your "
                  "Plugin %s with the ones from mod.io. Please create a backup first if you do not have one. \r\n \r\n Proceed with download?",
        PluginName.c_str(), PluginName.c_str());
}
}

void FWorkshopController::RunSourceQuery(FModioInterface& Client)
{
    // The client runs one query at a time; a change made meanwhile is sent once that one answers,
    // so the rows always end up matching the last search and sort.
    if (Client.bSourceQueryBusy)
    {
        bQueryAgain = true;
    }
    else
    {
        bQueryAgain = false;
        Client.QuerySourceMods();
    }
    Notify(ViewEvents.ScrollSourceModsToStart);
}

bool FWorkshopController::OnNextModPageClicked()
{
    FModioInterface* Client = WorkshopSupport::FindClient();
    if (Client && IsNextPageEnabled())
    {
        Client->SourceQuery.PageOffset = Client->LastSourceModList.CurrentPage * SourceModPageSize;
        RunSourceQuery(*Client);
    }
    return true;
}

bool FWorkshopController::OnPreviousModPageClicked()
{
    FModioInterface* Client = WorkshopSupport::FindClient();
    if (Client && IsPreviousPageEnabled())
    {
        Client->SourceQuery.PageOffset = std::max(0, (Client->LastSourceModList.CurrentPage - 2) * SourceModPageSize);
        RunSourceQuery(*Client);
    }
    return true;
}

bool FWorkshopController::OnRefreshModPageClicked()
{
    if (FModioInterface* Client = WorkshopSupport::FindClient())
    {
        RunSourceQuery(*Client);
    }
    return true;
}

void FWorkshopController::UpdatedFilters(std::optional<ESourceModQueryType> CurrentItem)
{
    FModioInterface* Client = WorkshopSupport::FindClient();
    if (Client && CurrentItem)
    {
        Client->SourceQuery.SortType = *CurrentItem;
        Client->SourceQuery.PageOffset = 0;
        RunSourceQuery(*Client);
    }
}

void FWorkshopController::OnSourceModSearchChanged(const std::string& Text)
{
    FModioInterface* Client = WorkshopSupport::FindClient();
    // mod.io matches names ignoring case, so another case would fetch the same page again.
    if (Client && !EqualsIgnoreCase(Text, Client->SourceQuery.SearchText))
    {
        Client->SourceQuery.SearchText = Text;
        Client->SourceQuery.PageOffset = 0;
        RunSourceQuery(*Client);
    }
}

void FWorkshopController::OnDownloadSourceModClicked(const FSourceModInfo& Mod)
{
    FMaptornModule* Module = WorkshopSupport::FindModule();
    FModioInterface* Client = Module ? Module->ModioClient.get() : nullptr;
    if (!Client)
    {
        return;
    }
    // A plug-in the project has switched off is still the modder's files on disk: the install
    // replaces it as surely as an enabled one, so it gets the same question.
    const bool bInProject = Module->GetPlatform().Engine.FindPlugin(MakeUGCPluginName(WorkshopSupport::ModIdOf(Mod.PluginName))).has_value();
    if (bInProject &&
        Module->GetPlatform().Dialogs.MessageBox(EAppMsgType::YesNo, OverwriteQuestion(Mod.PluginName), "Kelvor Workshop Source Download") !=
            EAppReturnType::Yes)
    {
        return;
    }
    const std::string ModId = WorkshopSupport::ModIdOf(Mod.PluginName);
    if (!DependencyChecks.insert(ModId).second)
    {
        return;
    }
    // The download waits for the lookup: the row says so, and cannot be added twice meanwhile.
    if (FSourceModInfo* Record = Client->FindCatalogueRecord(ModId))
    {
        Record->InstallState = static_cast<uint8>(ESourceModInstallState::DownloadPending);
    }
    UpdateRowStates(*Client);
    std::weak_ptr<int> Alive = AliveToken;
    Client->ResolveDependencies(ModId, [this, Alive, Mod, ModId](FDependencyResolution Resolution) {
        if (!Alive.expired())
        {
            OnDependenciesResolved(Mod, Resolution);
            return;
        }
        // The window closed before the answer: a reopened tab offers the plug-in again.
        FModioInterface* OpenClient = WorkshopSupport::FindClient();
        if (FSourceModInfo* Record = OpenClient ? OpenClient->FindCatalogueRecord(ModId) : nullptr)
        {
            Record->InstallState = Mod.InstallState;
        }
    });
}

void FWorkshopController::QueueDownloads(FModioInterface& Client, const std::vector<FSourceModInfo>& Mods)
{
    for (const FSourceModInfo& Mod : Mods)
    {
        Client.QueueDownload(Mod);
    }
    UpdateRowStates(Client);
}

void FWorkshopController::UpdateRowStates(FModioInterface& Client)
{
    // The rows now read "Downloading" or "Download Pending" and cannot be added twice. The rows
    // are updated in place: a clicked one may still be running its handler.
    for (FWorkshopSourcePluginEntry& Row : SourceModRows)
    {
        if (const FSourceModInfo* Record = Client.FindCatalogueRecord(WorkshopSupport::ModIdOf(Row.GetModInfo().PluginName)))
        {
            Row.UpdateModInfo(*Record);
        }
    }
}

void FWorkshopController::OnSourceModListUpdated(bool bSucceeded, const FSourceModList& List)
{
    // A failed query keeps the rows shown.
    if (bSucceeded)
    {
        RebuildSourceModRows(List);
    }
    FModioInterface* Client = WorkshopSupport::FindClient();
    if (bQueryAgain && Client && !Client->bSourceQueryBusy)
    {
        bQueryAgain = false;
        Client->QuerySourceMods();
    }
}

void FWorkshopController::OnSourceModImageCreated(const FSourceModInfo& /*Mod*/)
{
    // Rebuilt from the client's page, which already holds the new thumbnail path.
    if (FModioInterface* Client = WorkshopSupport::FindClient())
    {
        RebuildSourceModRows(Client->LastSourceModList);
    }
}

ESourceModQueryType FWorkshopController::GetSourceModSortType() const
{
    const FModioInterface* Client = WorkshopSupport::FindClient();
    return Client ? Client->SourceQuery.SortType : FSourceModQuery{}.SortType;
}

std::string FWorkshopController::GetSourceModSearchText() const
{
    const FModioInterface* Client = WorkshopSupport::FindClient();
    return Client ? Client->SourceQuery.SearchText : std::string();
}

void FWorkshopController::RebuildSourceModRows(const FSourceModList& List)
{
    for (const FSourceModInfo& Mod : List.Mods)
    {
        WorkshopSupport::LogWindow(ELogVerbosity::Log, Mod.Name);
    }
    MakeSourceModRows(List);
    Notify(ViewEvents.SourceModRowsRebuilt);
}

void FWorkshopController::MakeSourceModRows(const FSourceModList& List)
{
    // Each record carries its install state, which the client keeps current as downloads move.
    SourceModRows.clear();
    for (const FSourceModInfo& Mod : List.Mods)
    {
        SourceModRows.emplace_back(Mod, AliveToken, [this](const FSourceModInfo& Chosen) { OnDownloadSourceModClicked(Chosen); });
    }
}
}
