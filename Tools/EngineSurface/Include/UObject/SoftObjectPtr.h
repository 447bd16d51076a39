#pragma once
// Reference: Runtime/CoreUObject/Public/UObject/SoftObjectPtr.h (FSoftObjectPtr)

#include "UObject/SoftObjectPath.h"

struct FSoftObjectPtr
{
	FSoftObjectPtr() = default;
	explicit FSoftObjectPtr(const FSoftObjectPath& ObjectPath) : Path(ObjectPath) {}
	const FSoftObjectPath& ToSoftObjectPath() const { return Path; }

private:
	FSoftObjectPath Path;
};
