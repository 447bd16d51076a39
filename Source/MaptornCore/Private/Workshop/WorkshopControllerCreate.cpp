// The create-mod page's handlers. The fields live in the client; mod.io judges the logo.
#include "Workshop/WorkshopController.h"

#include "Common/Paths.h"
#include "Common/StringUtil.h"
#include "Modio/ModioInterface.h"
#include "Module/MaptornModule.h"
#include "WorkshopSupport.h"

namespace Maptorn
{
std::string FWorkshopController::GetModNameBoxText() const
{
    const FModioInterface* Client = WorkshopSupport::FindClient();
    return Client ? Client->NewModName : std::string();
}

std::string FWorkshopController::GetModSummaryBoxText() const
{
    const FModioInterface* Client = WorkshopSupport::FindClient();
    return Client ? Client->NewModSummary : std::string();
}

void FWorkshopController::OnModNameTextChanged(const std::string& Text)
{
    if (FModioInterface* Client = WorkshopSupport::FindClient())
    {
        Client->NewModName = Text;
    }
}

void FWorkshopController::OnModSummaryTextChanged(const std::string& Text)
{
    // mod.io refuses longer summaries; the box may show more, the stored value never does.
    if (FModioInterface* Client = WorkshopSupport::FindClient())
    {
        Client->NewModSummary = WorkshopSupport::TruncateCharacters(Text, MaxSummaryCharacters);
    }
}

void FWorkshopController::OnCreateModTypeChanged(EModType Type)
{
    if (FModioInterface* Client = WorkshopSupport::FindClient())
    {
        Client->NewModType = Type;
    }
    ModType = Type;
    bModTypeChosen = true;
    Notify(ViewEvents.ModTypeChanged);
}

bool FWorkshopController::SelectLogoImage()
{
    FMaptornModule* Module = WorkshopSupport::FindModule();
    FModioInterface* Client = Module ? Module->ModioClient.get() : nullptr;
    if (!Client)
    {
        return true;
    }
    FMaptornPlatform& Platform = Module->GetPlatform();
    const std::optional<std::string> Picked = Platform.Dialogs.OpenFileDialog("Choose a logo image", WorkshopSupport::ProjectFolder(Platform.Engine), "Image Files|*.png;*.jpg;*.jpeg");
    if (Picked && !Picked->empty())
    {
        Client->LogoPath = *Picked;
        WorkshopSupport::LogWindow(ELogVerbosity::Log, Printf("Logo Location: %s", Picked->c_str()));
    }
    return true;
}

bool FWorkshopController::CreateModButtonClicked()
{
    if (FModioInterface* Client = WorkshopSupport::FindClient())
    {
        Client->CreateMod();
    }
    return true;
}
}
