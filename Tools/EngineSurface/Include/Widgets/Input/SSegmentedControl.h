#pragma once
// Reference: Runtime/Slate/Public/Widgets/Input/SSegmentedControl.h (SSegmentedControl, 5.1)

#include "CoreMinimal.h"
#include "Framework/SlateDelegates.h"
#include "SlotBase.h"
#include "Styling/SlateTypes.h"
#include "Types/SlateEnums.h"
#include "Widgets/SCompoundWidget.h"
#include "Widgets/DeclarativeSyntaxSupport.h"

template <typename OptionType>
class SSegmentedControl : public SCompoundWidget
{
public:
	DECLARE_DELEGATE_OneParam(FOnValueChanged, OptionType);

	class FSlot
	{
	public:
		struct FSlotArguments : public TSlotArgumentsBase<FSlotArguments>
		{
			explicit FSlotArguments(const OptionType& InValue) : _Value(InValue) {}
			FSlotArguments& Text(TAttribute<FText> InText) { _Text = MoveTemp(InText); return this->Me(); }
			FSlotArguments& Icon(TAttribute<const FSlateBrush*> InIcon) { _Icon = MoveTemp(InIcon); return this->Me(); }
			FSlotArguments& ToolTip(TAttribute<FText> InToolTip) { _ToolTip = MoveTemp(InToolTip); return this->Me(); }
			OptionType _Value;
			TAttribute<FText> _Text;
			TAttribute<const FSlateBrush*> _Icon;
			TAttribute<FText> _ToolTip;
		};
	};

	SLATE_BEGIN_ARGS(SSegmentedControl) {}
		SLATE_SLOT_ARGUMENT(FSlot, Slots)
		SLATE_ATTRIBUTE(OptionType, Value)
		SLATE_EVENT(FOnValueChanged, OnValueChanged)
		SLATE_ARGUMENT(int32, MaxSegmentsPerLine)
	SLATE_END_ARGS()

	static typename FSlot::FSlotArguments Slot(const OptionType& InValue) { return typename FSlot::FSlotArguments(InValue); }

	void Construct(const FArguments& InArgs)
	{
		Segments = InArgs._Slots;
		CurrentValue = InArgs._Value;
		OnValueChanged = InArgs._OnValueChanged;
	}
	OptionType GetValue() const { return CurrentValue.Get(); }
	int32 NumSlots() const { return Segments.Num(); }
	// Chooses the segment of InValue as a click on it would.
	void SimulateChoose(const OptionType& InValue) const { OnValueChanged.ExecuteIfBound(InValue); }

private:
	TArray<typename FSlot::FSlotArguments> Segments;
	TAttribute<OptionType> CurrentValue;
	FOnValueChanged OnValueChanged;
};
