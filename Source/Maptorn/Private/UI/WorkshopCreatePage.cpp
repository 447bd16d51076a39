// The create-mod page: name, summary, logo, kind, and the create button.

#include "UI/KelvorWorkshopWindow.h"

#include "UI/SlateValues.h"

#include "Styling/AppStyle.h"
#include "Widgets/Images/SImage.h"
#include "Widgets/Images/SThrobber.h"
#include "Widgets/Input/SButton.h"
#include "Widgets/Input/SEditableTextBox.h"
#include "Widgets/Input/SSegmentedControl.h"
#include "Widgets/Layout/SBorder.h"
#include "Widgets/SBoxPanel.h"
#include "Widgets/SOverlay.h"
#include "Widgets/Text/STextBlock.h"

#define LOCTEXT_NAMESPACE "KelvorWorkshop"

using namespace MaptornSlate;

TSharedRef<SWidget> SKelvorWorkshopWindow::MakeCreatePage()
{
	using Maptorn::EModType;
	return SNew(SBorder)
		.BorderImage(FAppStyle::GetBrush("ToolPanel.GroupBorder"))
		[
			SNew(SVerticalBox)
			+ SVerticalBox::Slot().AutoHeight()[MakeHeading(LOCTEXT("CreateMod", "Create a Mod"))]
			+ SVerticalBox::Slot().AutoHeight().Padding(4)[SNew(STextBlock).Text(LOCTEXT("ModName", "Mod Name (Required)"))]
			+ SVerticalBox::Slot().AutoHeight().Padding(4)
			[
				SNew(SEditableTextBox)
				.Text(ToText(Controller->GetModNameBoxText()))
				.OnTextChanged_Lambda([this](const FText& Text) { Controller->OnModNameTextChanged(MaptornString::ToStd(Text.ToString())); })
			]
			+ SVerticalBox::Slot().AutoHeight().Padding(4)[SNew(STextBlock).Text(LOCTEXT("ModSummary", "Mod Summary (Required)"))]
			+ SVerticalBox::Slot().AutoHeight().Padding(4)
			[
				SNew(SEditableTextBox)
				.HintText(LOCTEXT("SummaryHint", "Max length 250 characters"))
				.Text(ToText(Controller->GetModSummaryBoxText()))
				.OnTextChanged_Lambda([this](const FText& Text) { Controller->OnModSummaryTextChanged(MaptornString::ToStd(Text.ToString())); })
			]
			+ SVerticalBox::Slot().AutoHeight().Padding(4)
			[
				SNew(SButton)
				.ToolTipText(LOCTEXT("LogoTip", "Image file which will represent your mods logo. Must be jpg, jpeg or png format and cannot exceed 8MB in filesize. Dimensions must be at least 512x288 and we recommended you supply a high resolution image with a 16 / 9 ratio. mod.io will use this image to make three thumbnails for the dimensions 320x180, 640x360 and 1280x720."))
				.OnClicked_Lambda([this] { return Handled(Controller->SelectLogoImage()); })
				[
					SNew(SHorizontalBox)
					+ SHorizontalBox::Slot().AutoWidth()[SNew(SImage).Image(FAppStyle::GetBrush("Icons.FolderClosed"))]
					+ SHorizontalBox::Slot().AutoWidth().Padding(4, 0)[SNew(STextBlock).Text(LOCTEXT("SelectLogo", "Select Logo Image"))]
				]
			]
			+ SVerticalBox::Slot().AutoHeight().Padding(4)
			[
				SNew(SSegmentedControl<EModType>)
				.Value_Lambda([this] { return Controller->GetModType(); })
				.OnValueChanged_Lambda([this](EModType Type) { Controller->OnCreateModTypeChanged(Type); })
				+ SSegmentedControl<EModType>::Slot(EModType::Map)
					.Text(LOCTEXT("Map", "Map"))
					.ToolTip(LOCTEXT("MapTip", "Creates a map to play in game"))
				+ SSegmentedControl<EModType>::Slot(EModType::Mod)
					.Text(LOCTEXT("Mod", "Mod"))
					.ToolTip(LOCTEXT("ModTip", "Creates a mod that can be a dependency of a Map or GameMode"))
				+ SSegmentedControl<EModType>::Slot(EModType::GameMode)
					.Text(LOCTEXT("GameMode", "GameMode"))
					.ToolTip(LOCTEXT("GameModeTip", "Creates a gamemode that can be played on any map (experience may vary depending on how well the map supports the mod)"))
			]
			+ SVerticalBox::Slot().AutoHeight().Padding(4)
			[
				SNew(SOverlay)
				+ SOverlay::Slot()[SNew(SThrobber).Visibility_Lambda([this] { return ToSlate(Controller->GetCreateModSpinnerVisibility()); })]
				+ SOverlay::Slot()
				[
					SNew(SButton)
					.Text(LOCTEXT("CreateModButton", "Create Mod"))
					.Visibility_Lambda([this] { return ToSlate(Controller->GetCreateModVisibility()); })
					.OnClicked_Lambda([this] { return Handled(Controller->CreateModButtonClicked()); })
				]
			]
			+ SVerticalBox::Slot().AutoHeight().Padding(4)
			[
				SNew(STextBlock).Text_Lambda([this] { return ToText(Controller->GetCreateModErrorText()); })
			]
		];
}

#undef LOCTEXT_NAMESPACE
