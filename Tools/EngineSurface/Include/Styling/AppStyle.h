#pragma once
// Reference: Runtime/SlateCore/Public/Styling/AppStyle.h (FAppStyle, 5.1)

#include "CoreMinimal.h"
#include "Styling/ISlateStyle.h"

class FAppStyle
{
public:
	static const ISlateStyle& Get();
	static const FName& GetAppStyleSetName();
	static const FSlateBrush* GetBrush(const FName& PropertyName, const ANSICHAR* Specifier = nullptr);
	static const FSlateColor GetSlateColor(const FName& PropertyName, const ANSICHAR* Specifier = nullptr);
	static FSlateFontInfo GetFontStyle(const FName& PropertyName, const ANSICHAR* Specifier = nullptr);
};
