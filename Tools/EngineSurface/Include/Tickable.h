#pragma once
// Reference: Runtime/Engine/Public/Tickable.h (FTickableObjectBase, ETickableTickType)

#include "CoreMinimal.h"
#include "Stats/Stats.h"

enum class ETickableTickType : uint8
{
	Conditional,
	Always,
	Never,
};

class FTickableObjectBase
{
public:
	virtual ~FTickableObjectBase() {}
	virtual void Tick(float DeltaTime) = 0;
	virtual ETickableTickType GetTickableTickType() const { return ETickableTickType::Conditional; }
	virtual bool IsTickable() const { return true; }
	virtual TStatId GetStatId() const = 0;
};
