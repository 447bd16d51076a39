#pragma once
// Reference: modio-ue Source/Modio/Public/Types/ModioUser.h (FModioUser)

#include "Types/ModioCommonTypes.h"

#include "ModioUser.generated.h"

USTRUCT(BlueprintType)
struct MODIO_API FModioUser
{
	GENERATED_BODY()

public:
	FString Username;
	FString ProfileUrl;
};
