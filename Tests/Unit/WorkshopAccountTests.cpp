#include "Module/MaptornModule.h"
#include "Support/WorkshopTest.h"
#include "Workshop/WorkshopController.h"

#include <gtest/gtest.h>

using namespace Maptorn;
using namespace Maptorn::Testing;

namespace
{
class WorkshopAccount : public FWorkshopTest
{
};
}

TEST_F(WorkshopAccount, RequestNewAuthCodeGoesBackToTheEmailStepWithoutSending)
{
    Client->LoginIndex = 2;
    EXPECT_TRUE(Controller.ResendAuthCode());
    EXPECT_EQ(Client->LoginIndex, 1);
    EXPECT_TRUE(Fakes.Session.Calls.empty());
}

TEST_F(WorkshopAccount, LoginButtonsShowForAValidAddressOrCodeOrALogin)
{
    Controller.OnEmailTextChanged("modder@example");
    EXPECT_EQ(Controller.ShowLoginButton(), EVisibility::Hidden);

    Controller.OnEmailTextChanged("modder@example.com");
    EXPECT_EQ(Controller.ShowLoginButton(), EVisibility::Visible);

    Controller.OnEmailTextChanged("");
    Controller.OnAuthCodeChanged("1234");
    EXPECT_EQ(Controller.ShowLoginButton(), EVisibility::Hidden);
    Controller.OnAuthCodeChanged("12345");
    EXPECT_EQ(Controller.ShowLoginButton(), EVisibility::Visible);

    Controller.OnAuthCodeChanged("");
    Client->bIsLoggedIn = true;
    EXPECT_EQ(Controller.ShowLoginButton(), EVisibility::Visible);
}

TEST_F(WorkshopAccount, WhileTheClientIsBusyTheButtonsHideAndTheThrobbersShow)
{
    Controller.OnEmailTextChanged("modder@example.com");
    Client->bIsModioBusy = true;
    EXPECT_EQ(Controller.ShowLoginButton(), EVisibility::Hidden);
    EXPECT_EQ(Controller.IsLoggingIn(), EVisibility::Visible);
    EXPECT_EQ(Controller.IsModioBusy(), EVisibility::Hidden);

    Client->bIsModioBusy = false;
    EXPECT_EQ(Controller.IsLoggingIn(), EVisibility::Hidden);
    EXPECT_EQ(Controller.IsModioBusy(), EVisibility::Visible);
}

TEST_F(WorkshopAccount, LogoutEmptiesBothBoxesAndWhatTheyHeldEvenWhenItFails)
{
    int Cleared = 0;
    Controller.ViewEvents.LoginBoxesCleared = [&Cleared] { ++Cleared; };
    Controller.OnEmailTextChanged("modder@example.com");
    Controller.OnAuthCodeChanged("12345");
    Client->bIsLoggedIn = true;
    Fakes.Session.NextResult = {20994, "No user"};

    EXPECT_TRUE(Controller.LogoutButtonClicked());
    EXPECT_EQ(Client->EmailAddress, "");
    EXPECT_EQ(Client->AuthCode, "");
    EXPECT_EQ(Cleared, 1);
    EXPECT_EQ(Fakes.Session.Calls.back(), "ClearUserDataAsync");
    Fakes.Session.RunPendingHandlers();
    EXPECT_EQ(Controller.GetEmailBoxText(), "");
    EXPECT_EQ(Controller.GetAuthCodeBoxText(), "");
    EXPECT_EQ(Controller.GetLoginIndex(), 3);
}
