#include "Common/FileHelper.h"
#include "Common/NativePath.h"
#include "Common/Paths.h"
#include "Common/StringUtil.h"
#include "Modio/SourceModReader.h"
#include "Transfer/PluginModDownload.h"

#include <filesystem>

namespace fs = std::filesystem;

namespace Maptorn
{
namespace
{
bool CopyTree(const std::string& From, const std::string& To)
{
    std::error_code Error;
    fs::copy(NativePath::FromUtf8(From), NativePath::FromUtf8(To), fs::copy_options::recursive | fs::copy_options::overwrite_existing, Error);
    return !Error;
}

// Renames, or copies and deletes when the two folders are on different devices.
bool RenameFolder(const std::string& From, const std::string& To)
{
    std::error_code Error;
    fs::rename(NativePath::FromUtf8(From), NativePath::FromUtf8(To), Error);
    if (!Error)
    {
        return true;
    }
    if (CopyTree(From, To))
    {
        FileSystem::DeleteDirectoryRecursively(From);
        return true;
    }
    FileSystem::DeleteDirectoryRecursively(To);
    return false;
}

// Replaces Target with a copy of Source so that, whatever fails, Target is either the old
// plug-in or the new one, complete. The copies are made beside the downloads, outside the
// plug-ins folder, so the engine never sees two plug-ins of one name.
bool ReplacePlugin(IMaptornLog& Log, const std::string& Name, const std::string& Source, const std::string& Target, const std::string& WorkFolder)
{
    const std::string Incoming = Paths::Combine(WorkFolder, Name + ".incoming");
    const std::string Previous = Paths::Combine(WorkFolder, Name + ".previous");
    FileSystem::DeleteDirectoryRecursively(Incoming);
    FileSystem::DeleteDirectoryRecursively(Previous);
    FileSystem::CreateDirectoryTree(WorkFolder);
    if (!CopyTree(Source, Incoming))
    {
        Log.Log(LogCategory::LogTemp, ELogVerbosity::Log, Printf("[MOD] Failed to move plugin %s", Name.c_str()));
        FileSystem::DeleteDirectoryRecursively(Incoming);
        return false;
    }
    const bool bHadPlugin = FileSystem::DirectoryExists(Target);
    if (bHadPlugin && !RenameFolder(Target, Previous))
    {
        Log.Log(LogCategory::LogTemp, ELogVerbosity::Log, Printf("[MOD] Failed to delete plugin %s prior to moving downloaded plugin", Name.c_str()));
        FileSystem::DeleteDirectoryRecursively(Incoming);
        return false;
    }
    if (!RenameFolder(Incoming, Target))
    {
        Log.Log(LogCategory::LogTemp, ELogVerbosity::Log, Printf("[MOD] Failed to move plugin %s", Name.c_str()));
        if (bHadPlugin)
        {
            RenameFolder(Previous, Target);
        }
        FileSystem::DeleteDirectoryRecursively(Incoming);
        return false;
    }
    FileSystem::DeleteDirectoryRecursively(Previous);
    return true;
}
}

void FPluginModDownload::ExtractDownload()
{
    Platform.Log.Log(LogCategory::LogTemp, ELogVerbosity::Log, Printf("[MOD] Mod %s extracting", ModName.c_str()));
    const std::string Archive = ArchivePath();
    const std::string Destination = ExtractFolder();
    // A folder left by an earlier run must not be installed with this one.
    FileSystem::DeleteDirectoryRecursively(Destination);
    IMaptornArchive& ArchivePort = Platform.Archive;
    ExtractTask = Platform.Tasks.StartPoolTask([&ArchivePort, Archive, Destination, Extracted = bExtracted, Error = ExtractError] {
        std::string Reason;
        *Extracted = ArchivePort.ExtractAll(Archive, Destination, Reason);
        *Error = Reason;
    });
    State = EPluginDownloadState::Extracting;
}

void FPluginModDownload::Update()
{
    if (State == EPluginDownloadState::Extracting && ExtractTask && ExtractTask->IsWorkDone())
    {
        State = EPluginDownloadState::Installing;
        InstallPlugin();
    }
}

void FPluginModDownload::InstallPlugin()
{
    if (!*bExtracted)
    {
        Platform.Log.Log(LogCategory::LogTemp, ELogVerbosity::Log, Printf("[MOD] Failed to extract %s: %s", ModName.c_str(), ExtractError->c_str()));
        return Fail();
    }
    const std::string ThumbnailCache = ThumbnailCacheDir(Platform.Engine);
    if (FileSystem::DirectoryExists(ThumbnailCache))
    {
        FileSystem::DeleteDirectoryRecursively(ThumbnailCache);
    }
    const std::string PluginsDir = Paths::ConvertRelativePathToFull(Platform.Engine.GetBaseDir(), Platform.Engine.ProjectPluginsDir());
    const std::string WorkFolder = Paths::Combine(DownloadFolder(), ".install");
    FileSystem::CreateDirectoryTree(PluginsDir);
    int Installed = 0;
    int Failed = 0;
    for (const FileSystem::FDirectoryEntry& Entry : FileSystem::ListDirectory(ExtractFolder()))
    {
        const std::string Name = Paths::GetCleanFilename(Entry.Path);
        if (!Entry.bIsDirectory || Name.size() < 2 || !StartsWithIgnoreCase(Name, "UGC"))
        {
            continue;
        }
        if (ReplacePlugin(Platform.Log, Name, Entry.Path, Paths::Combine(PluginsDir, Name), WorkFolder))
        {
            ++Installed;
        }
        else
        {
            ++Failed;
        }
        if (!FileSystem::DeleteDirectoryRecursively(Entry.Path))
        {
            Platform.Log.Log(LogCategory::LogTemp, ELogVerbosity::Log, Printf("[MOD] Failed to delete downloaded plugin %s", Name.c_str()));
        }
    }
    State = Installed > 0 && Failed == 0 ? EPluginDownloadState::Complete : EPluginDownloadState::Failed;
}
}
