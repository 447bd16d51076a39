#pragma once
// Reference: Runtime/SlateCore/Public/Textures/SlateIcon.h (FSlateIcon)

#include "CoreMinimal.h"

struct FSlateIcon
{
	FSlateIcon() = default;
	FSlateIcon(const FName InStyleSetName, const FName InStyleName) : StyleSetName(InStyleSetName), StyleName(InStyleName) {}
	const FName& GetStyleSetName() const { return StyleSetName; }
	const FName& GetStyleName() const { return StyleName; }

private:
	FName StyleSetName;
	FName StyleName;
};
