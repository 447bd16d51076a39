#pragma once
// Reference: Runtime/SlateCore/Public/Layout/Margin.h (FMargin)

#include "CoreMinimal.h"

struct FMargin
{
	float Left = 0.0f;
	float Top = 0.0f;
	float Right = 0.0f;
	float Bottom = 0.0f;

	FMargin() = default;
	FMargin(float UniformMargin) : Left(UniformMargin), Top(UniformMargin), Right(UniformMargin), Bottom(UniformMargin) {}
	FMargin(float Horizontal, float Vertical) : Left(Horizontal), Top(Vertical), Right(Horizontal), Bottom(Vertical) {}
	FMargin(float InLeft, float InTop, float InRight, float InBottom) : Left(InLeft), Top(InTop), Right(InRight), Bottom(InBottom) {}
};
