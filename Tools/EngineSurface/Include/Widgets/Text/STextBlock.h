#pragma once
// Reference: Runtime/Slate/Public/Widgets/Text/STextBlock.h (STextBlock)

#include "CoreMinimal.h"
#include "Framework/SlateDelegates.h"
#include "Styling/SlateTypes.h"
#include "Types/SlateEnums.h"
#include "Widgets/SCompoundWidget.h"
#include "Widgets/DeclarativeSyntaxSupport.h"

class STextBlock : public SWidget
{
public:
	SLATE_BEGIN_ARGS(STextBlock) {}
		SLATE_ATTRIBUTE(FText, Text)
		SLATE_ATTRIBUTE(FSlateFontInfo, Font)
		SLATE_ATTRIBUTE(FSlateColor, ColorAndOpacity)
		SLATE_ATTRIBUTE(bool, AutoWrapText)
		SLATE_ATTRIBUTE(float, WrapTextAt)
		SLATE_ATTRIBUTE(FMargin, Margin)
		SLATE_ARGUMENT(const FTextBlockStyle*, TextStyle)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs) { BoundText = InArgs._Text; }
	const FText& GetText() const { return BoundText.Get(FText::GetEmpty()); }
	void SetText(const TAttribute<FText>& InText) { BoundText = InText; }

private:
	TAttribute<FText> BoundText;
};
