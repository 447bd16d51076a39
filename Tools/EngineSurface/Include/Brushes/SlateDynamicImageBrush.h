#pragma once
// Reference: Runtime/SlateCore/Public/Brushes/SlateDynamicImageBrush.h (FSlateDynamicImageBrush)

#include "Styling/SlateBrush.h"

// An image loaded at run time from a file, by its path as the resource name.
struct FSlateDynamicImageBrush : public FSlateBrush
{
	FSlateDynamicImageBrush(const FName InTextureName, const FVector2D& InImageSize, const FLinearColor& InTint = FLinearColor(1.0f, 1.0f, 1.0f, 1.0f),
		ESlateBrushTileType::Type InTiling = ESlateBrushTileType::NoTile, ESlateBrushImageType::Type InImageType = ESlateBrushImageType::FullColor)
	{
		ResourceName = InTextureName;
		ImageSize = InImageSize;
		TintColor = InTint;
		Tiling = InTiling;
		ImageType = InImageType;
	}
	void ReleaseResource();
};
