#pragma once
// Reference: Runtime/CoreUObject/Public/UObject/UObjectGlobals.h (LoadObject, StaticLoadObject, NewObject, FindObject)

#include "UObject/Object.h"

class UPackageMap;
class FLinkerInstancingContext;
class FObjectInstancingGraph;

UObject* StaticLoadObject(UClass* Class, UObject* InOuter, const TCHAR* Name, const TCHAR* Filename = nullptr, uint32 LoadFlags = LOAD_None,
	UPackageMap* Sandbox = nullptr, bool bAllowObjectReconciliation = true, const FLinkerInstancingContext* InstancingContext = nullptr);
UObject* StaticFindObject(UClass* Class, UObject* InOuter, const TCHAR* Name, bool ExactClass = false);
UObject* StaticConstructObject_Internal(const UClass* Class, UObject* InOuter, FName Name, EObjectFlags SetFlags);

template <typename T>
T* LoadObject(UObject* Outer, const TCHAR* Name, const TCHAR* Filename = nullptr, uint32 LoadFlags = LOAD_None, UPackageMap* Sandbox = nullptr,
	const FLinkerInstancingContext* InstancingContext = nullptr)
{
	return static_cast<T*>(StaticLoadObject(T::StaticClass(), Outer, Name, Filename, LoadFlags, Sandbox, true, InstancingContext));
}

template <typename T>
T* FindObject(UObject* Outer, const TCHAR* Name, bool ExactClass = false)
{
	return static_cast<T*>(StaticFindObject(T::StaticClass(), Outer, Name, ExactClass));
}

template <typename T>
T* NewObject(UObject* Outer, const UClass* Class, FName Name = NAME_None, EObjectFlags Flags = RF_NoFlags, UObject* Template = nullptr,
	bool bCopyTransientsFromClassDefaults = false, FObjectInstancingGraph* InInstanceGraph = nullptr, UPackage* ExternalPackage = nullptr)
{
	(void)Template;
	(void)bCopyTransientsFromClassDefaults;
	(void)InInstanceGraph;
	(void)ExternalPackage;
	return static_cast<T*>(StaticConstructObject_Internal(Class, Outer, Name, Flags));
}

template <typename T>
T* NewObject(UObject* Outer = nullptr)
{
	return NewObject<T>(Outer, T::StaticClass());
}
