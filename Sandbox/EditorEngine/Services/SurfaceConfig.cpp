// GConfig of the stand-in editor: INI files read and written on disk. With a project open, the
// editor's own files live in Saved/Config/<Platform>Editor and fall back to the project's
// Config/Default*.ini for keys they do not set, as the engine's config hierarchy layers them.

#include "EditorEngine/SurfaceTestState.h"

#include "CoreGlobals.h"
#include "Misc/ConfigCacheIni.h"
#include "Platform/IniConfigCache.h"
#include "Platform/StringConversion.h"

using MaptornString::ToFString;
using MaptornString::ToStd;

namespace
{
FConfigCacheIni SurfaceConfig;

Maptorn::FIniConfigCache& Files()
{
	static Maptorn::FIniConfigCache Cache;
	return Cache;
}

// The project's default file under the editor's own file, for the files the engine layers that way.
std::string DefaultFileOf(const FString& Filename)
{
	const std::string& ProjectDir = SurfaceTestState::Get().ProjectDir;
	if (ProjectDir.empty())
	{
		return std::string();
	}
	if (Filename == GEditorPerProjectIni)
	{
		return ProjectDir + "Config/DefaultEditorPerProjectUserSettings.ini";
	}
	if (Filename == GEngineIni)
	{
		return ProjectDir + "Config/DefaultEngine.ini";
	}
	if (Filename == GEditorIni)
	{
		return ProjectDir + "Config/DefaultEditor.ini";
	}
	return std::string();
}

std::optional<std::string> Lookup(const TCHAR* Section, const TCHAR* Key, const FString& Filename)
{
	std::optional<std::string> Value = Files().GetString(ToStd(FString(Section)), ToStd(FString(Key)), ToStd(Filename));
	const std::string Default = DefaultFileOf(Filename);
	if (!Value && !Default.empty())
	{
		Value = Files().GetString(ToStd(FString(Section)), ToStd(FString(Key)), Default);
	}
	return Value;
}
}

FConfigCacheIni* GConfig = &SurfaceConfig;
FString GEditorPerProjectIni = TEXT("EditorPerProjectUserSettings.ini");
FString GEngineIni = TEXT("Engine.ini");
FString GEditorIni = TEXT("Editor.ini");

namespace SurfaceTestState
{
void UseProjectConfigFiles()
{
	// Without a project the names stay bare, as in an editor started without one.
	const std::string Saved = Get().ProjectDir.empty() ? std::string() : Get().ProjectDir + "Saved/Config/LinuxEditor/";
	GEditorPerProjectIni = ToFString(Saved + "EditorPerProjectUserSettings.ini");
	GEngineIni = ToFString(Saved + "Engine.ini");
	GEditorIni = ToFString(Saved + "Editor.ini");
}
}

bool FConfigCacheIni::GetString(const TCHAR* Section, const TCHAR* Key, FString& Value, const FString& Filename)
{
	const std::optional<std::string> Found = Lookup(Section, Key, Filename);
	if (Found)
	{
		Value = ToFString(*Found);
	}
	return Found.has_value();
}

bool FConfigCacheIni::GetBool(const TCHAR* Section, const TCHAR* Key, bool& Value, const FString& Filename)
{
	const std::optional<std::string> Found = Lookup(Section, Key, Filename);
	if (Found)
	{
		Value = Maptorn::IniFile::ParseBool(*Found);
	}
	return Found.has_value();
}

bool FConfigCacheIni::GetInt(const TCHAR* Section, const TCHAR* Key, int32& Value, const FString& Filename)
{
	const std::optional<std::string> Found = Lookup(Section, Key, Filename);
	if (Found)
	{
		Value = FCString::Atoi(*ToFString(*Found));
	}
	return Found.has_value();
}

void FConfigCacheIni::SetString(const TCHAR* Section, const TCHAR* Key, const TCHAR* Value, const FString& Filename)
{
	Files().SetString(ToStd(FString(Section)), ToStd(FString(Key)), ToStd(FString(Value)), ToStd(Filename));
}

void FConfigCacheIni::SetBool(const TCHAR* Section, const TCHAR* Key, bool Value, const FString& Filename)
{
	Files().SetBool(ToStd(FString(Section)), ToStd(FString(Key)), Value, ToStd(Filename));
}

void FConfigCacheIni::SetInt(const TCHAR* Section, const TCHAR* Key, int32 Value, const FString& Filename)
{
	SetString(Section, Key, *FString::FromInt(Value), Filename);
}

void FConfigCacheIni::Flush(bool bRemoveFromCache, const FString& Filename)
{
	Files().Flush(bRemoveFromCache, ToStd(Filename));
}

void FConfigCacheIni::UnloadFile(const FString& Filename)
{
	Files().RemoveFromCache(ToStd(Filename));
}
