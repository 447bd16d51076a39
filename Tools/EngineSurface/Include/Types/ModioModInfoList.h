#pragma once
// Reference: modio-ue Source/Modio/Public/Types/ModioModInfoList.h (FModioModInfoList, native form)

#include "Types/ModioList.h"
#include "Types/ModioModInfo.h"

#include "ModioModInfoList.generated.h"

// The plug-in's list also carries its page (FModioPagedResult), which the workshop does not read.
struct MODIO_API FModioModInfoList : public FModioList<TArray, FModioModInfo>
{
};
