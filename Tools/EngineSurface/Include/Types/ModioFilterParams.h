#pragma once
// Reference: modio-ue Source/Modio/Public/Types/ModioFilterParams.h (FModioFilterParams)

#include "Types/ModioCommonTypes.h"

#include "ModioFilterParams.generated.h"

// Used at its defaults (sorted by id, the first 100 results); its builder members are not declared.
USTRUCT(BlueprintType)
struct MODIO_API FModioFilterParams
{
	GENERATED_BODY()
};
