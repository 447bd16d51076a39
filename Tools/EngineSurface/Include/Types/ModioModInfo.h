#pragma once
// Reference: modio-ue Source/Modio/Public/Types/ModioModInfo.h (EModioModServerSideStatus, FModioModInfo)

#include "Types/ModioCommonTypes.h"
#include "Types/ModioFileMetadata.h"
#include "Types/ModioModTag.h"
#include "Types/ModioUser.h"

#include "ModioModInfo.generated.h"

UENUM(BlueprintType)
enum class EModioModServerSideStatus : uint8
{
	NotAccepted = 0,
	Accepted = 1,
	Deleted = 3
};

// The members the workshop reads of a mod profile.
USTRUCT(BlueprintType)
struct MODIO_API FModioModInfo
{
	GENERATED_BODY()

public:
	FModioModID ModId;
	FString ProfileName;
	FString ProfileSummary;
	FString ProfileURL;
	FModioUser ProfileSubmittedBy;
	FString MetadataBlob;
	FModioFileMetadata FileInfo;
	TArray<FModioModTag> Tags;
	EModioModServerSideStatus ModStatus {};
};
