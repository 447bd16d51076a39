// The account page's handlers: terms, e-mail code, login and logout. The session steps are the
// client's; the page only forwards them.
#include "Workshop/WorkshopController.h"

#include "Modio/ModioInterface.h"
#include "WorkshopSupport.h"

namespace Maptorn
{
bool FWorkshopController::AgreedToTerms()
{
    FModioInterface* Client = WorkshopSupport::FindClient();
    if (Client && !Client->bIsLoggedIn)
    {
        Client->LoginIndex = 1;
    }
    return true;
}

std::string FWorkshopController::GetEmailBoxText() const
{
    const FModioInterface* Client = WorkshopSupport::FindClient();
    return Client ? Client->EmailAddress : std::string();
}

std::string FWorkshopController::GetAuthCodeBoxText() const
{
    const FModioInterface* Client = WorkshopSupport::FindClient();
    return Client ? Client->AuthCode : std::string();
}

void FWorkshopController::OnEmailTextChanged(const std::string& Text)
{
    if (FModioInterface* Client = WorkshopSupport::FindClient())
    {
        Client->EmailAddress = Text;
    }
}

void FWorkshopController::OnAuthCodeChanged(const std::string& Text)
{
    if (FModioInterface* Client = WorkshopSupport::FindClient())
    {
        Client->AuthCode = Text;
    }
}

bool FWorkshopController::SendAuthButtonClicked()
{
    if (FModioInterface* Client = WorkshopSupport::FindClient())
    {
        Client->RequestEmailCode();
    }
    return true;
}

bool FWorkshopController::ResendAuthCode()
{
    // Back to the e-mail step; the user sends again from there.
    if (FModioInterface* Client = WorkshopSupport::FindClient())
    {
        Client->LoginIndex = 1;
    }
    return true;
}

bool FWorkshopController::LoginButtonClicked()
{
    if (FModioInterface* Client = WorkshopSupport::FindClient())
    {
        Client->Login();
    }
    return true;
}

bool FWorkshopController::LogoutButtonClicked()
{
    // Emptied boxes hold nothing to send: the stored address and code go with them, so "Send"
    // cannot reuse an address the user no longer sees.
    OnEmailTextChanged({});
    OnAuthCodeChanged({});
    Notify(ViewEvents.LoginBoxesCleared);
    if (FModioInterface* Client = WorkshopSupport::FindClient())
    {
        Client->Logout();
    }
    return true;
}
}
