#include "Module/MaptornModule.h"
#include "Support/WorkshopTest.h"
#include "Workshop/WorkshopController.h"
#include "Workshop/WorkshopTab.h"

#include <gtest/gtest.h>

using namespace Maptorn;
using namespace Maptorn::Testing;

namespace
{
class WorkshopTabs : public FWorkshopTest
{
protected:
    int CountActiveMarkers() const
    {
        int Count = 0;
        for (const FWorkshopTab& Tab : Tabs)
        {
            Count += Tab.GetActiveVisibility() == EVisibility::Visible ? 1 : 0;
        }
        return Count;
    }

    std::vector<FWorkshopTab> Tabs = MakeWorkshopTabs();
};
}

TEST_F(WorkshopTabs, TheStripHoldsTheFivePagesInOrder)
{
    ASSERT_EQ(Tabs.size(), 5u);
    const char* Labels[] = {"Account", "Create Mod", "Upload Mod", "Download Source Plugin", "Steam Workshop"};
    for (int32 Index = 0; Index < 5; ++Index)
    {
        EXPECT_EQ(Tabs[Index].Label, Labels[Index]);
        EXPECT_EQ(Tabs[Index].TabIndex, Index);
    }
}

TEST_F(WorkshopTabs, WithoutAClientTheChosenTabIsShown)
{
    Module.ModioClient.reset();
    Tabs[3].Clicked();
    EXPECT_EQ(Controller.GetTabIndex(), 3);
}

TEST_F(WorkshopTabs, ExactlyOneTabShowsItsActiveMarker)
{
    EXPECT_EQ(CountActiveMarkers(), 1);
    EXPECT_EQ(Tabs[0].GetActiveVisibility(), EVisibility::Visible);
    for (const FWorkshopTab& Clicked : Tabs)
    {
        Clicked.Clicked();
        EXPECT_EQ(CountActiveMarkers(), 1);
        EXPECT_EQ(Clicked.GetActiveVisibility(), EVisibility::Visible);
    }
}
