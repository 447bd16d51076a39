#pragma once
// Reference: Runtime/CoreUObject/Public/UObject/Object.h, UObjectBase.h, Class.h (UObject, UStruct, UClass)

#include "CoreMinimal.h"
#include "UObject/ObjectMacros.h"

class UClass;
class UPackage;

class UObject
{
public:
	virtual ~UObject();
	static UClass* StaticClass();

	UClass* GetClass() const;
	UObject* GetOuter() const;
	FName GetFName() const;
	FString GetName() const;
	FString GetPathName(const UObject* StopOuter = nullptr) const;
	UPackage* GetPackage() const;
	UPackage* GetOutermost() const;
	bool MarkPackageDirty() const;
	bool IsA(const UClass* SomeBase) const;
	template <typename OtherClassType>
	bool IsA() const
	{
		return IsA(OtherClassType::StaticClass());
	}
};

class UField : public UObject
{
};

class UStruct : public UField
{
};

class UClass : public UStruct
{
public:
	static UClass* StaticClass();
	bool IsChildOf(const UClass* SomeBase) const;
};
