#pragma once
// Reference: modio-ue Source/Modio/Public/Types/ModioEditModParams.h (FModioEditModParams)

#include "CoreMinimal.h"
#include "UObject/ObjectMacros.h"

#include "ModioEditModParams.generated.h"

// Unset members are left as they are on mod.io. The plug-in's record has no tags.
USTRUCT(BlueprintType)
struct FModioEditModParams
{
	GENERATED_BODY()

public:
	TOptional<FString> Name;
	TOptional<FString> Summary;
	TOptional<FString> MetadataBlob;
	TOptional<FString> LogoPath;
};
