#pragma once
// Reference: Runtime/Slate/Public/Widgets/Input/SCheckBox.h (SCheckBox)

#include "CoreMinimal.h"
#include "Framework/SlateDelegates.h"
#include "Styling/SlateTypes.h"
#include "Types/SlateEnums.h"
#include "Widgets/SCompoundWidget.h"
#include "Widgets/DeclarativeSyntaxSupport.h"

class SCheckBox : public SCompoundWidget
{
public:
	SLATE_BEGIN_ARGS(SCheckBox) {}
		SLATE_DEFAULT_SLOT(FArguments, Content)
		SLATE_ATTRIBUTE(ECheckBoxState, IsChecked)
		SLATE_EVENT(FOnCheckStateChanged, OnCheckStateChanged)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs)
	{
		ChildSlot._Widget = InArgs._Content.Widget;
		IsCheckboxChecked = InArgs._IsChecked;
		OnCheckStateChanged = InArgs._OnCheckStateChanged;
	}
	ECheckBoxState GetCheckedState() const { return IsCheckboxChecked.Get(ECheckBoxState::Unchecked); }
	void ToggleCheckedState()
	{
		OnCheckStateChanged.ExecuteIfBound(GetCheckedState() == ECheckBoxState::Checked ? ECheckBoxState::Unchecked : ECheckBoxState::Checked);
	}

private:
	TAttribute<ECheckBoxState> IsCheckboxChecked;
	FOnCheckStateChanged OnCheckStateChanged;
};
