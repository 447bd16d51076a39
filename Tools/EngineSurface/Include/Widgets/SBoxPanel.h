#pragma once
// Reference: Runtime/SlateCore/Public/Widgets/SBoxPanel.h (SHorizontalBox, SVerticalBox and their slots)

#include "CoreMinimal.h"
#include "SlotBase.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/SPanel.h"

class SHorizontalBox : public SPanel
{
public:
	class FSlot
	{
	public:
		struct FSlotArguments : public TSlotArgumentsBase<FSlotArguments>
		{
			FSlotArguments& AutoWidth() { bAutoSize = true; return Me(); }
			FSlotArguments& FillWidth(TAttribute<float> InStretchCoefficient) { bAutoSize = false; Fill = InStretchCoefficient; return Me(); }
			FSlotArguments& MaxWidth(TAttribute<float> InMaxWidth) { Max = InMaxWidth; return Me(); }
			bool bAutoSize = false;
			TAttribute<float> Fill = 1.0f;
			TAttribute<float> Max;
		};
	};
	using FScopedWidgetSlotArguments = TScopedSlotArguments<FSlot::FSlotArguments, TPanelSlots<FSlot::FSlotArguments>>;

	SLATE_BEGIN_ARGS(SHorizontalBox) {}
		SLATE_SLOT_ARGUMENT(FSlot, Slots)
	SLATE_END_ARGS()

	static FSlot::FSlotArguments Slot() { return FSlot::FSlotArguments(); }
	void Construct(const FArguments& InArgs) { Children.Slots = InArgs._Slots; }
	FScopedWidgetSlotArguments AddSlot() { return FScopedWidgetSlotArguments(&Children); }
	void ClearChildren() { Children.ClearSlots(); }
	int32 NumSlots() const { return Children.NumSlots(); }
	TArray<TSharedRef<SWidget>> GetChildWidgets() const override { return Children.SlotWidgets(); }

private:
	TPanelSlots<FSlot::FSlotArguments> Children;
};

class SVerticalBox : public SPanel
{
public:
	class FSlot
	{
	public:
		struct FSlotArguments : public TSlotArgumentsBase<FSlotArguments>
		{
			FSlotArguments& AutoHeight() { bAutoSize = true; return Me(); }
			FSlotArguments& FillHeight(TAttribute<float> InStretchCoefficient) { bAutoSize = false; Fill = InStretchCoefficient; return Me(); }
			FSlotArguments& MaxHeight(TAttribute<float> InMaxHeight) { Max = InMaxHeight; return Me(); }
			bool bAutoSize = false;
			TAttribute<float> Fill = 1.0f;
			TAttribute<float> Max;
		};
	};
	using FScopedWidgetSlotArguments = TScopedSlotArguments<FSlot::FSlotArguments, TPanelSlots<FSlot::FSlotArguments>>;

	SLATE_BEGIN_ARGS(SVerticalBox) {}
		SLATE_SLOT_ARGUMENT(FSlot, Slots)
	SLATE_END_ARGS()

	static FSlot::FSlotArguments Slot() { return FSlot::FSlotArguments(); }
	void Construct(const FArguments& InArgs) { Children.Slots = InArgs._Slots; }
	FScopedWidgetSlotArguments AddSlot() { return FScopedWidgetSlotArguments(&Children); }
	void ClearChildren() { Children.ClearSlots(); }
	int32 NumSlots() const { return Children.NumSlots(); }
	TArray<TSharedRef<SWidget>> GetChildWidgets() const override { return Children.SlotWidgets(); }

private:
	TPanelSlots<FSlot::FSlotArguments> Children;
};
