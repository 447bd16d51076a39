using System.IO;
using UnrealBuildTool;

// The engine-independent core as a module of the plug-in. It includes no engine header; the
// module boilerplate (IMPLEMENT_MODULE) lives in Engine/, outside the folders the CMake build globs.
public class MaptornCore : ModuleRules
{
	public MaptornCore(ReadOnlyTargetRules Target) : base(Target)
	{
		// Standard C++ only: the engine's shared PCH would pull in engine headers.
		PCHUsage = PCHUsageMode.NoPCHs;
		CppStandard = CppStandardVersion.Cpp20;
		bEnableExceptions = false;
		// Each core file keeps its helpers in its own anonymous namespace; unity files would merge them.
		bUseUnity = false;

		PublicIncludePaths.Add(Path.Combine(ModuleDirectory, "Public"));
		PrivateIncludePaths.Add(Path.Combine(ModuleDirectory, "Private"));

		// Header-only nlohmann/json, expected at Source/ThirdParty/nlohmann/include (so that
		// <nlohmann/json.hpp> resolves). Public because the CMake build links it publicly too.
		PublicIncludePaths.Add(Path.Combine(ModuleDirectory, "..", "ThirdParty", "nlohmann", "include"));
		// Without exceptions the library reports errors by aborting; the core only uses the
		// non-throwing calls (json::parse(text, nullptr, false)).
		PublicDefinitions.Add("JSON_NOEXCEPTION=1");

		PublicDependencyModuleNames.Add("Core");
	}
}
