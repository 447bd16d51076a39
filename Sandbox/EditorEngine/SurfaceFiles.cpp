// The file manager, file helper and paths of the engine surface, over the real file system.

#include "EditorEngine/SurfaceFileArchives.h"
#include "EditorEngine/SurfaceTestState.h"

#include "HAL/FileManager.h"
#include "Misc/FileHelper.h"
#include "Misc/Paths.h"

#include <filesystem>
#include <fstream>
#include <iterator>

namespace
{
namespace fs = std::filesystem;

std::string Utf8(const TCHAR* Text)
{
	return MaptornSurfaceUtf::ToUtf8(Text, MaptornSurfaceUtf::Length(Text));
}

FString FromUtf8(const std::string& Text)
{
	const auto Wide = MaptornSurfaceUtf::FromUtf8(Text.data(), static_cast<int32>(Text.size()));
	return FString(static_cast<int32>(Wide.size()), Wide.c_str());
}

fs::path PathOf(const TCHAR* Text)
{
	return fs::path(Utf8(Text));
}

class FSurfaceFileManager final : public IFileManager
{
public:
	bool FileExists(const TCHAR* Filename) override
	{
		std::error_code Error;
		return fs::is_regular_file(PathOf(Filename), Error);
	}
	bool DirectoryExists(const TCHAR* InDirectory) override
	{
		std::error_code Error;
		return fs::is_directory(PathOf(InDirectory), Error);
	}
	bool Delete(const TCHAR* Filename, bool RequireExists, bool /*EvenReadOnly*/, bool /*Quiet*/) override
	{
		std::error_code Error;
		const bool bRemoved = fs::remove(PathOf(Filename), Error);
		return bRemoved || (!RequireExists && !Error);
	}
	bool DeleteDirectory(const TCHAR* Path, bool RequireExists, bool Tree) override
	{
		std::error_code Error;
		const bool bRemoved = Tree ? fs::remove_all(PathOf(Path), Error) > 0 : fs::remove(PathOf(Path), Error);
		return bRemoved || (!RequireExists && !Error);
	}
	bool MakeDirectory(const TCHAR* Path, bool Tree) override
	{
		std::error_code Error;
		if (Tree)
		{
			fs::create_directories(PathOf(Path), Error);
		}
		else
		{
			fs::create_directory(PathOf(Path), Error);
		}
		return !Error && fs::is_directory(PathOf(Path), Error);
	}
	bool Move(const TCHAR* Dest, const TCHAR* Src, bool /*Replace*/, bool /*EvenIfReadOnly*/, bool /*Attributes*/, bool /*bDoNotRetryOrError*/) override
	{
		std::error_code Error;
		fs::rename(PathOf(Src), PathOf(Dest), Error);
		return !Error;
	}
	int64 FileSize(const TCHAR* Filename) override
	{
		std::error_code Error;
		const auto Size = fs::file_size(PathOf(Filename), Error);
		return Error ? -1 : static_cast<int64>(Size);
	}
	FArchive* CreateFileReader(const TCHAR* Filename, uint32 /*ReadFlags*/) override { return SurfaceFileArchives::OpenReader(Utf8(Filename)); }
	FArchive* CreateFileWriter(const TCHAR* Filename, uint32 WriteFlags) override { return SurfaceFileArchives::OpenWriter(Utf8(Filename), WriteFlags); }
};
}

IFileManager& IFileManager::Get()
{
	static FSurfaceFileManager Manager;
	return Manager;
}

bool FFileHelper::LoadFileToArray(TArray<uint8>& Result, const TCHAR* Filename, uint32 /*Flags*/)
{
	std::ifstream In(PathOf(Filename), std::ios::binary);
	if (!In)
	{
		return false;
	}
	const std::string Bytes((std::istreambuf_iterator<char>(In)), std::istreambuf_iterator<char>());
	Result = TArray<uint8>(reinterpret_cast<const uint8*>(Bytes.data()), static_cast<int32>(Bytes.size()));
	return true;
}

bool FFileHelper::LoadFileToString(FString& Result, const TCHAR* Filename)
{
	TArray<uint8> Bytes;
	if (!LoadFileToArray(Bytes, Filename))
	{
		return false;
	}
	Result = FromUtf8(std::string(Bytes.begin(), Bytes.end()));
	return true;
}

bool FFileHelper::SaveArrayToFile(const TArray<uint8>& Array, const TCHAR* Filename, IFileManager* /*FileManager*/, uint32 WriteFlags)
{
	std::error_code Error;
	fs::create_directories(PathOf(Filename).parent_path(), Error);
	std::ofstream Out(PathOf(Filename), std::ios::binary | ((WriteFlags & FILEWRITE_Append) ? std::ios::app : std::ios::trunc));
	Out.write(reinterpret_cast<const char*>(Array.GetData()), Array.Num());
	return static_cast<bool>(Out);
}

bool FFileHelper::SaveStringToFile(const FString& String, const TCHAR* Filename, EEncodingOptions /*EncodingOptions*/, IFileManager* FileManager,
	uint32 WriteFlags)
{
	const std::string Bytes = Utf8(*String);
	return SaveArrayToFile(TArray<uint8>(reinterpret_cast<const uint8*>(Bytes.data()), static_cast<int32>(Bytes.size())), Filename, FileManager,
		WriteFlags);
}

FString FPaths::EngineDir() { return FromUtf8(SurfaceTestState::Get().EngineDir); }
FString FPaths::EngineUserDir() { return FromUtf8(SurfaceTestState::Get().UserSettingsDir + "UnrealEngine/5.1/"); }
FString FPaths::ProjectDir() { return FromUtf8(SurfaceTestState::Get().ProjectDir); }
FString FPaths::ProjectContentDir() { return ProjectDir() + TEXT("Content/"); }
FString FPaths::ProjectConfigDir() { return ProjectDir() + TEXT("Config/"); }
FString FPaths::ProjectSavedDir() { return ProjectDir() + TEXT("Saved/"); }
FString FPaths::ProjectPluginsDir() { return ProjectDir() + TEXT("Plugins/"); }
FString FPaths::ProjectUserDir() { return ProjectDir(); }
FString FPaths::GetProjectFilePath()
{
	const std::string& ProjectFile = SurfaceTestState::Get().ProjectFile;
	return ProjectFile.empty() ? ProjectDir() + TEXT("Project.uproject") : FromUtf8(ProjectFile);
}
FString FPaths::ConvertRelativePathToFull(const FString& InPath) { return ConvertRelativePathToFull(FromUtf8(SurfaceTestState::Get().BaseDir), InPath); }
FString FPaths::ConvertRelativePathToFull(const FString& BasePath, const FString& InPath)
{
	const fs::path Joined = PathOf(*InPath).is_absolute() ? PathOf(*InPath) : PathOf(*BasePath) / PathOf(*InPath);
	return FromUtf8(Joined.lexically_normal().generic_string());
}
bool FPaths::FileExists(const FString& InPath) { return IFileManager::Get().FileExists(*InPath); }
bool FPaths::DirectoryExists(const FString& InPath) { return IFileManager::Get().DirectoryExists(*InPath); }
FString FPaths::GetCleanFilename(const FString& InPath) { return FromUtf8(PathOf(*InPath).filename().generic_string()); }
FString FPaths::GetPath(const FString& InPath) { return FromUtf8(PathOf(*InPath).parent_path().generic_string()); }
void FPaths::NormalizeDirectoryName(FString& InPath) { InPath = InPath.Replace(TEXT("\\"), TEXT("/")); InPath.RemoveFromEnd(TEXT("/")); }
void FPaths::NormalizeFilename(FString& InPath) { InPath = InPath.Replace(TEXT("\\"), TEXT("/")); }
bool FPaths::IsRelative(const FString& InPath) { return PathOf(*InPath).is_relative(); }
FString FPaths::CombineInternal(const TCHAR** Paths, int32 NumPaths)
{
	FString Result;
	for (int32 Index = 0; Index < NumPaths; ++Index)
	{
		Result = Index == 0 ? FString(Paths[Index]) : Result / Paths[Index];
	}
	return Result;
}
