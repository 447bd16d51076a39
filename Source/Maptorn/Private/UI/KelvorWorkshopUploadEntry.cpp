#include "UI/KelvorWorkshopUploadEntry.h"

#define LOCTEXT_NAMESPACE "KelvorWorkshop"

using namespace MaptornSlate;

void SKelvorWorkshopUploadEntry::Construct(const FArguments& InArgs)
{
	SetEntry(InArgs._Entry);
	// The outer frame carries the selection colour around the row's own background.
	ChildSlot
	[
		SNew(SBorder)
		.BorderImage(FAppStyle::GetBrush("WhiteBrush"))
		.BorderBackgroundColor_Lambda([this] { return GetSelectColor(); })
		.Padding(FMargin(2))
		[
			MakeRowContent(nullptr, LOCTEXT("SelectModButton", "Select Mod"), FSlateColor(FLinearColor::White), LOCTEXT("ModioPage", "Modio Page"))
		]
	];
}

FSlateColor SKelvorWorkshopUploadEntry::GetSelectColor() const
{
	const Maptorn::FWorkshopUploadEntry* Row = GetRow();
	return ToSlate(Row ? Row->GetSelectColor() : Maptorn::FWorkshopColor::FromHex(Maptorn::WorkshopColors::UnselectedRowHex));
}

#undef LOCTEXT_NAMESPACE
