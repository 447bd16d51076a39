#pragma once
// Reference: modio-ue Source/Modio/Public/Types/ModioModManagementEvent.h (EModioModManagementEventType, FModioModManagementEvent)

#include "Types/ModioCommonTypes.h"
#include "Types/ModioErrorCode.h"

#include "ModioModManagementEvent.generated.h"

UENUM(BlueprintType)
enum class EModioModManagementEventType : uint8
{
	Installed,
	Uninstalled,
	Updated,
	Uploaded,
	BeginInstall,
	BeginUninstall,
	BeginUpdate,
	BeginUpload
};

USTRUCT(BlueprintType)
struct MODIO_API FModioModManagementEvent
{
	GENERATED_BODY()

public:
	FModioModID ID;
	EModioModManagementEventType Event {};
	// Empty when the operation succeeded.
	FModioErrorCode Status;
};
