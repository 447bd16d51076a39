#pragma once
// Reference: Runtime/Core/Public/CoreGlobals.h (GConfig, GEditorPerProjectIni, IsInGameThread, LogTemp)

#include "CoreTypes.h"
#include "Containers/UnrealString.h"
#include "Logging/LogMacros.h"

class FConfigCacheIni;
class FQueuedThreadPool;

extern FConfigCacheIni* GConfig;
extern FString GEditorPerProjectIni;
extern FString GEngineIni;
extern FString GEditorIni;
extern FQueuedThreadPool* GThreadPool;
extern bool GIsEditor;

bool IsInGameThread();

DECLARE_LOG_CATEGORY_EXTERN(LogTemp, Log, All);
