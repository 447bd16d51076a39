#pragma once
// Reference: Runtime/Engine/Public/Subsystems/EngineSubsystem.h (UEngineSubsystem), UE 5.1 API reference

#include "CoreMinimal.h"
#include "Subsystems/Subsystem.h"

#include "EngineSubsystem.generated.h"

// Lives as long as the engine; found through GEngine->GetEngineSubsystem<T>().
UCLASS(Abstract)
class UEngineSubsystem : public USubsystem
{
	GENERATED_BODY()
};
