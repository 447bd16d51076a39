#include "UI/KelvorWorkshopUploadEntry.h"

#include "UI/SlateValues.h"
#include "UI/WorkshopEntryParts.h"
#include "UI/WorkshopStyle.h"

#include "Brushes/SlateDynamicImageBrush.h"
#include "Styling/AppStyle.h"
#include "Widgets/Input/SButton.h"
#include "Widgets/Layout/SBorder.h"
#include "Widgets/SBoxPanel.h"

#define LOCTEXT_NAMESPACE "KelvorWorkshop"

using namespace MaptornSlate;

void SKelvorWorkshopUploadEntry::Construct(const FArguments& InArgs)
{
	Entry = InArgs._Entry;
	const Maptorn::FWorkshopUploadEntry* Row = Entry ? Entry() : nullptr;
	const Maptorn::FSourceModInfo Mod = Row ? Row->GetModInfo() : Maptorn::FSourceModInfo();
	Logo = MaptornWorkshopEntry::MakeLogoBrush(Row ? Row->GetLogoPath() : std::string());

	// The outer frame carries the selection colour around the row's own background.
	ChildSlot
	[
		SNew(SBorder)
		.BorderImage(FAppStyle::GetBrush("WhiteBrush"))
		.BorderBackgroundColor(this, &SKelvorWorkshopUploadEntry::GetSelectColor)
		.Padding(FMargin(2))
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
					MaptornWorkshopEntry::MakeModText(Mod, TAttribute<EVisibility>(this, &SKelvorWorkshopUploadEntry::GetPCBadgeVisibility),
						TAttribute<EVisibility>(this, &SKelvorWorkshopUploadEntry::GetAndroidBadgeVisibility))
				]
				+ SHorizontalBox::Slot().AutoWidth().VAlign(VAlign_Center)
				[
					SNew(SVerticalBox)
					+ SVerticalBox::Slot().AutoHeight().Padding(0, 2)
					[
						SNew(SButton)
						.IsEnabled(this, &SKelvorWorkshopUploadEntry::IsButtonEnabled)
						.OnClicked(this, &SKelvorWorkshopUploadEntry::OnModButtonClicked)
						[
							MaptornWorkshopEntry::MakeButtonContent(MaptornWorkshopStyle::FolderPlusIcon(), LOCTEXT("SelectModButton", "Select Mod"))
						]
					]
					+ SVerticalBox::Slot().AutoHeight().Padding(0, 2)
					[
						SNew(SButton)
						.OnClicked(this, &SKelvorWorkshopUploadEntry::OnOpenModPageClicked)
						[
							MaptornWorkshopEntry::MakeButtonContent(MaptornWorkshopStyle::ExportIcon(), LOCTEXT("ModioPage", "Modio Page"))
						]
					]
				]
			]
		]
	];
}

FSlateColor SKelvorWorkshopUploadEntry::GetSelectColor() const
{
	const Maptorn::FWorkshopUploadEntry* Row = Entry ? Entry() : nullptr;
	return ToSlate(Row ? Row->GetSelectColor() : Maptorn::FWorkshopColor::FromHex(Maptorn::WorkshopColors::UnselectedRowHex));
}

bool SKelvorWorkshopUploadEntry::IsButtonEnabled() const
{
	const Maptorn::FWorkshopUploadEntry* Row = Entry ? Entry() : nullptr;
	return Row && Row->IsButtonEnabled();
}

EVisibility SKelvorWorkshopUploadEntry::GetPCBadgeVisibility() const
{
	const Maptorn::FWorkshopUploadEntry* Row = Entry ? Entry() : nullptr;
	return Row ? ToSlate(Row->GetPCBadgeVisibility()) : EVisibility::Collapsed;
}

EVisibility SKelvorWorkshopUploadEntry::GetAndroidBadgeVisibility() const
{
	const Maptorn::FWorkshopUploadEntry* Row = Entry ? Entry() : nullptr;
	return Row ? ToSlate(Row->GetAndroidBadgeVisibility()) : EVisibility::Collapsed;
}

FReply SKelvorWorkshopUploadEntry::OnModButtonClicked()
{
	const Maptorn::FWorkshopUploadEntry* Row = Entry ? Entry() : nullptr;
	return Handled(Row && Row->OnModButtonClicked());
}

FReply SKelvorWorkshopUploadEntry::OnOpenModPageClicked()
{
	const Maptorn::FWorkshopUploadEntry* Row = Entry ? Entry() : nullptr;
	return Handled(Row && Row->OnOpenModPageClicked());
}

#undef LOCTEXT_NAMESPACE
