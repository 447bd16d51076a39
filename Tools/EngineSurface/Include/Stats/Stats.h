#pragma once
// Reference: Runtime/Core/Public/Stats/Stats.h, Stats2.h (TStatId, RETURN_QUICK_DECLARE_CYCLE_STAT)

#include "CoreTypes.h"

struct TStatId
{
	bool IsValidStat() const { return false; }
};

#define RETURN_QUICK_DECLARE_CYCLE_STAT(StatId, GroupId) return TStatId();
#define DECLARE_CYCLE_STAT(CounterName, StatId, GroupId)
