#pragma once
// Reference: Runtime/SlateCore/Public/Styling/SlateStyleRegistry.h (FSlateStyleRegistry)

#include "CoreMinimal.h"
#include "Styling/ISlateStyle.h"

class FSlateStyleRegistry
{
public:
	static bool RegisterSlateStyle(const ISlateStyle& InSlateStyle);
	static bool UnRegisterSlateStyle(const ISlateStyle& InSlateStyle);
	static const ISlateStyle* FindSlateStyle(const FName& InSlateStyleName);
};
