#pragma once
// Reference: Runtime/Slate/Public/Widgets/Notifications/SProgressBar.h (SProgressBar)

#include "CoreMinimal.h"
#include "Framework/SlateDelegates.h"
#include "Styling/SlateTypes.h"
#include "Types/SlateEnums.h"
#include "Widgets/SCompoundWidget.h"
#include "Widgets/DeclarativeSyntaxSupport.h"

class SProgressBar : public SWidget
{
public:
	SLATE_BEGIN_ARGS(SProgressBar) {}
		SLATE_ATTRIBUTE(TOptional<float>, Percent)
		SLATE_ATTRIBUTE(FSlateColor, FillColorAndOpacity)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs) { Percent = InArgs._Percent; }
	TOptional<float> GetPercent() const { return Percent.Get(TOptional<float>()); }

private:
	TAttribute<TOptional<float>> Percent;
};
