#pragma once

#include "CoreMinimal.h"
#include "Serialization/Archive.h"

#include <string>

// The file manager's readers and writers over the real file system, with the engine's rules that
// code must respect: seeking past the end is fatal, reading past it is an error.
namespace SurfaceFileArchives
{
FArchive* OpenReader(const std::string& Path);
// Creates the file's folder first, as the engine's file manager does.
FArchive* OpenWriter(const std::string& Path, uint32 WriteFlags);
}
