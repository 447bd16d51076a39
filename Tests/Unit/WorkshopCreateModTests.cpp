#include "Module/MaptornModule.h"
#include "Support/WorkshopTest.h"
#include "Workshop/WorkshopController.h"

#include <gtest/gtest.h>

using namespace Maptorn;
using namespace Maptorn::Testing;

namespace
{
class WorkshopCreateMod : public FWorkshopTest
{
};
}

TEST_F(WorkshopCreateMod, ASummaryIsStoredAsItsFirst250Characters)
{
    Controller.OnModSummaryTextChanged(std::string(300, 'a'));
    EXPECT_EQ(Client->NewModSummary, std::string(250, 'a'));
    Controller.OnModSummaryTextChanged("A short summary");
    EXPECT_EQ(Client->NewModSummary, "A short summary");
}

TEST_F(WorkshopCreateMod, TheSummaryLimitCountsCharactersNotBytes)
{
    std::string Accented;
    for (int Index = 0; Index < 300; ++Index)
    {
        Accented += "\xC3\xA9";   // é
    }
    Controller.OnModSummaryTextChanged(Accented);
    EXPECT_EQ(Client->NewModSummary, Accented.substr(0, 500));
}

TEST_F(WorkshopCreateMod, CreateModNeedsANameASummaryALoginAndAnIdleClient)
{
    Client->bIsLoggedIn = true;
    Controller.OnModNameTextChanged("Castle");
    EXPECT_EQ(Client->NewModName, "Castle");
    EXPECT_EQ(Controller.GetCreateModVisibility(), EVisibility::Hidden);

    Controller.OnModSummaryTextChanged("A castle on a hill");
    EXPECT_EQ(Controller.GetCreateModVisibility(), EVisibility::Visible);

    Client->bIsModioBusy = true;
    EXPECT_EQ(Controller.GetCreateModVisibility(), EVisibility::Hidden);
    EXPECT_EQ(Controller.GetCreateModSpinnerVisibility(), EVisibility::Visible);

    Client->bIsModioBusy = false;
    Client->bIsLoggedIn = false;
    EXPECT_EQ(Controller.GetCreateModVisibility(), EVisibility::Hidden);
}

TEST_F(WorkshopCreateMod, ChoosingATypeSetsTheClientAndTheWindowAndRefreshesTheControl)
{
    int Refreshed = 0;
    Controller.ViewEvents.ModTypeChanged = [&Refreshed] { ++Refreshed; };
    Controller.OnCreateModTypeChanged(EModType::GameMode);
    EXPECT_EQ(Client->NewModType, EModType::GameMode);
    EXPECT_EQ(Controller.GetModType(), EModType::GameMode);
    EXPECT_EQ(Refreshed, 1);
}

TEST_F(WorkshopCreateMod, APickedLogoIsStoredAndACancelledDialogKeepsThePreviousOne)
{
    Fakes.Dialogs.NextPickedPath = "/home/modder/logo.png";
    EXPECT_TRUE(Controller.SelectLogoImage());
    ASSERT_EQ(Fakes.Dialogs.FileDialogs.size(), 1u);
    EXPECT_EQ(Fakes.Dialogs.FileDialogs[0].Title, "Choose a logo image");
    EXPECT_EQ(Fakes.Dialogs.FileDialogs[0].DefaultPath, "/proj");
    EXPECT_EQ(Fakes.Dialogs.FileDialogs[0].FileTypes, "Image Files|*.png;*.jpg;*.jpeg");
    EXPECT_EQ(Client->LogoPath, "/home/modder/logo.png");
    EXPECT_TRUE(Fakes.Log.Has(LogCategory::MaptornLog, ELogVerbosity::Log, "Logo Location: /home/modder/logo.png"));

    Fakes.Dialogs.NextPickedPath.reset();
    Controller.SelectLogoImage();
    EXPECT_EQ(Client->NewModLogoPath, "/home/modder/logo.png");
}

TEST_F(WorkshopCreateMod, CreateModSendsTheTypedFieldsAndShowsWhatModioAnswered)
{
    Controller.OnModNameTextChanged("Castle");
    Controller.OnModSummaryTextChanged("A castle on a hill");
    Controller.OnCreateModTypeChanged(EModType::Mod);
    Fakes.Session.NextResult = {13009, "The name is taken"};

    EXPECT_TRUE(Controller.CreateModButtonClicked());
    EXPECT_EQ(Fakes.Session.Calls.back(), "SubmitNewModAsync:Castle");
    EXPECT_EQ(Controller.GetCreateModSpinnerVisibility(), EVisibility::Visible);
    Fakes.Session.RunPendingHandlers();
    EXPECT_EQ(Controller.GetCreateModErrorText(), "The name is taken");
    EXPECT_EQ(Client->NewModName, "Castle");
}
