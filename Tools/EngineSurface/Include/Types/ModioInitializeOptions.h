#pragma once
// Reference: modio-ue Source/Modio/Public/Types/ModioInitializeOptions.h (FModioInitializeOptions)

#include "Types/ModioCommonTypes.h"

#include "ModioInitializeOptions.generated.h"

// The portal and the local session identifier stay at the plug-in's defaults and are not declared.
USTRUCT(BlueprintType)
struct MODIO_API FModioInitializeOptions
{
	GENERATED_BODY()

public:
	FModioGameID GameId;
	FModioApiKey ApiKey;
	EModioEnvironment GameEnvironment = EModioEnvironment::Test;
};
