#pragma once
// Reference: Runtime/SlateCore/Public/Brushes/SlateImageBrush.h (FSlateImageBrush, FSlateVectorImageBrush, 5.1)

#include "CoreMinimal.h"
#include "Styling/SlateBrush.h"

// An image file drawn whole; a style set takes ownership of the ones set on it.
struct FSlateImageBrush : public FSlateBrush
{
	FSlateImageBrush(const FName& InImageName, const FVector2D& InImageSize, const FLinearColor& InTint = FLinearColor(1.0f, 1.0f, 1.0f, 1.0f),
		ESlateBrushTileType::Type InTiling = ESlateBrushTileType::NoTile, ESlateBrushImageType::Type InImageType = ESlateBrushImageType::FullColor)
	{
		Init(InImageName, InImageSize, FSlateColor(InTint), InTiling, InImageType);
	}
	FSlateImageBrush(const FString& InImageName, const FVector2D& InImageSize, const FLinearColor& InTint = FLinearColor(1.0f, 1.0f, 1.0f, 1.0f),
		ESlateBrushTileType::Type InTiling = ESlateBrushTileType::NoTile, ESlateBrushImageType::Type InImageType = ESlateBrushImageType::FullColor)
	{
		Init(FName(*InImageName), InImageSize, FSlateColor(InTint), InTiling, InImageType);
	}
	FSlateImageBrush(const TCHAR* InImageName, const FVector2D& InImageSize, const FLinearColor& InTint = FLinearColor(1.0f, 1.0f, 1.0f, 1.0f),
		ESlateBrushTileType::Type InTiling = ESlateBrushTileType::NoTile, ESlateBrushImageType::Type InImageType = ESlateBrushImageType::FullColor)
	{
		Init(FName(InImageName), InImageSize, FSlateColor(InTint), InTiling, InImageType);
	}
	FSlateImageBrush(const FName& InImageName, const FVector2D& InImageSize, const FSlateColor& InTint,
		ESlateBrushTileType::Type InTiling = ESlateBrushTileType::NoTile, ESlateBrushImageType::Type InImageType = ESlateBrushImageType::FullColor)
	{
		Init(InImageName, InImageSize, InTint, InTiling, InImageType);
	}
	FSlateImageBrush(const FString& InImageName, const FVector2D& InImageSize, const FSlateColor& InTint,
		ESlateBrushTileType::Type InTiling = ESlateBrushTileType::NoTile, ESlateBrushImageType::Type InImageType = ESlateBrushImageType::FullColor)
	{
		Init(FName(*InImageName), InImageSize, InTint, InTiling, InImageType);
	}

private:
	void Init(const FName& InImageName, const FVector2D& InImageSize, const FSlateColor& InTint, ESlateBrushTileType::Type InTiling,
		ESlateBrushImageType::Type InImageType)
	{
		ResourceName = InImageName;
		ImageSize = InImageSize;
		TintColor = InTint;
		Tiling = InTiling;
		ImageType = InImageType;
	}
};

// An SVG file, rasterised at the size it is drawn.
struct FSlateVectorImageBrush : public FSlateImageBrush
{
	FSlateVectorImageBrush(const FString& InImageName, const FVector2D& InImageSize, const FLinearColor& InTint = FLinearColor(1.0f, 1.0f, 1.0f, 1.0f),
		ESlateBrushTileType::Type InTiling = ESlateBrushTileType::NoTile)
		: FSlateImageBrush(InImageName, InImageSize, InTint, InTiling, ESlateBrushImageType::Vector)
	{
	}
	FSlateVectorImageBrush(const FString& InImageName, const FVector2D& InImageSize, const FSlateColor& InTint,
		ESlateBrushTileType::Type InTiling = ESlateBrushTileType::NoTile)
		: FSlateImageBrush(InImageName, InImageSize, InTint, InTiling, ESlateBrushImageType::Vector)
	{
	}
};
