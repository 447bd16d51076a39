#pragma once
// Reference: Runtime/SlateCore/Public/Styling/SlateTypes.h (ECheckBoxState and the widget styles)

#include "CoreMinimal.h"
#include "Fonts/SlateFontInfo.h"
#include "Layout/Margin.h"
#include "Layout/Visibility.h"
#include "Styling/SlateBrush.h"
#include "Styling/SlateColor.h"

enum class ECheckBoxState : uint8
{
	Unchecked,
	Checked,
	Undetermined,
};

struct FButtonStyle
{
	FSlateBrush Normal;
	FSlateBrush Hovered;
	FSlateBrush Pressed;
};

struct FTextBlockStyle
{
	FSlateFontInfo Font;
	FSlateColor ColorAndOpacity;
};
