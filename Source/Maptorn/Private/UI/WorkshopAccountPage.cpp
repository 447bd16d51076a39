// The account page: mod.io terms, e-mail, security code, logged in.

#include "UI/KelvorWorkshopWindow.h"

#include "UI/SlateValues.h"

#include "HAL/PlatformProcess.h"
#include "Styling/AppStyle.h"
#include "Widgets/Images/SThrobber.h"
#include "Widgets/Input/SButton.h"
#include "Widgets/Input/SEditableTextBox.h"
#include "Widgets/Input/SHyperlink.h"
#include "Widgets/Layout/SBorder.h"
#include "Widgets/Layout/SWidgetSwitcher.h"
#include "Widgets/SBoxPanel.h"
#include "Widgets/SOverlay.h"
#include "Widgets/Text/STextBlock.h"

#define LOCTEXT_NAMESPACE "KelvorWorkshop"

using namespace MaptornSlate;

namespace
{
constexpr const TCHAR* ModioTermsUrl = TEXT("https://mod.io/terms");
}

TSharedRef<SWidget> SKelvorWorkshopWindow::MakeAccountPage()
{
	// A throbber and a button in one place: the throbber while the client is busy.
	auto BusyButton = [this](const FText& Label, TFunction<bool()> OnClicked) -> TSharedRef<SWidget> {
		return SNew(SOverlay)
			+ SOverlay::Slot()[SNew(SThrobber).Visibility_Lambda([this] { return ToSlate(Controller->IsLoggingIn()); })]
			+ SOverlay::Slot()
			[
				SNew(SButton)
				.Text(Label)
				.Visibility_Lambda([this] { return ToSlate(Controller->ShowLoginButton()); })
				.OnClicked_Lambda([OnClicked] { return Handled(OnClicked()); })
			];
	};

	return SNew(SBorder)
		.BorderImage(FAppStyle::GetBrush("ToolPanel.GroupBorder"))
		[
			SNew(SVerticalBox)
			+ SVerticalBox::Slot().AutoHeight()[MakeHeading(LOCTEXT("ManageAccount", "Manage Account"))]
			+ SVerticalBox::Slot().AutoHeight().Padding(4)
			[
				SNew(SWidgetSwitcher)
				.WidgetIndex_Lambda([this] { return Controller->GetLoginIndex(); })
				+ SWidgetSwitcher::Slot()
				[
					SNew(SVerticalBox)
					+ SVerticalBox::Slot().AutoHeight()[SNew(STextBlock).Text(LOCTEXT("AgreeTerms", "Agree to Mod.io Terms"))]
					+ SVerticalBox::Slot().AutoHeight()
					[
						SNew(SHyperlink)
						.Text(LOCTEXT("OpenTerms", "Open Mod.io Terms"))
						.ToolTipText(LOCTEXT("OpenTermsTip", "Opens the Mod.io Terms page"))
						.OnNavigate_Lambda([] { FPlatformProcess::LaunchURL(ModioTermsUrl, nullptr, nullptr); })
					]
					+ SVerticalBox::Slot().AutoHeight()
					[
						SNew(SButton)
						.Text(LOCTEXT("IAgree", "I Agree"))
						.OnClicked_Lambda([this] { return Handled(Controller->AgreedToTerms()); })
					]
				]
				+ SWidgetSwitcher::Slot()
				[
					SNew(SVerticalBox)
					+ SVerticalBox::Slot().AutoHeight()[SNew(STextBlock).Text(LOCTEXT("Authenticate", "Authenticate with Mod.io"))]
					+ SVerticalBox::Slot().AutoHeight()[SNew(STextBlock).Text(LOCTEXT("EmailAddress", "Email Address"))]
					+ SVerticalBox::Slot().AutoHeight()
					[
						SAssignNew(EmailBox, SEditableTextBox)
						.Text(ToText(Controller->GetEmailBoxText()))
						.OnTextChanged_Lambda([this](const FText& Text) { Controller->OnEmailTextChanged(MaptornString::ToStd(Text.ToString())); })
					]
					+ SVerticalBox::Slot().AutoHeight()[BusyButton(LOCTEXT("Send", "Send"), [this] { return Controller->SendAuthButtonClicked(); })]
				]
				+ SWidgetSwitcher::Slot()
				[
					SNew(SVerticalBox)
					+ SVerticalBox::Slot().AutoHeight()[SNew(STextBlock).Text(LOCTEXT("CheckEmail", "Check your email for the mod.io auth code"))]
					+ SVerticalBox::Slot().AutoHeight()[SNew(STextBlock).Text(LOCTEXT("AuthCode", "Auth Code"))]
					+ SVerticalBox::Slot().AutoHeight()
					[
						SAssignNew(AuthCodeBox, SEditableTextBox)
						.Text(ToText(Controller->GetAuthCodeBoxText()))
						.OnTextChanged_Lambda([this](const FText& Text) { Controller->OnAuthCodeChanged(MaptornString::ToStd(Text.ToString())); })
					]
					+ SVerticalBox::Slot().AutoHeight()[BusyButton(LOCTEXT("Login", "Login"), [this] { return Controller->LoginButtonClicked(); })]
					+ SVerticalBox::Slot().AutoHeight()
					[
						SNew(SButton)
						.Text(LOCTEXT("NewCode", "Request New Auth Code"))
						.OnClicked_Lambda([this] { return Handled(Controller->ResendAuthCode()); })
					]
				]
				+ SWidgetSwitcher::Slot()
				[
					SNew(SVerticalBox)
					+ SVerticalBox::Slot().AutoHeight()[SNew(STextBlock).Text(LOCTEXT("LoggedIn", "Logged In"))]
					+ SVerticalBox::Slot().AutoHeight()[BusyButton(LOCTEXT("Logout", "Logout"), [this] { return Controller->LogoutButtonClicked(); })]
				]
			]
			+ SVerticalBox::Slot().AutoHeight().Padding(4)
			[
				SNew(STextBlock).AutoWrapText(true).Text_Lambda([this] { return ToText(Controller->GetLoginErrorText()); })
			]
		];
}

#undef LOCTEXT_NAMESPACE
