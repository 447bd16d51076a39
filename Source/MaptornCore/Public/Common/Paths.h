#pragma once

#include "Common/CoreTypes.h"

#include <initializer_list>
#include <string>
#include <string_view>

namespace Maptorn::Paths
{
// Joins as the engine does: a "/" only when the left part is non-empty, does not end in "/" or
// "\", and the right part does not start with "/". Nothing is normalised.
MAPTORNCORE_API std::string Combine(std::initializer_list<std::string_view> Parts);

template <typename... TParts>
std::string Combine(const TParts&... Parts)
{
    return Combine({std::string_view(Parts)...});
}

// A relative path is taken against BaseDir; "\" becomes "/", ".." segments collapse, "./" is
// removed, a trailing slash stays.
MAPTORNCORE_API std::string ConvertRelativePathToFull(std::string_view BaseDir, std::string_view Path);

MAPTORNCORE_API bool IsRelative(std::string_view Path);

// "C:/a/b.txt" → "b"; "C:/a/b.txt" → "b.txt"; "C:/a/b.txt" → "C:/a".
MAPTORNCORE_API std::string GetBaseFilename(std::string_view Path);
MAPTORNCORE_API std::string GetCleanFilename(std::string_view Path);
MAPTORNCORE_API std::string GetPath(std::string_view Path);

// Removes each of /?:&\*"<>|%#@^` (or puts Replacement in its place when given).
MAPTORNCORE_API std::string MakeValidFileName(std::string_view Name, char Replacement = '\0');
}
