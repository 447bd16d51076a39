#pragma once
// Reference: modio-ue Source/Modio/Public/Types/ModioCreateModParams.h (FModioCreateModParams)

#include "CoreMinimal.h"
#include "UObject/ObjectMacros.h"

#include "ModioCreateModParams.generated.h"

// The members the workshop fills; the plug-in's other optional members stay unset.
USTRUCT(BlueprintType)
struct MODIO_API FModioCreateModParams
{
	GENERATED_BODY()

public:
	FString PathToLogoFile;
	FString Name;
	FString Summary;
	TOptional<FString> MetadataBlob;
	TOptional<TArray<FString>> Tags;
};
