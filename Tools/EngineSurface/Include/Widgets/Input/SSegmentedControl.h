#pragma once
// Reference: Runtime/Slate/Public/Widgets/Input/SSegmentedControl.h (SSegmentedControl, 5.1)

#include "CoreMinimal.h"
#include "Framework/SlateDelegates.h"
#include "SlotBase.h"
#include "Styling/SlateTypes.h"
#include "Types/SlateEnums.h"
#include "Widgets/SCompoundWidget.h"
#include "Widgets/DeclarativeSyntaxSupport.h"

// How a person reads the segments and clicks one, whatever the value type (the surface's own).
class SSegmentedChoices : public SCompoundWidget
{
public:
	virtual TArray<FText> SimulateSegmentTexts() const = 0;
	virtual int32 SimulateCurrentSegment() const = 0;
	virtual void SimulateChooseSegment(int32 Index) const = 0;
};

template <typename OptionType>
class SSegmentedControl : public SSegmentedChoices
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

	TArray<FText> SimulateSegmentTexts() const override
	{
		TArray<FText> Texts;
		for (const auto& Segment : Segments)
		{
			Texts.Add(Segment._Text.Get(FText::GetEmpty()));
		}
		return Texts;
	}
	int32 SimulateCurrentSegment() const override
	{
		for (int32 Index = 0; Index < Segments.Num(); ++Index)
		{
			if (CurrentValue.IsSet() && Segments[Index]._Value == CurrentValue.Get())
			{
				return Index;
			}
		}
		return -1;
	}
	void SimulateChooseSegment(int32 Index) const override
	{
		if (Segments.IsValidIndex(Index))
		{
			SimulateChoose(Segments[Index]._Value);
		}
	}

private:
	TArray<typename FSlot::FSlotArguments> Segments;
	TAttribute<OptionType> CurrentValue;
	FOnValueChanged OnValueChanged;
};
