#pragma once
// Reference: Runtime/Engine/Classes/Engine/Engine.h (UEngine, GEngine), UE 5.1 API reference

#include "CoreMinimal.h"
#include "Subsystems/EngineSubsystem.h"
#include "UObject/Object.h"

#include "Engine.generated.h"

UCLASS(Abstract)
class UEngine : public UObject
{
	GENERATED_BODY()

public:
	// The engine takes a TSubclassOf<UEngineSubsystem>; a UClass stands for it here.
	UEngineSubsystem* GetEngineSubsystemBase(UClass* SubsystemClass) const;

	// Null when no subsystem of that class was created.
	template <typename TSubsystemClass>
	TSubsystemClass* GetEngineSubsystem() const
	{
		return static_cast<TSubsystemClass*>(GetEngineSubsystemBase(TSubsystemClass::StaticClass()));
	}
};

// Null before the engine starts and after it is gone.
extern UEngine* GEngine;
