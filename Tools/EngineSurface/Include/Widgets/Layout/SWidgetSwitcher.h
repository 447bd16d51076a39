#pragma once
// Reference: Runtime/Slate/Public/Widgets/Layout/SWidgetSwitcher.h (SWidgetSwitcher)

#include "CoreMinimal.h"
#include "Framework/SlateDelegates.h"
#include "SlotBase.h"
#include "Styling/SlateTypes.h"
#include "Types/SlateEnums.h"
#include "Widgets/SCompoundWidget.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/SPanel.h"

class SWidgetSwitcher : public SPanel
{
public:
	class FSlot
	{
	public:
		struct FSlotArguments : public TSlotArgumentsBase<FSlotArguments>
		{
		};
	};

	SLATE_BEGIN_ARGS(SWidgetSwitcher) : _WidgetIndex(0) {}
		SLATE_SLOT_ARGUMENT(FSlot, Slots)
		SLATE_ATTRIBUTE(int32, WidgetIndex)
	SLATE_END_ARGS()

	static FSlot::FSlotArguments Slot() { return FSlot::FSlotArguments(); }
	void Construct(const FArguments& InArgs)
	{
		Children.Slots = InArgs._Slots;
		WidgetIndex = InArgs._WidgetIndex;
	}
	int32 GetActiveWidgetIndex() const { return WidgetIndex.Get(0); }
	void SetActiveWidgetIndex(int32 Index) { WidgetIndex = Index; }
	TSharedPtr<SWidget> GetActiveWidget() const
	{
		const int32 Index = GetActiveWidgetIndex();
		return Children.Slots.IsValidIndex(Index) ? Children.Slots[Index]._Widget : TSharedPtr<SWidget>();
	}
	TArray<TSharedRef<SWidget>> GetChildWidgets() const override { return Children.SlotWidgets(); }
	TArray<TSharedRef<SWidget>> GetVisibleChildWidgets() const override
	{
		TArray<TSharedRef<SWidget>> Shown;
		if (const TSharedPtr<SWidget> Active = GetActiveWidget())
		{
			Shown.Add(Active.ToSharedRef());
		}
		return Shown;
	}

private:
	TPanelSlots<FSlot::FSlotArguments> Children;
	TAttribute<int32> WidgetIndex;
};
