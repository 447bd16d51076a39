// The plug-in manager and plug-in utilities of the stand-in editor: the open project's plug-ins and the
// engine's, found on disk, and new content plug-ins made from the engine's templates (the standalone
// host's plug-in catalogue). Without an open project the editor has no plug-ins to offer.

#include "EditorEngine/SurfaceTestState.h"

#include "Interfaces/IPluginManager.h"
#include "Platform/StandaloneEngine.h"
#include "Platform/StringConversion.h"
#include "PluginUtils.h"

using MaptornString::ToFString;
using MaptornString::ToStd;

namespace
{
class FSurfacePlugin final : public IPlugin
{
public:
	explicit FSurfacePlugin(const Maptorn::FPluginInfo& Info)
		: Name(ToFString(Info.Name))
		, FriendlyName(ToFString(Info.FriendlyName))
		, DescriptorFileName(ToFString(Info.DescriptorFileName))
		, BaseDir(ToFString(Info.BaseDir))
		, ContentDir(ToFString(Info.ContentDir))
		, bEnabled(Info.bEnabled)
		, bCanContainContent(Info.bCanContainContent)
	{
		Descriptor.FriendlyName = FriendlyName;
		Descriptor.VersionName = ToFString(Info.VersionName);
		Descriptor.bCanContainContent = bCanContainContent;
	}

	const FString& GetName() const override { return Name; }
	const FString& GetFriendlyName() const override { return FriendlyName; }
	const FString& GetDescriptorFileName() const override { return DescriptorFileName; }
	FString GetBaseDir() const override { return BaseDir; }
	FString GetContentDir() const override { return ContentDir; }
	FString GetMountedAssetPath() const override { return TEXT("/") + Name + TEXT("/"); }
	bool IsEnabled() const override { return bEnabled; }
	bool CanContainContent() const override { return bCanContainContent; }
	const FPluginDescriptor& GetDescriptor() const override { return Descriptor; }

private:
	FString Name;
	FString FriendlyName;
	FString DescriptorFileName;
	FString BaseDir;
	FString ContentDir;
	bool bEnabled = false;
	bool bCanContainContent = false;
	FPluginDescriptor Descriptor;
};

Maptorn::FStandaloneEngine* Project()
{
	return SurfaceTestState::Get().Project.get();
}

class FProjectPlugins final : public IPluginManager
{
public:
	TSharedPtr<IPlugin> FindPlugin(const FString& Name) override
	{
		const std::optional<Maptorn::FPluginInfo> Info = Project() ? Project()->FindPlugin(ToStd(Name)) : std::nullopt;
		return Info ? TSharedPtr<IPlugin>(MakeShared<FSurfacePlugin>(*Info)) : nullptr;
	}
	TArray<TSharedRef<IPlugin>> GetEnabledPlugins() override
	{
		TArray<TSharedRef<IPlugin>> Plugins;
		if (Project())
		{
			for (const Maptorn::FPluginInfo& Info : Project()->GetEnabledPlugins())
			{
				Plugins.Add(MakeShared<FSurfacePlugin>(Info));
			}
		}
		return Plugins;
	}
	TArray<TSharedRef<IPlugin>> GetDiscoveredPlugins() override { return GetEnabledPlugins(); }
};
}

IPluginManager& IPluginManager::Get()
{
	static FProjectPlugins Manager;
	return Manager;
}

TSharedPtr<IPlugin> FPluginUtils::CreateAndLoadNewPlugin(const FString& PluginName, const FString& PluginLocation,
	const FNewPluginParamsWithDescriptor& CreationParams, const FLoadPluginParams& LoadParams)
{
	std::string FailReason = "No project is open";
	Maptorn::FPluginDescriptor Descriptor;
	Descriptor.FriendlyName = ToStd(CreationParams.Descriptor.FriendlyName);
	Descriptor.Description = ToStd(CreationParams.Descriptor.Description);
	Descriptor.Category = ToStd(CreationParams.Descriptor.Category);
	Descriptor.CreatedBy = ToStd(CreationParams.Descriptor.CreatedBy);
	Descriptor.VersionName = ToStd(CreationParams.Descriptor.VersionName);
	Descriptor.bCanContainContent = CreationParams.Descriptor.bCanContainContent;
	const std::string TemplateDir = CreationParams.TemplateFolders.Num() > 0 ? ToStd(CreationParams.TemplateFolders[0]) : std::string();
	if (Project() && Project()->CreateAndLoadNewPlugin(ToStd(PluginName), ToStd(PluginLocation), TemplateDir, Descriptor, FailReason))
	{
		return IPluginManager::Get().FindPlugin(PluginName);
	}
	if (LoadParams.OutFailReason)
	{
		*LoadParams.OutFailReason = FText::FromString(ToFString(FailReason));
	}
	return nullptr;
}
