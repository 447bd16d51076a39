#pragma once

#include <string>
#include <vector>

namespace Maptorn::Sandbox
{
struct FZipEntry
{
    std::string Name; // "/" separated; a name ending in "/" is a folder
    std::string Bytes;
};

// Writes a deflated ZIP archive of the entries (libzip); false when it cannot.
bool WriteZip(const std::string& Path, const std::vector<FZipEntry>& Entries);

// A valid 1×1 transparent PNG.
std::string TinyPng();
}
