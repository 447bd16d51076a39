#pragma once
// Reference: Runtime/AssetRegistry/Public/AssetRegistry/AssetRegistryModule.h (FAssetRegistryModule)

#include "CoreMinimal.h"
#include "Modules/ModuleInterface.h"

class UObject;

class FAssetRegistryModule : public IModuleInterface
{
public:
	static void AssetCreated(UObject* NewAsset);
};
