#pragma once
// Reference: modio-ue Source/Modio/Public/Types/ModioImageWrapper.h (FModioImageWrapper)

#include "CoreMinimal.h"

#include "ModioImageWrapper.generated.h"

// A downloaded image as the plug-in hands it out: the file in its cache. The plug-in can also load
// it as a texture, which the workshop does not need.
USTRUCT(BlueprintType)
struct MODIO_API FModioImageWrapper
{
	GENERATED_BODY()

public:
	FString ImagePath;
};
