#pragma once
// Reference: Runtime/Projects/Public/PluginDescriptor.h (FPluginDescriptor)

#include "CoreMinimal.h"

struct FPluginDescriptor
{
	int32 FileVersion = 3;
	int32 Version = 0;
	FString VersionName;
	FString FriendlyName;
	FString Description;
	FString Category;
	FString CreatedBy;
	FString CreatedByURL;
	FString DocsURL;
	FString MarketplaceURL;
	FString SupportURL;
	bool bCanContainContent = false;
	bool bIsBetaVersion = false;
	bool bIsExperimentalVersion = false;
	bool bInstalled = false;
};
