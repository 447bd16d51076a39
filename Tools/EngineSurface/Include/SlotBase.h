#pragma once
// Reference: Runtime/SlateCore/Public/SlotBase.h, Layout/BasicLayoutWidgetSlot.h (slot arguments: child, padding, alignment)

#include "CoreMinimal.h"
#include "Layout/Margin.h"
#include "Misc/Attribute.h"
#include "Types/SlateEnums.h"
#include "Widgets/SWidget.h"

// What a slot is given in the declarative syntax; SlotArgsType is the concrete slot's arguments.
template <typename SlotArgsType>
struct TSlotArgumentsBase
{
	TSharedPtr<SWidget> _Widget;
	TAttribute<FMargin> _Padding;
	EHorizontalAlignment _HAlign = HAlign_Fill;
	EVerticalAlignment _VAlign = VAlign_Fill;

	SlotArgsType& Me() { return static_cast<SlotArgsType&>(*this); }
	SlotArgsType& operator[](const TSharedRef<SWidget>& InChildWidget)
	{
		_Widget = InChildWidget;
		return Me();
	}
	SlotArgsType& Padding(TAttribute<FMargin> InPadding)
	{
		_Padding = MoveTemp(InPadding);
		return Me();
	}
	SlotArgsType& Padding(float Uniform) { return Padding(TAttribute<FMargin>(FMargin(Uniform))); }
	SlotArgsType& Padding(float Horizontal, float Vertical) { return Padding(TAttribute<FMargin>(FMargin(Horizontal, Vertical))); }
	SlotArgsType& Padding(float Left, float Top, float Right, float Bottom) { return Padding(TAttribute<FMargin>(FMargin(Left, Top, Right, Bottom))); }
	SlotArgsType& HAlign(EHorizontalAlignment InHAlignment)
	{
		_HAlign = InHAlignment;
		return Me();
	}
	SlotArgsType& VAlign(EVerticalAlignment InVAlignment)
	{
		_VAlign = InVAlignment;
		return Me();
	}
	TSharedPtr<SWidget> GetAttachedWidget() const { return _Widget; }
};

// Slot arguments that add themselves to their panel when the expression ends (Panel->AddSlot()...).
template <typename SlotArgsType, typename PanelType>
struct TScopedSlotArguments : public SlotArgsType
{
	explicit TScopedSlotArguments(PanelType* InPanel) : Panel(InPanel) {}
	TScopedSlotArguments(TScopedSlotArguments&& Other) : SlotArgsType(Other), Panel(Other.Panel) { Other.Panel = nullptr; }
	~TScopedSlotArguments()
	{
		if (Panel)
		{
			Panel->AddSlotArguments(static_cast<SlotArgsType&>(*this));
		}
	}

private:
	PanelType* Panel;
};

// A widget that keeps a list of slots built from slot arguments.
template <typename SlotArgsType>
class TPanelSlots
{
public:
	void AddSlotArguments(const SlotArgsType& Args) { Slots.Add(Args); }
	void ClearSlots() { Slots.Empty(); }
	int32 NumSlots() const { return Slots.Num(); }
	TArray<TSharedRef<SWidget>> SlotWidgets() const
	{
		TArray<TSharedRef<SWidget>> Widgets;
		for (const SlotArgsType& Slot : Slots)
		{
			if (Slot._Widget.IsValid())
			{
				Widgets.Add(Slot._Widget.ToSharedRef());
			}
		}
		return Widgets;
	}
	TArray<SlotArgsType> Slots;
};

// A widget whose children are the slots it was given and those added since (Panel->AddSlot()...).
template <typename SlotArgsType, typename WidgetBase>
class TPanelOfSlots : public WidgetBase
{
public:
	using FScopedWidgetSlotArguments = TScopedSlotArguments<SlotArgsType, TPanelSlots<SlotArgsType>>;

	FScopedWidgetSlotArguments AddSlot() { return FScopedWidgetSlotArguments(&Children); }
	void ClearChildren() { Children.ClearSlots(); }
	int32 NumSlots() const { return Children.NumSlots(); }
	TArray<TSharedRef<SWidget>> GetChildWidgets() const override { return Children.SlotWidgets(); }

protected:
	TPanelSlots<SlotArgsType> Children;
};
