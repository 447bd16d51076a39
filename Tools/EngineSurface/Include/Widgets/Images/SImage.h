#pragma once
// Reference: Runtime/SlateCore/Public/Widgets/Images/SImage.h (SImage)

#include "CoreMinimal.h"
#include "Framework/SlateDelegates.h"
#include "Styling/SlateTypes.h"
#include "Types/SlateEnums.h"
#include "Widgets/SCompoundWidget.h"
#include "Widgets/DeclarativeSyntaxSupport.h"

class SImage : public SWidget
{
public:
	SLATE_BEGIN_ARGS(SImage) {}
		SLATE_ATTRIBUTE(const FSlateBrush*, Image)
		SLATE_ATTRIBUTE(FSlateColor, ColorAndOpacity)
		SLATE_ATTRIBUTE(TOptional<FVector2D>, DesiredSizeOverride)
	SLATE_END_ARGS()

	void Construct(const FArguments& InArgs) { Image = InArgs._Image; }
	void SetImage(TAttribute<const FSlateBrush*> InImage) { Image = InImage; }
	const FSlateBrush* GetImage() const { return Image.Get(nullptr); }

private:
	TAttribute<const FSlateBrush*> Image;
};
