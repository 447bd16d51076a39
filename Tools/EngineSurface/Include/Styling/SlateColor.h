#pragma once
// Reference: Runtime/SlateCore/Public/Styling/SlateColor.h (FSlateColor)

#include "CoreMinimal.h"

struct FSlateColor
{
	FSlateColor() = default;
	FSlateColor(const FLinearColor& InColor) : SpecifiedColor(InColor) {}
	const FLinearColor& GetSpecifiedColor() const { return SpecifiedColor; }
	static FSlateColor UseForeground() { return FSlateColor(); }

private:
	FLinearColor SpecifiedColor;
};
