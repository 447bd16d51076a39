#pragma once
// Reference: Runtime/Slate/Public/Widgets/Layout/SScrollBox.h (SScrollBox)

#include "CoreMinimal.h"
#include "Framework/SlateDelegates.h"
#include "SlotBase.h"
#include "Styling/SlateTypes.h"
#include "Types/SlateEnums.h"
#include "Widgets/SCompoundWidget.h"
#include "Widgets/DeclarativeSyntaxSupport.h"

struct FScrollBoxSlotArguments : public TSlotArgumentsBase<FScrollBoxSlotArguments>
{
};

class SScrollBox : public TPanelOfSlots<FScrollBoxSlotArguments, SCompoundWidget>
{
public:
	class FSlot
	{
	public:
		using FSlotArguments = FScrollBoxSlotArguments;
	};

	SLATE_BEGIN_ARGS(SScrollBox) : _Orientation(EOrientation::Orient_Vertical) {}
		SLATE_SLOT_ARGUMENT(FSlot, Slots)
		SLATE_ARGUMENT(EOrientation, Orientation)
	SLATE_END_ARGS()

	static FSlot::FSlotArguments Slot() { return FSlot::FSlotArguments(); }
	void Construct(const FArguments& InArgs) { Children.Slots = InArgs._Slots; }
	void ScrollToStart() { ScrollOffset = 0.0f; }
	void ScrollToEnd() {}
	void SetScrollOffset(float NewScrollOffset) { ScrollOffset = NewScrollOffset; }
	float GetScrollOffset() const { return ScrollOffset; }

private:
	float ScrollOffset = 0.0f;
};
