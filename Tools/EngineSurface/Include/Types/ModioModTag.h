#pragma once
// Reference: modio-ue Source/Modio/Public/Types/ModioModTag.h (FModioModTag)

#include "CoreMinimal.h"
#include "UObject/ObjectMacros.h"

#include "ModioModTag.generated.h"

USTRUCT(BlueprintType)
struct MODIO_API FModioModTag
{
	GENERATED_BODY()

public:
	FString Tag;
};
