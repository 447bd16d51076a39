#pragma once

#include "Common/CoreTypes.h"
#include "Common/Md5.h"
#include "Common/TickTimers.h"
#include "Platform/MaptornPlatform.h"
#include "Transfer/PluginFolderMove.h"

#include <atomic>
#include <memory>
#include <string>

namespace Maptorn
{
enum class EPluginDownloadState : uint8
{
    Downloading = 0,
    Extracting = 1,
    Installing = 2,
    Complete = 3,
    Failed = 4,
};

// One shared source plug-in on its way into the project: downloaded as a ZIP archive in ranged
// chunks streamed to disk (a chunk cut short goes on from the byte reached), checked against the
// modfile's MD5, extracted on a pool worker, then installed into the project's plug-ins.
// Handlers run on the game thread; the owner polls Update every frame.
class MAPTORNCORE_API FPluginModDownload : public std::enable_shared_from_this<FPluginModDownload>
{
public:
    static constexpr int64 ChunkSize = 512000000;
    // A chunk cut short is asked again from the byte reached, at most this many times, after
    // pauses of 0.25 s, 0.5 s, 1 s.
    static constexpr int32 MaxResumeTries = 3;

    // Requests go through the platform's HTTP and resume at once.
    explicit FPluginModDownload(FMaptornPlatform& InPlatform);
    // Requests go through InHttp; the pauses before a resumed chunk run on InTimers.
    FPluginModDownload(FMaptornPlatform& InPlatform, IMaptornHttp& InHttp, FTickTimers& InTimers);

    // Stores the URL, the mod name (which names the archive), the version and the mod id, then
    // sends the first chunk request.
    void DownloadMod(const std::string& Url, const std::string& InModName, int32 InVersion, const std::string& InModId);
    void Download();
    void Update();
    void ExtractDownload();
    void InstallPlugin();
    // Stops the download and removes what it wrote (the partial archive, the unpacked folder); the
    // project's plug-ins stay as they were. An extraction under way is let finish first, so the
    // state turns Failed in a later Update. A download already installing or done is left alone.
    void Cancel();
    bool IsCancelled() const { return bCancelRequested; }

    EPluginDownloadState GetState() const { return State; }
    float GetProgress() const { return Progress; }
    void GetProgressBytes(int64& OutReceived, int64& OutTotal) const;
    bool IsExtractionStarted() const { return ExtractTask != nullptr; }

    // Saved/Downloads, Saved/Downloads/<mod name>.zip, and the folder the archive unpacks into.
    std::string DownloadFolder() const;
    std::string ArchivePath() const;
    std::string ExtractFolder() const;

    std::string ModName;
    std::string ModId;
    int32 Version = 0;
    std::string DownloadUrl;
    // The modfile's "filehash.md5"; the archive must match it before it is extracted. Empty: not checked.
    std::string ExpectedMd5;
    bool bAppend = false;
    int64 TotalBytes = 0;
    int64 ReceivedBytes = 0;
    int64 NextOffset = 0;
    float Progress = 0.0f;
    EPluginDownloadState State = EPluginDownloadState::Downloading;
    std::shared_ptr<ITaskHandle> ExtractTask;
    // How unpacked folders are renamed into the project; empty for the file system's own rename.
    PluginFolders::FRenameStep RenameFolder;

private:
    void OnHeader(const std::string& Name, const std::string& Value);
    void OnChunkProgress(int64 BytesReceived);
    void OnChunkComplete(FHttpResponsePtr Response, bool bConnected, const std::string& FailureReason = {});
    // After a broken transfer: asks the rest of the chunk again; false when the tries are spent.
    bool ResumeChunk(const std::string& FailureReason);
    // The answer's range must begin at the byte asked for, or the archive would hold the wrong bytes.
    bool AnswerStartsWhereAsked(const FHttpResponsePtr& Response) const;
    void Fail();
    void RemoveDownloadedFiles();

    FMaptornPlatform& Platform;
    IMaptornHttp& Http;
    FTickTimers* Timers = nullptr;
    FHttpRequestPtr ChunkRequest;
    // The first byte the request in flight asks for: NextOffset, or where a cut chunk stopped.
    int64 AskedFrom = 0;
    // The first byte of the "Content-Range" answered to it; -1 before one arrives.
    int64 AnsweredFrom = -1;
    bool bTotalFromRange = false;
    // The archive's MD5, fed by the host as the body is written; it covers the archive only when
    // its byte count is the file's size.
    std::shared_ptr<FMd5> ArchiveDigest;
    int32 ResumeTries = 0;
    bool bCancelRequested = false;
    // Written by the extraction worker, read by Update once the task is done.
    std::shared_ptr<std::atomic<bool>> bExtracted = std::make_shared<std::atomic<bool>>(false);
    std::shared_ptr<std::string> ExtractError = std::make_shared<std::string>();
    // Set by the worker when the archive is not the one mod.io describes.
    std::shared_ptr<std::string> ChecksumError = std::make_shared<std::string>();
};

// Parses "bytes <first>-<last>/<total>"; false when it is not that shape.
MAPTORNCORE_API bool ParseContentRange(const std::string& Value, int64& OutFirst, int64& OutLast, int64& OutTotal);
}
