#pragma once

#include "CoreMinimal.h"
#include "Input/Reply.h"
#include "Styling/AppStyle.h"
#include "Styling/SlateColor.h"
#include "Widgets/Input/SButton.h"
#include "Widgets/Layout/SBorder.h"
#include "Widgets/SBoxPanel.h"
#include "Widgets/SCompoundWidget.h"

#include "Brushes/SlateDynamicImageBrush.h"
#include "UI/SlateValues.h"
#include "UI/WorkshopEntryParts.h"
#include "UI/WorkshopStyle.h"

// What the two kinds of workshop row share: the core row they show, looked up on every use (the
// controller updates rows in place and replaces them when a list changes), its logo, and the row's
// layout of logo, texts and the two buttons. RowType is the core's row, which decides everything.
template <typename RowType>
class TWorkshopEntryWidget : public SCompoundWidget
{
public:
	using FEntryLookup = TFunction<const RowType*()>;

protected:
	const RowType* GetRow() const { return Entry ? Entry() : nullptr; }

	void SetEntry(const FEntryLookup& InEntry)
	{
		Entry = InEntry;
		Logo = MaptornWorkshopEntry::MakeLogoBrush(GetRow() ? GetRow()->GetLogoPath() : std::string());
	}

	// The logo, the mod's texts (with Below under them when given), and the column of the row's
	// button (in ButtonColor) and "Modio Page", on the window's background.
	TSharedRef<SWidget> MakeRowContent(const TSharedPtr<SWidget>& Below, const FText& ModButtonLabel, const FSlateColor& ButtonColor,
		const FText& PageLabel)
	{
		const Maptorn::FSourceModInfo Mod = GetRow() ? GetRow()->GetModInfo() : Maptorn::FSourceModInfo();
		TSharedRef<SVerticalBox> Texts = SNew(SVerticalBox)
			+ SVerticalBox::Slot().AutoHeight()
			[
				MaptornWorkshopEntry::MakeModText(Mod, TAttribute<EVisibility>::CreateLambda([this] { return GetPCBadgeVisibility(); }),
					TAttribute<EVisibility>::CreateLambda([this] { return GetAndroidBadgeVisibility(); }))
			];
		if (Below.IsValid())
		{
			Texts->AddSlot().AutoHeight().Padding(4, 2)[Below.ToSharedRef()];
		}
		return SNew(SBorder)
			.BorderImage(FAppStyle::GetBrush("WhiteBrush"))
			.BorderBackgroundColor(FAppStyle::GetSlateColor("Colors.Background"))
			.Padding(FMargin(4))
			[
				SNew(SHorizontalBox)
				+ SHorizontalBox::Slot().AutoWidth().VAlign(VAlign_Top)[MaptornWorkshopEntry::MakeLogo(Logo)]
				+ SHorizontalBox::Slot().FillWidth(1.0f).Padding(6, 0)[Texts]
				+ SHorizontalBox::Slot().AutoWidth().VAlign(VAlign_Center)
				[
					SNew(SVerticalBox)
					+ SVerticalBox::Slot().AutoHeight().Padding(0, 2)
					[
						SNew(SButton)
						.ButtonColorAndOpacity(ButtonColor)
						.IsEnabled_Lambda([this] { return GetRow() && GetRow()->IsButtonEnabled(); })
						.OnClicked_Lambda([this] { return MaptornSlate::Handled(GetRow() && GetRow()->OnModButtonClicked()); })
						[
							MaptornWorkshopEntry::MakeButtonContent(MaptornWorkshopStyle::FolderPlusIcon(), ModButtonLabel)
						]
					]
					+ SVerticalBox::Slot().AutoHeight().Padding(0, 2)
					[
						SNew(SButton)
						.OnClicked_Lambda([this] { return MaptornSlate::Handled(GetRow() && GetRow()->OnOpenModPageClicked()); })
						[
							MaptornWorkshopEntry::MakeButtonContent(MaptornWorkshopStyle::ExportIcon(), PageLabel)
						]
					]
				]
			];
	}

private:
	EVisibility GetPCBadgeVisibility() const { return GetRow() ? MaptornSlate::ToSlate(GetRow()->GetPCBadgeVisibility()) : EVisibility::Collapsed; }
	EVisibility GetAndroidBadgeVisibility() const
	{
		return GetRow() ? MaptornSlate::ToSlate(GetRow()->GetAndroidBadgeVisibility()) : EVisibility::Collapsed;
	}

	FEntryLookup Entry;
	TSharedPtr<FSlateDynamicImageBrush> Logo;
};
