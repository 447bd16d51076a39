#pragma once
// Reference: Runtime/Core/Public/Math/Vector2D.h (FVector2D)

#include "CoreTypes.h"

struct FVector2D
{
	double X = 0.0;
	double Y = 0.0;

	FVector2D() = default;
	FVector2D(double InX, double InY) : X(InX), Y(InY) {}
};
