// The window's frame: header images, the tab strip, the page switcher and the busy indicator.

#include "UI/KelvorWorkshopWindow.h"

#include "UI/SlateValues.h"
#include "UI/WorkshopStyle.h"
#include "UI/WorkshopTab.h"

#include "Styling/AppStyle.h"
#include "Widgets/Images/SImage.h"
#include "Widgets/Images/SThrobber.h"
#include "Widgets/Input/SEditableTextBox.h"
#include "Widgets/Layout/SBorder.h"
#include "Widgets/Layout/SScrollBox.h"
#include "Widgets/Layout/SWidgetSwitcher.h"
#include "Widgets/SBoxPanel.h"
#include "Widgets/Text/STextBlock.h"

#include "Workshop/WorkshopTab.h"

#define LOCTEXT_NAMESPACE "KelvorWorkshop"

using namespace MaptornSlate;

void SKelvorWorkshopWindow::Construct(const FArguments& /*InArgs*/)
{
	Controller = MakeUnique<Maptorn::FWorkshopController>();
	Controller->ViewEvents.UploadRowsRebuilt = [this] { RebuildUploadRows(); };
	Controller->ViewEvents.SourceModRowsRebuilt = [this] { RebuildSourceModRows(); };
	Controller->ViewEvents.ScrollSourceModsToStart = [this] {
		if (SourceModRows.IsValid())
		{
			SourceModRows->ScrollToStart();
		}
	};
	Controller->ViewEvents.LoginBoxesCleared = [this] {
		if (EmailBox.IsValid())
		{
			EmailBox->SetText(FText::GetEmpty());
		}
		if (AuthCodeBox.IsValid())
		{
			AuthCodeBox->SetText(FText::GetEmpty());
		}
	};

	ChildSlot
	[
		SNew(SBorder)
		.BorderImage(FAppStyle::GetBrush("ToolPanel.GroupBorder"))
		[
			SNew(SVerticalBox)
			+ SVerticalBox::Slot().AutoHeight()[MakeHeader()]
			+ SVerticalBox::Slot().AutoHeight().Padding(0, 4)[MakeTabStrip()]
			+ SVerticalBox::Slot().AutoHeight()
			[
				SNew(SHorizontalBox)
				.Visibility_Lambda([this] { return ToSlate(Controller->GetBusyVisibility()); })
				+ SHorizontalBox::Slot().AutoWidth()[SNew(SThrobber)]
				+ SHorizontalBox::Slot().AutoWidth().Padding(6, 0)[SNew(STextBlock).Text(LOCTEXT("Busy", "Building..."))]
			]
			+ SVerticalBox::Slot().FillHeight(1.0f)
			[
				SNew(SWidgetSwitcher)
				.Visibility_Lambda([this] { return ToSlate(Controller->GetStandbyVisibility()); })
				.WidgetIndex_Lambda([this] { return Controller->GetTabIndex(); })
				+ SWidgetSwitcher::Slot()[MakeAccountPage()]
				+ SWidgetSwitcher::Slot()[MakeCreatePage()]
				+ SWidgetSwitcher::Slot()[MakeUploadPage()]
				+ SWidgetSwitcher::Slot()[MakeBrowserPage()]
				+ SWidgetSwitcher::Slot()[MakeSteamPage()]
			]
		]
	];
	RebuildUploadRows();
	RebuildSourceModRows();
}

TSharedRef<SWidget> SKelvorWorkshopWindow::MakeHeader()
{
	using namespace MaptornWorkshopStyle;
	return SNew(SVerticalBox)
		+ SVerticalBox::Slot().AutoHeight()
		[
			SNew(SHorizontalBox)
			+ SHorizontalBox::Slot().AutoWidth()[SNew(SImage).Image(GetBrush(KelvorThumbnail()))]
			+ SHorizontalBox::Slot().AutoWidth()[SNew(SImage).Image(GetBrush(WorkshopHeader()))]
		]
		+ SVerticalBox::Slot().AutoHeight()
		[
			SNew(SHorizontalBox)
			+ SHorizontalBox::Slot().AutoWidth()[SNew(SImage).Image(GetBrush(ModioBanner()))]
			+ SHorizontalBox::Slot().FillWidth(1.0f).HAlign(HAlign_Right).VAlign(VAlign_Center).Padding(4, 0)
			[
				SNew(SHorizontalBox)
				+ SHorizontalBox::Slot().AutoWidth().VAlign(VAlign_Center)[SNew(SImage).Image(GetBrush(UnrealIcon()))]
				+ SHorizontalBox::Slot().AutoWidth().VAlign(VAlign_Center).Padding(4, 0, 0, 0)
				[
					SNew(STextBlock).Text_Lambda([this] { return ToText(Controller->GetConfigState()); })
				]
			]
		];
}

TSharedRef<SWidget> SKelvorWorkshopWindow::MakeTabStrip()
{
	TSharedRef<SHorizontalBox> Strip = SNew(SHorizontalBox);
	for (const Maptorn::FWorkshopTab& Tab : Maptorn::MakeWorkshopTabs())
	{
		Strip->AddSlot().AutoWidth().Padding(2, 0)[SNew(SWorkshopTab).Tab(Tab)];
	}
	return Strip;
}

TSharedRef<SWidget> SKelvorWorkshopWindow::MakeHeading(const FText& Text) const
{
	return SNew(SBorder)
		.BorderImage(FAppStyle::GetBrush("WhiteBrush"))
		.BorderBackgroundColor(FAppStyle::GetSlateColor("Colors.Header"))
		.Padding(4)
		[
			SNew(STextBlock).Text(Text).Font(FAppStyle::GetFontStyle("NormalFontBold"))
		];
}

#undef LOCTEXT_NAMESPACE
