#pragma once
// Reference: modio-ue Source/Modio/Public/Types/ModioFileMetadata.h (FModioFileMetadata)

#include "Types/ModioCommonTypes.h"

#include "ModioFileMetadata.generated.h"

// A mod's current release.
USTRUCT(BlueprintType)
struct MODIO_API FModioFileMetadata
{
	GENERATED_BODY()

public:
	int64 Filesize {};
	FString Version;
	FString MetadataBlob;
};
