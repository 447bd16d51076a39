#pragma once

#include "Common/CoreTypes.h"
#include "Workshop/WorkshopTypes.h"

#include <string>
#include <vector>

namespace Maptorn
{
// One button of the window's tab strip. The chosen page lives in the module (TabIndex), so every
// button and the page switcher read the same value and a reopened window shows the same page.
struct MAPTORNCORE_API FWorkshopTab
{
    std::string Label;
    int32 TabIndex = 0;

    // Chooses this page; answers handled. The account page may still be forced while logged out.
    bool Clicked() const;
    // The active marker: Visible on the chosen tab, Collapsed on the others.
    EVisibility GetActiveVisibility() const;
};

// The pages in strip order: 0 "Account", 1 "Create Mod", 2 "Upload Mod", 3 "Download Source Plugin",
// 4 "Steam Workshop" (the project's own map).
MAPTORNCORE_API std::vector<FWorkshopTab> MakeWorkshopTabs();
}
