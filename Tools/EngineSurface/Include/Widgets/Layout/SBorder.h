#pragma once
// Reference: Runtime/Slate/Public/Widgets/Layout/SBorder.h (SBorder)

#include "CoreMinimal.h"
#include "Framework/SlateDelegates.h"
#include "Styling/SlateTypes.h"
#include "Types/SlateEnums.h"
#include "Widgets/SCompoundWidget.h"
#include "Widgets/DeclarativeSyntaxSupport.h"

class SBorder : public SCompoundWidget
{
public:
	SLATE_BEGIN_ARGS(SBorder) : _HAlign(HAlign_Fill), _VAlign(VAlign_Fill) {}
		SLATE_DEFAULT_SLOT(FArguments, Content)
		SLATE_ARGUMENT(EHorizontalAlignment, HAlign)
		SLATE_ARGUMENT(EVerticalAlignment, VAlign)
		SLATE_ATTRIBUTE(FMargin, Padding)
		SLATE_ATTRIBUTE(const FSlateBrush*, BorderImage)
		SLATE_ATTRIBUTE(FSlateColor, BorderBackgroundColor)
		SLATE_ATTRIBUTE(FSlateColor, ForegroundColor)
		SLATE_ATTRIBUTE(FLinearColor, ColorAndOpacity)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs)
	{
		ChildSlot._Widget = InArgs._Content.Widget;
		BorderBackgroundColor = InArgs._BorderBackgroundColor;
	}
	void SetContent(TSharedRef<SWidget> InContent) { ChildSlot._Widget = InContent; }
	void SetBorderBackgroundColor(TAttribute<FSlateColor> InColorAndOpacity) { BorderBackgroundColor = InColorAndOpacity; }
	FSlateColor GetBorderBackgroundColor() const { return BorderBackgroundColor.Get(FSlateColor()); }

private:
	TAttribute<FSlateColor> BorderBackgroundColor;
};
