#pragma once
// Reference: Runtime/Core/Public/Misc/QueuedThreadPool.h (FQueuedThreadPool)

#include "CoreMinimal.h"

enum class EQueuedWorkPriority : uint8
{
	Highest,
	High,
	Normal,
	Low,
	Lowest,
};

class FQueuedThreadPool
{
public:
	virtual ~FQueuedThreadPool() {}
};
