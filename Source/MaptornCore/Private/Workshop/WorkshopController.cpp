#include "Workshop/WorkshopController.h"

#include "Modio/ModioInterface.h"
#include "WorkshopSupport.h"

namespace Maptorn
{
FWorkshopController::FWorkshopController()
{
    BindClientObservers();
    const FModioInterface* Client = WorkshopSupport::FindClient();
    if (!Client)
    {
        return;
    }
    // The lists and the share note of the chosen mod live in the client; the view is told nothing
    // yet, it reads the rows once it is built.
    // The window's own copy of the create page's kind starts from the client's, so a reopened tab agrees.
    ModType = Client->NewModType;
    MakeUploadRows();
    MakeSourceModRows(Client->LastSourceModList);
    if (!Client->SelectedModId.empty())
    {
        RememberShareChoice(Client->SelectedModId, WorkshopSupport::FindOwnMod(*Client, Client->SelectedModId));
    }
}

FWorkshopController::~FWorkshopController()
{
    UnbindClientObservers();
}

void FWorkshopController::BindClientObservers()
{
    FModioInterface* Client = WorkshopSupport::FindClient();
    if (!Client)
    {
        return;
    }
    // The client may outlive this window: each binding checks that the window still lives.
    std::weak_ptr<int> Alive = AliveToken;
    BoundClient = Client;
    ListUpdatedHandle = Client->OnSourceModListUpdated.Add([this, Alive](bool bSucceeded, const FSourceModList& List) {
        if (!Alive.expired())
        {
            OnSourceModListUpdated(bSucceeded, List);
        }
    });
    ImageCreatedHandle = Client->OnSourceModImageCreated.Add([this, Alive](const FSourceModInfo& Mod) {
        if (!Alive.expired())
        {
            OnSourceModImageCreated(Mod);
        }
    });
    UploadListHandle = Client->OnUploadListUpdated.Add([this, Alive] {
        if (!Alive.expired())
        {
            RefreshUploadModList();
        }
    });
}

void FWorkshopController::UnbindClientObservers()
{
    // Only the client bound at construction holds these handles; a replaced one never saw them.
    FModioInterface* Client = WorkshopSupport::FindClient();
    if (!BoundClient || Client != BoundClient)
    {
        return;
    }
    Client->OnSourceModListUpdated.Remove(ListUpdatedHandle);
    Client->OnSourceModImageCreated.Remove(ImageCreatedHandle);
    Client->OnUploadListUpdated.Remove(UploadListHandle);
    BoundClient = nullptr;
}

void FWorkshopController::Notify(const std::function<void()>& Event)
{
    if (Event)
    {
        Event();
    }
}
}
