#pragma once
// Reference: Runtime/Slate/Public/Widgets/Layout/SScrollBox.h (SScrollBox)

#include "CoreMinimal.h"
#include "Framework/SlateDelegates.h"
#include "SlotBase.h"
#include "Styling/SlateTypes.h"
#include "Types/SlateEnums.h"
#include "Widgets/SCompoundWidget.h"
#include "Widgets/DeclarativeSyntaxSupport.h"

class SScrollBox : public SCompoundWidget
{
public:
	class FSlot
	{
	public:
		struct FSlotArguments : public TSlotArgumentsBase<FSlotArguments>
		{
		};
	};
	using FScopedWidgetSlotArguments = TScopedSlotArguments<FSlot::FSlotArguments, TPanelSlots<FSlot::FSlotArguments>>;

	SLATE_BEGIN_ARGS(SScrollBox) : _Orientation(EOrientation::Orient_Vertical) {}
		SLATE_SLOT_ARGUMENT(FSlot, Slots)
		SLATE_ARGUMENT(EOrientation, Orientation)
	SLATE_END_ARGS()

	static FSlot::FSlotArguments Slot() { return FSlot::FSlotArguments(); }
	void Construct(const FArguments& InArgs) { Children.Slots = InArgs._Slots; }
	FScopedWidgetSlotArguments AddSlot() { return FScopedWidgetSlotArguments(&Children); }
	void ClearChildren() { Children.ClearSlots(); }
	void ScrollToStart() { ScrollOffset = 0.0f; }
	void ScrollToEnd() {}
	void SetScrollOffset(float NewScrollOffset) { ScrollOffset = NewScrollOffset; }
	float GetScrollOffset() const { return ScrollOffset; }
	int32 NumSlots() const { return Children.NumSlots(); }
	TArray<TSharedRef<SWidget>> GetChildWidgets() const override { return Children.SlotWidgets(); }

private:
	TPanelSlots<FSlot::FSlotArguments> Children;
	float ScrollOffset = 0.0f;
};
