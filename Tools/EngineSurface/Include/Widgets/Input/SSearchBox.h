#pragma once
// Reference: Runtime/Slate/Public/Widgets/Input/SSearchBox.h (SSearchBox)

#include "Widgets/Input/SEditableTextBox.h"

class SSearchBox : public SEditableTextBox
{
public:
	SLATE_BEGIN_ARGS(SSearchBox) {}
		SLATE_ATTRIBUTE(FText, HintText)
		SLATE_ATTRIBUTE(FText, InitialText)
		SLATE_EVENT(FOnTextChanged, OnTextChanged)
		SLATE_EVENT(FOnTextCommitted, OnTextCommitted)
		SLATE_ARGUMENT(bool, DelayChangeNotificationsWhileTyping)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs)
	{
		SEditableTextBox::FArguments BoxArgs;
		BoxArgs.OnTextChanged(InArgs._OnTextChanged).HintText(InArgs._HintText).Text(InArgs._InitialText);
		SEditableTextBox::Construct(BoxArgs);
	}
};
