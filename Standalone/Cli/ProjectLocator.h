#pragma once

#include <string>

namespace Maptorn::Cli
{
// The .uproject named by --project: a .uproject file, or a folder holding exactly one. Without a
// value, the working folder and its parents are searched. False with a message when none is found.
bool LocateProjectFile(const std::string& ProjectArg, std::string& OutProjectFile, std::string& OutError);

// The folder that holds Engine/Build/Build.version; the Engine folder itself is accepted too.
bool LocateEngineRoot(const std::string& EngineArg, std::string& OutEngineRoot, std::string& OutError);
}
