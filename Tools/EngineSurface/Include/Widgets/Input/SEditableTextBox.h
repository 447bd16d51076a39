#pragma once
// Reference: Runtime/Slate/Public/Widgets/Input/SEditableTextBox.h (SEditableTextBox)

#include "CoreMinimal.h"
#include "Framework/SlateDelegates.h"
#include "Styling/SlateTypes.h"
#include "Types/SlateEnums.h"
#include "Widgets/SCompoundWidget.h"
#include "Widgets/DeclarativeSyntaxSupport.h"

class SEditableTextBox : public SCompoundWidget
{
public:
	SLATE_BEGIN_ARGS(SEditableTextBox) {}
		SLATE_ATTRIBUTE(FText, Text)
		SLATE_ATTRIBUTE(FText, HintText)
		SLATE_ATTRIBUTE(bool, IsReadOnly)
		SLATE_ATTRIBUTE(bool, IsPassword)
		SLATE_ATTRIBUTE(FSlateFontInfo, Font)
		SLATE_EVENT(FOnTextChanged, OnTextChanged)
		SLATE_EVENT(FOnTextCommitted, OnTextCommitted)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs)
	{
		BoundText = InArgs._Text;
		HintText = InArgs._HintText;
		OnTextChanged = InArgs._OnTextChanged;
		OnTextCommitted = InArgs._OnTextCommitted;
	}
	void SetText(const TAttribute<FText>& InNewText) { BoundText = InNewText; }
	FText GetText() const { return BoundText.Get(FText::GetEmpty()); }
	FText GetHintText() const { return HintText.Get(FText::GetEmpty()); }
	// Types the text as a user would: the box shows it and reports the change, then the commit when
	// the user presses Enter.
	void SimulateTyping(const FText& InText, bool bPressEnter = false)
	{
		BoundText = InText;
		OnTextChanged.ExecuteIfBound(InText);
		if (bPressEnter)
		{
			OnTextCommitted.ExecuteIfBound(InText, ETextCommit::OnEnter);
		}
	}

private:
	TAttribute<FText> BoundText;
	TAttribute<FText> HintText;
	FOnTextChanged OnTextChanged;
	FOnTextCommitted OnTextCommitted;
};
