#pragma once
// Reference: Runtime/Core/Public/Math/Color.h (FLinearColor, FColor)

#include "CoreTypes.h"
#include "Containers/UnrealString.h"

struct FColor
{
	uint8 B = 0;
	uint8 G = 0;
	uint8 R = 0;
	uint8 A = 0;

	FColor() = default;
	constexpr FColor(uint8 InR, uint8 InG, uint8 InB, uint8 InA = 255) : B(InB), G(InG), R(InR), A(InA) {}

	// "RRGGBB" or "RRGGBBAA", with or without a leading '#'.
	static FColor FromHex(const FString& HexString);

	static const FColor White;
	static const FColor Black;
};

struct FLinearColor
{
	float R = 0.0f;
	float G = 0.0f;
	float B = 0.0f;
	float A = 0.0f;

	FLinearColor() = default;
	constexpr FLinearColor(float InR, float InG, float InB, float InA = 1.0f) : R(InR), G(InG), B(InB), A(InA) {}
	FLinearColor(const FColor& Color);

	static const FLinearColor White;
	static const FLinearColor Black;
	static const FLinearColor Transparent;
};
