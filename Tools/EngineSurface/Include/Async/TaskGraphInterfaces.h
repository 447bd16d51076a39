#pragma once
// Reference: Runtime/Core/Public/Async/TaskGraphInterfaces.h (ENamedThreads)

#include "CoreTypes.h"

namespace ENamedThreads
{
enum Type : int32
{
	UnusedAnchor = -1,
	RHIThread = 0,
	GameThread = 1,
	ActualRenderingThread = 2,
	AnyThread = 0xff,
	AnyBackgroundThreadNormalTask = 0x2ff,
	AnyBackgroundHiPriTask = 0x3ff,
};
}
