#include "Common/FileHelper.h"
#include "Common/Md5.h"
#include "Common/NativePath.h"
#include "Common/Paths.h"
#include "Common/StringUtil.h"
#include "Modio/SourceModReader.h"
#include "Transfer/PluginFolderMove.h"
#include "Transfer/PluginModDownload.h"

namespace Maptorn
{
void FPluginModDownload::ExtractDownload()
{
    Platform.Log.Log(LogCategory::LogTemp, ELogVerbosity::Log, Printf("[MOD] Mod %s extracting", ModName.c_str()));
    const std::string Archive = ArchivePath();
    const std::string Destination = ExtractFolder();
    // A folder left by an earlier run must not be installed with this one.
    FileSystem::DeleteDirectoryRecursively(Destination);
    if (ExpectedMd5.empty())
    {
        Platform.Log.Log(LogCategory::LogTemp, ELogVerbosity::Warning,
            Printf("[MOD] mod.io gives no checksum for %s; its archive is installed unchecked", ModName.c_str()));
    }
    IMaptornArchive& ArchivePort = Platform.Archive;
    // The digest taken while the bytes arrived; a host that could not take it leaves the worker
    // to read the archive once more.
    const bool bStreamed = ArchiveDigest && static_cast<int64>(ArchiveDigest->GetTotalBytes()) == FileSystem::FileSize(Archive);
    const std::string Streamed = bStreamed && !ExpectedMd5.empty() ? ArchiveDigest->FinalHex() : std::string();
    ArchiveDigest.reset();
    ExtractTask = Platform.Tasks.StartPoolTask([&ArchivePort, Archive, Destination, Expected = ToLower(ExpectedMd5), Streamed, Extracted = bExtracted,
                                                   Error = ExtractError, Mismatch = ChecksumError] {
        const std::string Received = Expected.empty() ? std::string() : !Streamed.empty() ? Streamed : FMd5::OfFile(Archive);
        if (Received != Expected)
        {
            *Mismatch = Printf("its archive is not the file mod.io describes (MD5 %s expected, %s received)", Expected.c_str(),
                Received.empty() ? "none" : Received.c_str());
            return;
        }
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
        if (bCancelRequested)
        {
            // The worker has let go of the archive and the folder: both can go now.
            RemoveDownloadedFiles();
            return Fail();
        }
        State = EPluginDownloadState::Installing;
        InstallPlugin();
    }
}

void FPluginModDownload::InstallPlugin()
{
    if (!ChecksumError->empty())
    {
        // A tampered or damaged archive is no use for a later resume either.
        FileSystem::DeleteFile(ArchivePath());
        Platform.Log.Log(LogCategory::LogTemp, ELogVerbosity::Log, Printf("[MOD] Failed to download mod %s: %s", ModName.c_str(), ChecksumError->c_str()));
        return Fail();
    }
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
        if (PluginFolders::ReplacePlugin(Platform.Log, Name, Entry.Path, Paths::Combine(PluginsDir, Name), WorkFolder, RenameFolder))
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
