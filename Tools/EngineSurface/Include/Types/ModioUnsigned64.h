#pragma once
// Reference: modio-ue Source/Modio/Public/Types/ModioUnsigned64.h (FModioUnsigned64)

#include "CoreMinimal.h"
#include "UObject/ObjectMacros.h"

#include "ModioUnsigned64.generated.h"

USTRUCT(BlueprintType)
struct MODIO_API FModioUnsigned64
{
	GENERATED_BODY()

public:
	uint64 Underlying;

	FModioUnsigned64();
	explicit FModioUnsigned64(uint64 Value);
};
