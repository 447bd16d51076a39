#pragma once
// Reference: Runtime/CoreUObject/Public/Misc/PackageName.h (FPackageName)

#include "CoreMinimal.h"

class FPackageName
{
public:
	static FString ObjectPathToPackageName(const FString& InObjectPath);
	static bool IsValidLongPackageName(const FString& InLongPackageName, bool bIncludeReadOnlyRoots = false, FText* OutReason = nullptr);
	static bool DoesPackageExist(const FString& LongPackageName, FString* OutFilename = nullptr);
	static FString LongPackageNameToFilename(const FString& InLongPackageName, const FString& InExtension = TEXT(""));
};
