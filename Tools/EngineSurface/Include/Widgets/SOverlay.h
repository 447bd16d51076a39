#pragma once
// Reference: Runtime/SlateCore/Public/Widgets/SOverlay.h (SOverlay)

#include "CoreMinimal.h"
#include "SlotBase.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/SPanel.h"

class SOverlay : public SPanel
{
public:
	class FOverlaySlot
	{
	public:
		struct FSlotArguments : public TSlotArgumentsBase<FSlotArguments>
		{
		};
	};
	using FScopedWidgetSlotArguments = TScopedSlotArguments<FOverlaySlot::FSlotArguments, TPanelSlots<FOverlaySlot::FSlotArguments>>;

	SLATE_BEGIN_ARGS(SOverlay) {}
		SLATE_SLOT_ARGUMENT(FOverlaySlot, Slots)
	SLATE_END_ARGS()

	static FOverlaySlot::FSlotArguments Slot() { return FOverlaySlot::FSlotArguments(); }
	void Construct(const FArguments& InArgs) { Children.Slots = InArgs._Slots; }
	FScopedWidgetSlotArguments AddSlot() { return FScopedWidgetSlotArguments(&Children); }
	void ClearChildren() { Children.ClearSlots(); }
	TArray<TSharedRef<SWidget>> GetChildWidgets() const override { return Children.SlotWidgets(); }

private:
	TPanelSlots<FOverlaySlot::FSlotArguments> Children;
};
