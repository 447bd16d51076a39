#pragma once

#include "Common/CoreTypes.h"
#include "Platform/LogPort.h"

#include <filesystem>
#include <functional>
#include <string>
#include <system_error>

namespace Maptorn::PluginFolders
{
// The rename of one folder; std::filesystem::rename when empty. Tests hand in a step that answers
// as a rename across two file systems does, to prove the copying fallback.
using FRenameStep = std::function<void(const std::filesystem::path& From, const std::filesystem::path& To, std::error_code& Error)>;

// Moves the folder From to To (which must not exist): one rename on one file system; across file
// systems a copy of the tree, then From removed. On failure To does not exist and From is whole.
MAPTORNCORE_API bool MoveFolder(const std::string& From, const std::string& To, const FRenameStep& Rename = {});

// Puts the unpacked plug-in Source in the place of Target. Whatever fails, Target is afterwards
// either the old plug-in or the new one, complete: the old one is moved aside into WorkFolder (not
// under the plug-ins folder, so the engine never sees two plug-ins of one name), the new one moved
// in, and the old one deleted only then. Logs the install's failure lines under Name.
MAPTORNCORE_API bool ReplacePlugin(IMaptornLog& Log, const std::string& Name, const std::string& Source, const std::string& Target,
    const std::string& WorkFolder, const FRenameStep& Rename = {});
}
