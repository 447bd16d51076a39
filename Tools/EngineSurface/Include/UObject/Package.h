#pragma once
// Reference: Runtime/CoreUObject/Public/UObject/Package.h (UPackage)

#include "UObject/Object.h"

class UPackage : public UObject
{
public:
	static UClass* StaticClass();
	void SetDirtyFlag(bool bIsDirty);
	bool IsDirty() const;
};

UPackage* CreatePackage(const TCHAR* PackageName);
