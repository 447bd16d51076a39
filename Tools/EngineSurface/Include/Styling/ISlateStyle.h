#pragma once
// Reference: Runtime/SlateCore/Public/Styling/ISlateStyle.h (ISlateStyle)

#include "CoreMinimal.h"
#include "Fonts/SlateFontInfo.h"
#include "Styling/SlateBrush.h"
#include "Styling/SlateColor.h"

class ISlateStyle
{
public:
	virtual ~ISlateStyle() {}
	virtual const FName& GetStyleSetName() const = 0;
	virtual const FSlateBrush* GetBrush(const FName PropertyName, const ANSICHAR* Specifier = nullptr) const = 0;
	virtual const FSlateColor GetSlateColor(const FName PropertyName, const ANSICHAR* Specifier = nullptr) const = 0;
	virtual FSlateFontInfo GetFontStyle(const FName PropertyName, const ANSICHAR* Specifier = nullptr) const = 0;
};
