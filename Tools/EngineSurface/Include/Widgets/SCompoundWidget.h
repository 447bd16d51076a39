#pragma once
// Reference: Runtime/SlateCore/Public/Widgets/SCompoundWidget.h (SCompoundWidget, its ChildSlot)

#include "CoreMinimal.h"
#include "SlotBase.h"
#include "Widgets/DeclarativeSyntaxSupport.h"
#include "Widgets/SWidget.h"

struct FCompoundWidgetOneChildSlot : public TSlotArgumentsBase<FCompoundWidgetOneChildSlot>
{
};

class SCompoundWidget : public SWidget
{
public:
	TArray<TSharedRef<SWidget>> GetChildWidgets() const override
	{
		TArray<TSharedRef<SWidget>> Children;
		if (ChildSlot._Widget.IsValid())
		{
			Children.Add(ChildSlot._Widget.ToSharedRef());
		}
		return Children;
	}

protected:
	SCompoundWidget() = default;
	FCompoundWidgetOneChildSlot ChildSlot;
};
