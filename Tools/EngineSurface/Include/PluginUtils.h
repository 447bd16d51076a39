#pragma once
// Reference: Editor/PluginUtils/Public/PluginUtils.h (FPluginUtils, 5.1)

#include "CoreMinimal.h"
#include "PluginDescriptor.h"

class IPlugin;

class FPluginUtils
{
public:
	struct FLoadPluginParams
	{
		bool bSelectInContentBrowser = false;
		bool bEnablePluginInProject = false;
		bool bUpdateProjectPluginSearchPath = false;
		FText* OutFailReason = nullptr;
	};

	struct FNewPluginParams
	{
		FString CreatedBy;
		FString CreatedByURL;
		FString Description;
		FString PluginIconPath;
		TArray<FString> TemplateFolders;
		bool bCanContainContent = false;
		bool bHasModules = false;
		bool bIsEnginePlugin = false;
		bool bIsBetaVersion = false;
	};

	struct FNewPluginParamsWithDescriptor
	{
		FPluginDescriptor Descriptor;
		FString PluginIconPath;
		TArray<FString> TemplateFolders;
	};

	static TSharedPtr<IPlugin> CreateAndLoadNewPlugin(const FString& PluginName, const FString& PluginLocation,
		const FNewPluginParamsWithDescriptor& CreationParams, const FLoadPluginParams& LoadParams);
	static TSharedPtr<IPlugin> CreateAndLoadNewPlugin(const FString& PluginName, const FString& PluginLocation,
		const FNewPluginParams& CreationParams, const FLoadPluginParams& LoadParams);
};
