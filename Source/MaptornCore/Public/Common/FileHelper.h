#pragma once

#include "Common/CoreTypes.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace Maptorn::FileHelper
{
// Saves as the engine's default options do: pure-ASCII text as single bytes, any other text
// as UTF-16LE with a byte-order mark. Creates the file's folder. False when the file cannot be written.
MAPTORNCORE_API bool SaveStringToFile(const std::string& Text, const std::string& FilePath);

// Writes raw bytes, creating the file's folder. False when the file cannot be written.
MAPTORNCORE_API bool SaveBytesToFile(const uint8* Bytes, std::size_t Size, const std::string& FilePath);

// Reads a file written either way back into UTF-8; empty when it cannot be read.
MAPTORNCORE_API std::optional<std::string> LoadFileToString(const std::string& FilePath);

// Calls Visitor for every line (CR LF or LF), without its terminator.
MAPTORNCORE_API bool LoadFileToStringWithLineVisitor(const std::string& FilePath, const std::function<void(const std::string&)>& Visitor);
}

namespace Maptorn::FileSystem
{
// Thin no-throw wrappers over std::filesystem, named after the engine's platform-file layer.
MAPTORNCORE_API bool FileExists(const std::string& Path);
MAPTORNCORE_API bool DirectoryExists(const std::string& Path);
MAPTORNCORE_API bool CreateDirectoryTree(const std::string& Path);
MAPTORNCORE_API bool DeleteFile(const std::string& Path);
MAPTORNCORE_API bool DeleteDirectoryRecursively(const std::string& Path);
// Renames, or copies and deletes when the two paths are on different devices.
MAPTORNCORE_API bool MoveFile(const std::string& From, const std::string& To);
MAPTORNCORE_API bool CopyFile(const std::string& From, const std::string& To);
// -1 when the file does not exist.
MAPTORNCORE_API int64 FileSize(const std::string& Path);

struct MAPTORNCORE_API FDirectoryEntry
{
    std::string Path;     // full path, "/" separators
    bool bIsDirectory = false;
};

// Entries directly inside Directory, in the order the file system gives them.
MAPTORNCORE_API std::vector<FDirectoryEntry> ListDirectory(const std::string& Directory);
// Every file below Directory, depth first.
MAPTORNCORE_API std::vector<std::string> ListFilesRecursively(const std::string& Directory);
}
