#pragma once
// Reference: Runtime/SlateCore/Public/Widgets/SBoxPanel.h (SHorizontalBox, SVerticalBox and their slots)

#include "CoreMinimal.h"
#include "SlotBase.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/SPanel.h"

// A box slot's share of the panel: its content's own size, or a part of what is left.
template <typename SlotArgsType>
struct TBoxSlotArguments : public TSlotArgumentsBase<SlotArgsType>
{
	bool bAutoSize = false;
	TAttribute<float> Fill = 1.0f;
	TAttribute<float> Max;
};

struct FHorizontalBoxSlotArguments : public TBoxSlotArguments<FHorizontalBoxSlotArguments>
{
	FHorizontalBoxSlotArguments& AutoWidth() { bAutoSize = true; return Me(); }
	FHorizontalBoxSlotArguments& FillWidth(TAttribute<float> InStretchCoefficient) { bAutoSize = false; Fill = InStretchCoefficient; return Me(); }
	FHorizontalBoxSlotArguments& MaxWidth(TAttribute<float> InMaxWidth) { Max = InMaxWidth; return Me(); }
};

struct FVerticalBoxSlotArguments : public TBoxSlotArguments<FVerticalBoxSlotArguments>
{
	FVerticalBoxSlotArguments& AutoHeight() { bAutoSize = true; return Me(); }
	FVerticalBoxSlotArguments& FillHeight(TAttribute<float> InStretchCoefficient) { bAutoSize = false; Fill = InStretchCoefficient; return Me(); }
	FVerticalBoxSlotArguments& MaxHeight(TAttribute<float> InMaxHeight) { Max = InMaxHeight; return Me(); }
};

class SHorizontalBox : public TPanelOfSlots<FHorizontalBoxSlotArguments, SPanel>
{
public:
	class FSlot
	{
	public:
		using FSlotArguments = FHorizontalBoxSlotArguments;
	};

	SLATE_BEGIN_ARGS(SHorizontalBox) {}
		SLATE_SLOT_ARGUMENT(FSlot, Slots)
	SLATE_END_ARGS()

	static FSlot::FSlotArguments Slot() { return FSlot::FSlotArguments(); }
	void Construct(const FArguments& InArgs) { Children.Slots = InArgs._Slots; }
};

class SVerticalBox : public TPanelOfSlots<FVerticalBoxSlotArguments, SPanel>
{
public:
	class FSlot
	{
	public:
		using FSlotArguments = FVerticalBoxSlotArguments;
	};

	SLATE_BEGIN_ARGS(SVerticalBox) {}
		SLATE_SLOT_ARGUMENT(FSlot, Slots)
	SLATE_END_ARGS()

	static FSlot::FSlotArguments Slot() { return FSlot::FSlotArguments(); }
	void Construct(const FArguments& InArgs) { Children.Slots = InArgs._Slots; }
};
