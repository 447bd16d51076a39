#pragma once
// Reference: modio-ue Source/Modio/Public/Types/ModioCreateModFileParams.h (FModioCreateModFileParams)

#include "Types/ModioCommonTypes.h"

#include "ModioCreateModFileParams.generated.h"

USTRUCT(BlueprintType)
struct MODIO_API FModioCreateModFileParams
{
	GENERATED_BODY()

public:
	// The plug-in packs this folder's contents into the archive it uploads.
	FString PathToModRootDirectory;
	TOptional<FString> VersionString;
	TOptional<FString> Changelog;
	TOptional<bool> bSetAsActiveRelease;
	TOptional<FString> MetadataBlob;
	TOptional<TArray<EModioModfilePlatform>> ModfilePlatforms;
};
