#pragma once
// Reference: Runtime/Projects/Public/Interfaces/IPluginManager.h (IPlugin, IPluginManager)

#include "CoreMinimal.h"
#include "PluginDescriptor.h"

class IPlugin : public TSharedFromThis<IPlugin>
{
public:
	virtual ~IPlugin() {}
	virtual const FString& GetName() const = 0;
	virtual const FString& GetFriendlyName() const = 0;
	virtual const FString& GetDescriptorFileName() const = 0;
	virtual FString GetBaseDir() const = 0;
	virtual FString GetContentDir() const = 0;
	virtual FString GetMountedAssetPath() const = 0;
	virtual bool IsEnabled() const = 0;
	virtual bool CanContainContent() const = 0;
	virtual const FPluginDescriptor& GetDescriptor() const = 0;
};

class IPluginManager
{
public:
	virtual ~IPluginManager() {}
	static IPluginManager& Get();
	virtual TSharedPtr<IPlugin> FindPlugin(const FString& Name) = 0;
	virtual TArray<TSharedRef<IPlugin>> GetEnabledPlugins() = 0;
	virtual TArray<TSharedRef<IPlugin>> GetDiscoveredPlugins() = 0;
};
