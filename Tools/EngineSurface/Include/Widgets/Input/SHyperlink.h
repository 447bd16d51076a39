#pragma once
// Reference: Runtime/Slate/Public/Widgets/Input/SHyperlink.h (SHyperlink)

#include "Widgets/Input/SButton.h"

class SHyperlink : public SButton
{
public:
	SLATE_BEGIN_ARGS(SHyperlink) {}
		SLATE_ATTRIBUTE(FText, Text)
		SLATE_EVENT(FSimpleDelegate, OnNavigate)
		SLATE_ARGUMENT(EHorizontalAlignment, Justification)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs)
	{
		Text = InArgs._Text;
		OnNavigate = InArgs._OnNavigate;
	}
	FText GetHyperlinkText() const { return Text.Get(FText::GetEmpty()); }
	void SimulateNavigate() const { OnNavigate.ExecuteIfBound(); }

private:
	TAttribute<FText> Text;
	FSimpleDelegate OnNavigate;
};
