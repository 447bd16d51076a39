#pragma once

#include <filesystem>
#include <map>
#include <string>

namespace Maptorn::Testing
{
// Every file and folder below Root with its bytes, to prove that a failed command changed nothing.
using FProjectSnapshot = std::map<std::string, std::string>;
FProjectSnapshot SnapshotTree(const std::filesystem::path& Root);
}
