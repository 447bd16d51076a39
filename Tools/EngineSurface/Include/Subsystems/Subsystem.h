#pragma once
// Reference: Runtime/Engine/Public/Subsystems/Subsystem.h (USubsystem), UE 5.1 API reference

#include "CoreMinimal.h"
#include "UObject/Object.h"

#include "Subsystem.generated.h"

UCLASS(Abstract)
class USubsystem : public UObject
{
	GENERATED_BODY()
};
