#include "UI/KelvorWorkshopSourcePluginEntry.h"

#include "UI/SlateValues.h"
#include "UI/WorkshopEntryParts.h"
#include "UI/WorkshopStyle.h"

#include "Brushes/SlateDynamicImageBrush.h"
#include "Styling/AppStyle.h"
#include "Widgets/Input/SButton.h"
#include "Widgets/Layout/SBorder.h"
#include "Widgets/SBoxPanel.h"
#include "Widgets/Text/STextBlock.h"

#define LOCTEXT_NAMESPACE "KelvorWorkshop"

using namespace MaptornSlate;

void SKelvorWorkshopSourcePluginEntry::Construct(const FArguments& InArgs)
{
	Entry = InArgs._Entry;
	const Maptorn::FWorkshopSourcePluginEntry* Row = Entry ? Entry() : nullptr;
	const Maptorn::FSourceModInfo Mod = Row ? Row->GetModInfo() : Maptorn::FSourceModInfo();
	Logo = MaptornWorkshopEntry::MakeLogoBrush(Row ? Row->GetLogoPath() : std::string());
	const FSlateColor Accent = ToSlate(Maptorn::FWorkshopColor::FromHex(Maptorn::WorkshopColors::SourceRowAccentHex));

	ChildSlot
	[
		SNew(SBorder)
		.BorderImage(FAppStyle::GetBrush("WhiteBrush"))
		.BorderBackgroundColor(FAppStyle::GetSlateColor("Colors.Background"))
		.Padding(FMargin(4))
		[
			SNew(SHorizontalBox)
			+ SHorizontalBox::Slot().AutoWidth().VAlign(VAlign_Top)[MaptornWorkshopEntry::MakeLogo(Logo)]
			+ SHorizontalBox::Slot().FillWidth(1.0f).Padding(6, 0)
			[
				SNew(SVerticalBox)
				+ SVerticalBox::Slot().AutoHeight()
				[
					MaptornWorkshopEntry::MakeModText(Mod, TAttribute<EVisibility>(this, &SKelvorWorkshopSourcePluginEntry::GetPCBadgeVisibility),
						TAttribute<EVisibility>(this, &SKelvorWorkshopSourcePluginEntry::GetAndroidBadgeVisibility))
				]
				+ SVerticalBox::Slot().AutoHeight().Padding(4, 2)[SNew(STextBlock).Text(this, &SKelvorWorkshopSourcePluginEntry::GetStatusText)]
			]
			+ SHorizontalBox::Slot().AutoWidth().VAlign(VAlign_Center)
			[
				SNew(SVerticalBox)
				+ SVerticalBox::Slot().AutoHeight().Padding(0, 2)
				[
					SNew(SButton)
					.ButtonColorAndOpacity(Accent)
					.IsEnabled(this, &SKelvorWorkshopSourcePluginEntry::IsButtonEnabled)
					.OnClicked(this, &SKelvorWorkshopSourcePluginEntry::OnModButtonClicked)
					[
						MaptornWorkshopEntry::MakeButtonContent(MaptornWorkshopStyle::FolderPlusIcon(), LOCTEXT("AddToProject", "Add to Project"))
					]
				]
				+ SVerticalBox::Slot().AutoHeight().Padding(0, 2)
				[
					SNew(SButton)
					.OnClicked(this, &SKelvorWorkshopSourcePluginEntry::OnOpenModPageClicked)
					[
						MaptornWorkshopEntry::MakeButtonContent(MaptornWorkshopStyle::ExportIcon(), LOCTEXT("SourceModioPage", "Modio Page"))
					]
				]
			]
		]
	];
}

FText SKelvorWorkshopSourcePluginEntry::GetStatusText() const
{
	const Maptorn::FWorkshopSourcePluginEntry* Row = Entry ? Entry() : nullptr;
	return Row ? ToText(Row->GetStatusText()) : FText::GetEmpty();
}

bool SKelvorWorkshopSourcePluginEntry::IsButtonEnabled() const
{
	const Maptorn::FWorkshopSourcePluginEntry* Row = Entry ? Entry() : nullptr;
	return Row && Row->IsButtonEnabled();
}

EVisibility SKelvorWorkshopSourcePluginEntry::GetPCBadgeVisibility() const
{
	const Maptorn::FWorkshopSourcePluginEntry* Row = Entry ? Entry() : nullptr;
	return Row ? ToSlate(Row->GetPCBadgeVisibility()) : EVisibility::Collapsed;
}

EVisibility SKelvorWorkshopSourcePluginEntry::GetAndroidBadgeVisibility() const
{
	const Maptorn::FWorkshopSourcePluginEntry* Row = Entry ? Entry() : nullptr;
	return Row ? ToSlate(Row->GetAndroidBadgeVisibility()) : EVisibility::Collapsed;
}

FReply SKelvorWorkshopSourcePluginEntry::OnModButtonClicked()
{
	const Maptorn::FWorkshopSourcePluginEntry* Row = Entry ? Entry() : nullptr;
	return Handled(Row && Row->OnModButtonClicked());
}

FReply SKelvorWorkshopSourcePluginEntry::OnOpenModPageClicked()
{
	const Maptorn::FWorkshopSourcePluginEntry* Row = Entry ? Entry() : nullptr;
	return Handled(Row && Row->OnOpenModPageClicked());
}

#undef LOCTEXT_NAMESPACE
