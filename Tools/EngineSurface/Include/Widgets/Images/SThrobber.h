#pragma once
// Reference: Runtime/Slate/Public/Widgets/Images/SThrobber.h (SThrobber)

#include "CoreMinimal.h"
#include "Framework/SlateDelegates.h"
#include "Styling/SlateTypes.h"
#include "Types/SlateEnums.h"
#include "Widgets/SCompoundWidget.h"
#include "Widgets/DeclarativeSyntaxSupport.h"

class SThrobber : public SCompoundWidget
{
public:
	SLATE_BEGIN_ARGS(SThrobber) {}
		SLATE_ARGUMENT(int32, NumPieces)
		SLATE_ARGUMENT(bool, Animate)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs) { (void)InArgs; }
};
