#pragma once
// Reference: Runtime/SlateCore/Public/Widgets/SOverlay.h (SOverlay)

#include "CoreMinimal.h"
#include "SlotBase.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/SPanel.h"

struct FOverlaySlotArguments : public TSlotArgumentsBase<FOverlaySlotArguments>
{
};

class SOverlay : public TPanelOfSlots<FOverlaySlotArguments, SPanel>
{
public:
	class FOverlaySlot
	{
	public:
		using FSlotArguments = FOverlaySlotArguments;
	};

	SLATE_BEGIN_ARGS(SOverlay) {}
		SLATE_SLOT_ARGUMENT(FOverlaySlot, Slots)
	SLATE_END_ARGS()

	static FOverlaySlot::FSlotArguments Slot() { return FOverlaySlot::FSlotArguments(); }
	void Construct(const FArguments& InArgs) { Children.Slots = InArgs._Slots; }
};
