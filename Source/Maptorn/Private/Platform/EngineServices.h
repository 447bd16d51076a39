#pragma once

#include "CoreMinimal.h"
#include "Platform/EnginePort.h"

// The engine's paths, version, plug-in manager and configuration cache.
class FEngineServices final : public Maptorn::IMaptornEngine
{
public:
	std::string GetBaseDir() override;
	std::string ProjectDir() override;
	std::string GetProjectFilePath() override;
	std::string ProjectContentDir() override;
	std::string ProjectConfigDir() override;
	std::string ProjectSavedDir() override;
	std::string ProjectPluginsDir() override;
	std::string EngineDir() override;
	std::string UserSettingsDir() override;
	std::string EngineUserDir() override;
	std::string EngineVersionString() override;

	std::optional<Maptorn::FPluginInfo> FindPlugin(const std::string& Name) override;
	std::vector<Maptorn::FPluginInfo> GetEnabledPlugins() override;
	bool CreateAndLoadNewPlugin(const std::string& Name, const std::string& PluginsParentDir, const std::string& TemplateDir,
		const Maptorn::FPluginDescriptor& Descriptor, std::string& OutFailReason) override;

	Maptorn::IConfigCache* GetConfig() override;

private:
	// GConfig, addressed by INI file path as the core does.
	class FConfigCache final : public Maptorn::IConfigCache
	{
	public:
		void RemoveFromCache(const std::string& File) override;
		std::optional<std::string> GetString(const std::string& Section, const std::string& Key, const std::string& File) override;
		std::optional<bool> GetBool(const std::string& Section, const std::string& Key, const std::string& File) override;
		void SetString(const std::string& Section, const std::string& Key, const std::string& Value, const std::string& File) override;
		void SetBool(const std::string& Section, const std::string& Key, bool bValue, const std::string& File) override;
		bool Flush(bool bRemoveFromCache, const std::string& File) override;
	};

	FConfigCache Config;
};
