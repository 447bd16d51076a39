#pragma once
// Reference: Editor/UnrealEd/Public/FileHelpers.h (UEditorLoadingAndSavingUtils)

#include "CoreMinimal.h"
#include "UObject/Object.h"

class UPackage;

class UEditorLoadingAndSavingUtils : public UObject
{
public:
	static bool SavePackages(const TArray<UPackage*>& PackagesToSave, bool bOnlyDirty);
};
