#pragma once
// Reference: Runtime/CoreUObject/Public/UObject/SoftObjectPath.h (FSoftObjectPath)

#include "CoreMinimal.h"

struct FSoftObjectPath
{
	FSoftObjectPath() = default;
	FSoftObjectPath(const FString& Path) : PathString(Path) {}
	FString ToString() const { return PathString; }
	bool IsNull() const { return PathString.IsEmpty(); }

private:
	FString PathString;
};
