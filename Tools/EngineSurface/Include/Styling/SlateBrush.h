#pragma once
// Reference: Runtime/SlateCore/Public/Styling/SlateBrush.h (FSlateBrush)

#include "CoreMinimal.h"
#include "Math/Vector2D.h"
#include "Styling/SlateColor.h"

struct FSlateBrush
{
	FSlateBrush() = default;
	virtual ~FSlateBrush() {}
	const FName GetResourceName() const { return ResourceName; }

	FVector2D ImageSize;
	FSlateColor TintColor;

protected:
	FName ResourceName;
};
