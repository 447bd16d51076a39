#pragma once
// Reference: Runtime/Core/Public/Misc/Paths.h (FPaths)

#include "CoreMinimal.h"

class FPaths
{
public:
	static FString EngineDir();
	static FString EngineUserDir();
	static FString ProjectDir();
	static FString ProjectContentDir();
	static FString ProjectConfigDir();
	static FString ProjectSavedDir();
	static FString ProjectPluginsDir();
	static FString ProjectUserDir();
	static FString GetProjectFilePath();
	static FString ConvertRelativePathToFull(const FString& InPath);
	static FString ConvertRelativePathToFull(const FString& BasePath, const FString& InPath);
	static bool FileExists(const FString& InPath);
	static bool DirectoryExists(const FString& InPath);
	static FString GetCleanFilename(const FString& InPath);
	static FString GetPath(const FString& InPath);
	static void NormalizeDirectoryName(FString& InPath);
	static void NormalizeFilename(FString& InPath);
	static bool IsRelative(const FString& InPath);

	template <typename... PathTypes>
	static FString Combine(PathTypes&&... InPaths)
	{
		const TCHAR* Parts[] = {GetTCharPtr(InPaths)...};
		return CombineInternal(Parts, static_cast<int32>(sizeof...(InPaths)));
	}

private:
	static const TCHAR* GetTCharPtr(const TCHAR* Ptr) { return Ptr; }
	static const TCHAR* GetTCharPtr(const FString& Str) { return *Str; }
	static FString CombineInternal(const TCHAR** Paths, int32 NumPaths);
};
