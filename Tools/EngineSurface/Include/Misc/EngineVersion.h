#pragma once
// Reference: Runtime/Core/Public/Misc/EngineVersion.h (FEngineVersion)

#include "CoreMinimal.h"

enum class EVersionComponent
{
	Major,
	Minor,
	Patch,
	Changelist,
	Branch,
};

class FEngineVersion
{
public:
	static const FEngineVersion& Current();
	FString ToString(EVersionComponent LastComponent = EVersionComponent::Branch) const;
	uint16 GetMajor() const;
	uint16 GetMinor() const;
	uint16 GetPatch() const;
};
