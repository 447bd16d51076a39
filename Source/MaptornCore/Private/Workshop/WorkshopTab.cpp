#include "Workshop/WorkshopTab.h"

#include "Module/MaptornModule.h"
#include "WorkshopSupport.h"

namespace Maptorn
{
bool FWorkshopTab::Clicked() const
{
    if (FMaptornModule* Module = WorkshopSupport::FindModule())
    {
        Module->TabIndex = TabIndex;
    }
    return true;
}

EVisibility FWorkshopTab::GetActiveVisibility() const
{
    const FMaptornModule* Module = WorkshopSupport::FindModule();
    return Module && Module->TabIndex == TabIndex ? EVisibility::Visible : EVisibility::Collapsed;
}

std::vector<FWorkshopTab> MakeWorkshopTabs()
{
    return {{"Account", 0}, {"Create Mod", 1}, {"Upload Mod", 2}, {"Download Source Plugin", 3}, {"Steam Workshop", 4}};
}
}
