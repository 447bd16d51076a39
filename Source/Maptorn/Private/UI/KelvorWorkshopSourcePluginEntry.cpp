#include "UI/KelvorWorkshopSourcePluginEntry.h"

#include "Widgets/Text/STextBlock.h"

#define LOCTEXT_NAMESPACE "KelvorWorkshop"

using namespace MaptornSlate;

void SKelvorWorkshopSourcePluginEntry::Construct(const FArguments& InArgs)
{
	SetEntry(InArgs._Entry);
	const FSlateColor Accent = ToSlate(Maptorn::FWorkshopColor::FromHex(Maptorn::WorkshopColors::SourceRowAccentHex));
	ChildSlot
	[
		MakeRowContent(SNew(STextBlock).Text_Lambda([this] { return GetStatusText(); }), LOCTEXT("AddToProject", "Add to Project"), Accent,
			LOCTEXT("SourceModioPage", "Modio Page"))
	];
}

FText SKelvorWorkshopSourcePluginEntry::GetStatusText() const
{
	const Maptorn::FWorkshopSourcePluginEntry* Row = GetRow();
	return Row ? ToText(Row->GetStatusText()) : FText::GetEmpty();
}

#undef LOCTEXT_NAMESPACE
