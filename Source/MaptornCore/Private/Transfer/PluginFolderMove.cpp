#include "Transfer/PluginFolderMove.h"

#include "Common/FileHelper.h"
#include "Common/NativePath.h"
#include "Common/Paths.h"
#include "Common/StringUtil.h"

namespace fs = std::filesystem;

namespace Maptorn::PluginFolders
{
bool MoveFolder(const std::string& From, const std::string& To, const FRenameStep& Rename)
{
    const fs::path FromPath = NativePath::FromUtf8(From);
    const fs::path ToPath = NativePath::FromUtf8(To);
    std::error_code Error;
    if (Rename)
    {
        Rename(FromPath, ToPath, Error);
    }
    else
    {
        fs::rename(FromPath, ToPath, Error);
    }
    if (!Error)
    {
        return true;
    }
    // Only another file system makes a copy necessary; any other refusal would refuse the copy too.
    if (Error != std::errc::cross_device_link)
    {
        return false;
    }
    fs::copy(FromPath, ToPath, fs::copy_options::recursive | fs::copy_options::copy_symlinks, Error);
    if (Error)
    {
        FileSystem::DeleteDirectoryRecursively(To);
        return false;
    }
    FileSystem::DeleteDirectoryRecursively(From);
    return true;
}

bool ReplacePlugin(IMaptornLog& Log, const std::string& Name, const std::string& Source, const std::string& Target, const std::string& WorkFolder,
    const FRenameStep& Rename)
{
    const std::string Previous = Paths::Combine(WorkFolder, Name + ".previous");
    FileSystem::DeleteDirectoryRecursively(Previous);
    FileSystem::CreateDirectoryTree(WorkFolder);
    const bool bHadPlugin = FileSystem::DirectoryExists(Target);
    if (bHadPlugin && !MoveFolder(Target, Previous, Rename))
    {
        Log.Log(LogCategory::LogTemp, ELogVerbosity::Log, Printf("[MOD] Failed to delete plugin %s prior to moving downloaded plugin", Name.c_str()));
        return false;
    }
    if (!MoveFolder(Source, Target, Rename))
    {
        Log.Log(LogCategory::LogTemp, ELogVerbosity::Log, Printf("[MOD] Failed to move plugin %s", Name.c_str()));
        FileSystem::DeleteDirectoryRecursively(Target);
        if (bHadPlugin)
        {
            MoveFolder(Previous, Target, Rename);
        }
        return false;
    }
    FileSystem::DeleteDirectoryRecursively(Previous);
    return true;
}
}
