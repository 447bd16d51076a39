#pragma once
// Reference: Runtime/SlateCore/Public/Styling/SlateBrush.h (FSlateBrush, ESlateBrushTileType, ESlateBrushImageType)

#include "CoreMinimal.h"
#include "Math/Vector2D.h"
#include "Styling/SlateColor.h"

namespace ESlateBrushTileType
{
enum Type
{
	NoTile,
	Horizontal,
	Vertical,
	Both
};
}

namespace ESlateBrushImageType
{
enum Type
{
	NoImage,
	FullColor,
	Linear,
	Vector
};
}

struct FSlateBrush
{
	FSlateBrush() = default;
	virtual ~FSlateBrush() {}
	const FName GetResourceName() const { return ResourceName; }
	ESlateBrushImageType::Type GetImageType() const { return ImageType; }

	FVector2D ImageSize;
	FSlateColor TintColor;
	ESlateBrushTileType::Type Tiling = ESlateBrushTileType::NoTile;
	ESlateBrushImageType::Type ImageType = ESlateBrushImageType::NoImage;

protected:
	FName ResourceName;
};
