#include "Platform/EngineServices.h"

#include "Platform/StringConversion.h"

#include "HAL/FileManager.h"
#include "HAL/PlatformProcess.h"
#include "Interfaces/IPluginManager.h"
#include "Misc/ConfigCacheIni.h"
#include "Misc/EngineVersion.h"
#include "Misc/Paths.h"
#include "PluginDescriptor.h"
#include "PluginUtils.h"

using MaptornString::ToFString;
using MaptornString::ToStd;

namespace MaptornEngineServices
{
Maptorn::FPluginInfo ToPluginInfo(const IPlugin& Plugin)
{
	Maptorn::FPluginInfo Info;
	Info.Name = ToStd(Plugin.GetName());
	Info.FriendlyName = ToStd(Plugin.GetFriendlyName());
	Info.bCanContainContent = Plugin.CanContainContent();
	Info.bEnabled = Plugin.IsEnabled();
	Info.BaseDir = ToStd(Plugin.GetBaseDir());
	Info.DescriptorFileName = ToStd(Plugin.GetDescriptorFileName());
	Info.ContentDir = ToStd(Plugin.GetContentDir());
	Info.VersionName = ToStd(Plugin.GetDescriptor().VersionName);
	return Info;
}

FPluginDescriptor ToEngineDescriptor(const Maptorn::FPluginDescriptor& Descriptor)
{
	FPluginDescriptor Result;
	Result.FriendlyName = ToFString(Descriptor.FriendlyName);
	Result.Description = ToFString(Descriptor.Description);
	Result.Category = ToFString(Descriptor.Category);
	Result.CreatedBy = ToFString(Descriptor.CreatedBy);
	Result.Version = 1;
	Result.VersionName = ToFString(Descriptor.VersionName);
	Result.bCanContainContent = Descriptor.bCanContainContent;
	return Result;
}
}

std::string FEngineServices::GetBaseDir() { return ToStd(FString(FPlatformProcess::BaseDir())); }
std::string FEngineServices::ProjectDir() { return ToStd(FPaths::ProjectDir()); }
std::string FEngineServices::GetProjectFilePath() { return ToStd(FPaths::GetProjectFilePath()); }
std::string FEngineServices::ProjectContentDir() { return ToStd(FPaths::ProjectContentDir()); }
std::string FEngineServices::ProjectConfigDir() { return ToStd(FPaths::ProjectConfigDir()); }
std::string FEngineServices::ProjectSavedDir() { return ToStd(FPaths::ProjectSavedDir()); }
std::string FEngineServices::ProjectPluginsDir() { return ToStd(FPaths::ProjectPluginsDir()); }
std::string FEngineServices::EngineDir() { return ToStd(FPaths::EngineDir()); }
std::string FEngineServices::UserSettingsDir() { return ToStd(FString(FPlatformProcess::UserSettingsDir())); }
std::string FEngineServices::EngineUserDir() { return ToStd(FPaths::EngineUserDir()); }
std::string FEngineServices::EngineVersionString() { return ToStd(FEngineVersion::Current().ToString()); }

std::optional<Maptorn::FPluginInfo> FEngineServices::FindPlugin(const std::string& Name)
{
	const TSharedPtr<IPlugin> Plugin = IPluginManager::Get().FindPlugin(ToFString(Name));
	if (!Plugin.IsValid())
	{
		return std::nullopt;
	}
	return MaptornEngineServices::ToPluginInfo(*Plugin);
}

std::vector<Maptorn::FPluginInfo> FEngineServices::GetEnabledPlugins()
{
	std::vector<Maptorn::FPluginInfo> Result;
	for (const TSharedRef<IPlugin>& Plugin : IPluginManager::Get().GetEnabledPlugins())
	{
		Result.push_back(MaptornEngineServices::ToPluginInfo(*Plugin));
	}
	return Result;
}

bool FEngineServices::CreateAndLoadNewPlugin(const std::string& Name, const std::string& PluginsParentDir,
	const std::string& TemplateDir, const Maptorn::FPluginDescriptor& Descriptor, std::string& OutFailReason)
{
	FPluginUtils::FNewPluginParamsWithDescriptor CreationParams;
	CreationParams.Descriptor = MaptornEngineServices::ToEngineDescriptor(Descriptor);
	CreationParams.TemplateFolders.Add(ToFString(TemplateDir));

	FText FailReason;
	FPluginUtils::FLoadPluginParams LoadParams;
	// The new mod is cooked and packaged with the project, so the project must enable it.
	LoadParams.bEnablePluginInProject = true;
	LoadParams.OutFailReason = &FailReason;

	const TSharedPtr<IPlugin> Plugin =
		FPluginUtils::CreateAndLoadNewPlugin(ToFString(Name), ToFString(PluginsParentDir), CreationParams, LoadParams);
	if (Plugin.IsValid())
	{
		return true;
	}
	OutFailReason = FailReason.IsEmpty() ? "The plug-in " + Name + " could not be created." : ToStd(FailReason.ToString());
	return false;
}

Maptorn::IConfigCache* FEngineServices::GetConfig()
{
	return GConfig ? &Config : nullptr;
}

void FEngineServices::FConfigCache::RemoveFromCache(const std::string& File)
{
	// UnloadFile drops the cached copy; the next Get reads the file fresh from disk.
	GConfig->UnloadFile(ToFString(File));
}

std::optional<std::string> FEngineServices::FConfigCache::GetString(const std::string& Section, const std::string& Key,
	const std::string& File)
{
	FString Value;
	if (!GConfig->GetString(*ToFString(Section), *ToFString(Key), Value, ToFString(File)))
	{
		return std::nullopt;
	}
	return ToStd(Value);
}

std::optional<bool> FEngineServices::FConfigCache::GetBool(const std::string& Section, const std::string& Key, const std::string& File)
{
	bool bValue = false;
	if (!GConfig->GetBool(*ToFString(Section), *ToFString(Key), bValue, ToFString(File)))
	{
		return std::nullopt;
	}
	return bValue;
}

void FEngineServices::FConfigCache::SetString(const std::string& Section, const std::string& Key, const std::string& Value,
	const std::string& File)
{
	GConfig->SetString(*ToFString(Section), *ToFString(Key), *ToFString(Value), ToFString(File));
}

void FEngineServices::FConfigCache::SetBool(const std::string& Section, const std::string& Key, bool bValue, const std::string& File)
{
	GConfig->SetBool(*ToFString(Section), *ToFString(Key), bValue, ToFString(File));
}

bool FEngineServices::FConfigCache::Flush(bool bRemoveFromCache, const std::string& File)
{
	const FString Filename = ToFString(File);
	GConfig->Flush(bRemoveFromCache, Filename);
	// Flush reports nothing; the file being there afterwards is the best evidence it was written.
	return IFileManager::Get().FileExists(*Filename);
}
