#pragma once
// Reference: modio-ue Source/Modio/Public/Types/ModioModProgressInfo.h (EModioModProgressState, FModioModProgressInfo)

#include "Types/ModioCommonTypes.h"
#include "Types/ModioUnsigned64.h"

#include "ModioModProgressInfo.generated.h"

namespace Modio
{
class ModProgressInfo;
}

UENUM(BlueprintType)
enum class EModioModProgressState : uint8
{
	Initializing,
	Downloading,
	Extracting,
	Compressing,
	Uploading
};

// Progress is kept per state; the state running now is GetCurrentState.
USTRUCT(BlueprintType)
struct MODIO_API FModioModProgressInfo
{
	GENERATED_BODY()

public:
	FModioModID ID;

	EModioModProgressState GetCurrentState() const;
	FModioUnsigned64 GetCurrentProgress(EModioModProgressState State) const;
	FModioUnsigned64 GetTotalProgress(EModioModProgressState State) const;

private:
	friend FModioModProgressInfo ToUnreal(const Modio::ModProgressInfo& In);

	uint64 DownloadCurrent;
	uint64 DownloadTotal;
	uint64 ExtractCurrent;
	uint64 ExtractTotal;
	uint64 CompressCurrent;
	uint64 CompressTotal;
	uint64 UploadCurrent;
	uint64 UploadTotal;
	EModioModProgressState CurrentState;
};
