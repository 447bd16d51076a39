#pragma once
// Reference: Runtime/Core/Public/Async/Async.h (AsyncTask)

#include "CoreMinimal.h"
#include "Async/TaskGraphInterfaces.h"

// Runs Function on the named thread; the game thread runs it inside its next frame.
void AsyncTask(ENamedThreads::Type Thread, TUniqueFunction<void()> Function);
