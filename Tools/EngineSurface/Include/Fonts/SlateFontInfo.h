#pragma once
// Reference: Runtime/SlateCore/Public/Fonts/SlateFontInfo.h (FSlateFontInfo)

#include "CoreMinimal.h"

struct FSlateFontInfo
{
	FName TypefaceFontName;
	float Size = 10.0f;
};
