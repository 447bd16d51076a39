using System.IO;
using UnrealBuildTool;

// The editor module: engine adapters of the core's ports, the module object and the Slate UI.
public class Maptorn : ModuleRules
{
	public Maptorn(ReadOnlyTargetRules Target) : base(Target)
	{
		PCHUsage = PCHUsageMode.UseExplicitOrSharedPCHs;
		// The core's headers are C++20.
		CppStandard = CppStandardVersion.Cpp20;

		PublicIncludePaths.Add(Path.Combine(ModuleDirectory, "Public"));
		PrivateIncludePaths.Add(Path.Combine(ModuleDirectory, "Private"));

		PublicDependencyModuleNames.AddRange(new string[]
		{
			"Core",
			"CoreUObject",
			"Engine",
			"MaptornCore",
		});

		PrivateDependencyModuleNames.AddRange(new string[]
		{
			"Slate",
			"SlateCore",
			"EditorStyle",
			"InputCore",
			"UnrealEd",
			"Projects",
			"PluginUtils",
			"Json",
			"HTTP",
			"SharedSettingsWidgets",
			"WorkspaceMenuStructure",
			"DesktopPlatform",
			// FAssetRegistryModule::AssetCreated for definitions created in memory.
			"AssetRegistry",
			"Modio",
			// The game's definition classes UKelvor_Map, UKelvor_Mod and UKelvor_GameMode.
			"KelvorProxy",
		});

		// The archive adapter's ZIP reader inflates with the engine's own zlib.
		AddEngineThirdPartyPrivateStaticDependencies(Target, "zlib");
	}
}
