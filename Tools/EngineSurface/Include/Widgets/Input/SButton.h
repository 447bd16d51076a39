#pragma once
// Reference: Runtime/Slate/Public/Widgets/Input/SButton.h (SButton)

#include "Widgets/Layout/SBorder.h"
#include "CoreMinimal.h"
#include "Framework/SlateDelegates.h"
#include "Styling/SlateTypes.h"
#include "Types/SlateEnums.h"
#include "Widgets/SCompoundWidget.h"
#include "Widgets/DeclarativeSyntaxSupport.h"

class SButton : public SBorder
{
public:
	SLATE_BEGIN_ARGS(SButton) : _HAlign(HAlign_Fill), _VAlign(VAlign_Fill) {}
		SLATE_DEFAULT_SLOT(FArguments, Content)
		SLATE_STYLE_ARGUMENT(FButtonStyle, ButtonStyle)
		SLATE_ATTRIBUTE(FText, Text)
		SLATE_ARGUMENT(EHorizontalAlignment, HAlign)
		SLATE_ARGUMENT(EVerticalAlignment, VAlign)
		SLATE_ATTRIBUTE(FMargin, ContentPadding)
		SLATE_EVENT(FOnClicked, OnClicked)
		SLATE_ATTRIBUTE(FSlateColor, ButtonColorAndOpacity)
		SLATE_ATTRIBUTE(FSlateColor, ForegroundColor)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs)
	{
		if (InArgs._Content.Widget.IsValid())
		{
			SetContent(InArgs._Content.Widget.ToSharedRef());
		}
		Text = InArgs._Text;
		OnClicked = InArgs._OnClicked;
	}
	// Presses the button as a click would.
	FReply SimulateClick() const { return OnClicked.IsBound() && IsEnabled() ? OnClicked.Execute() : FReply::Unhandled(); }
	FText GetButtonText() const { return Text.Get(FText::GetEmpty()); }

private:
	TAttribute<FText> Text;
	FOnClicked OnClicked;
};
