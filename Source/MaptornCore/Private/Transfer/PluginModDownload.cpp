#include "Transfer/PluginModDownload.h"

#include "Common/FileHelper.h"
#include "Common/NativePath.h"
#include "Common/Paths.h"
#include "Common/StringUtil.h"
#include "Modio/ModioRequests.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>

namespace Maptorn
{
bool ParseContentRange(const std::string& Value, int64& OutFirst, int64& OutLast, int64& OutTotal)
{
    if (Value.size() < 2)
    {
        return false;
    }
    // "bytes " is six characters; what follows is "<first>-<last>/<total>".
    const std::string Range = Value.size() > 6 ? Value.substr(6) : std::string();
    const std::size_t Slash = Range.find('/');
    const std::size_t Dash = Range.find('-');
    if (Slash == std::string::npos || Dash == std::string::npos || Dash > Slash)
    {
        return false;
    }
    char* End = nullptr;
    const std::string FirstText = Range.substr(0, Dash);
    OutFirst = std::strtoll(FirstText.c_str(), &End, 10);
    const bool bFirstOk = End != FirstText.c_str() && *End == '\0';
    const std::string LastText = Range.substr(Dash + 1, Slash - Dash - 1);
    const std::string TotalText = Range.substr(Slash + 1);
    OutLast = std::strtoll(LastText.c_str(), &End, 10);
    const bool bLastOk = End != LastText.c_str() && *End == '\0';
    OutTotal = std::strtoll(TotalText.c_str(), &End, 10);
    const bool bTotalOk = End != TotalText.c_str() && *End == '\0';
    return bFirstOk && bLastOk && bTotalOk && OutFirst >= 0 && OutLast >= OutFirst && OutTotal > 0;
}

FPluginModDownload::FPluginModDownload(FMaptornPlatform& InPlatform)
    : Platform(InPlatform)
    , Http(InPlatform.Http)
{
}

FPluginModDownload::FPluginModDownload(FMaptornPlatform& InPlatform, IMaptornHttp& InHttp, FTickTimers& InTimers)
    : Platform(InPlatform)
    , Http(InHttp)
    , Timers(&InTimers)
{
}

std::string FPluginModDownload::DownloadFolder() const
{
    return Paths::Combine(Paths::ConvertRelativePathToFull(Platform.Engine.GetBaseDir(), Platform.Engine.ProjectSavedDir()), "Downloads");
}

std::string FPluginModDownload::ArchivePath() const
{
    return Paths::Combine(DownloadFolder(), Printf("%s.zip", ModName.c_str()));
}

std::string FPluginModDownload::ExtractFolder() const
{
    return Paths::Combine(DownloadFolder(), ModName);
}

void FPluginModDownload::DownloadMod(const std::string& Url, const std::string& InModName, int32 InVersion, const std::string& InModId)
{
    DownloadUrl = Url;
    ModName = InModName;
    Version = InVersion;
    ModId = InModId;
    // The archive is named after the mod: only a plain id, and a name of letters, digits, "_"
    // and "-", may reach a path.
    const bool bSafeName = !ModName.empty() && ModName.find_first_not_of(
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_-") == std::string::npos;
    if (!IsPlainModId(ModId) || !bSafeName)
    {
        Platform.Log.Log(LogCategory::MaptornLog, ELogVerbosity::Error, "[MOD] Refused to download a mod whose id or name is not plain");
        Fail();
        return;
    }
    Download();
}

void FPluginModDownload::Download()
{
    // The archive must be writable before any byte is asked for.
    FileSystem::CreateDirectoryTree(DownloadFolder());
    const bool bContinueArchive = bAppend || ResumeTries > 0;
    // Hashed as it arrives only when there is a checksum to compare with: hashing costs a core.
    if (ExpectedMd5.empty())
    {
        ArchiveDigest.reset();
    }
    else if (!bContinueArchive || !ArchiveDigest)
    {
        ArchiveDigest = std::make_shared<FMd5>();
    }
    if (!bContinueArchive && FileSystem::FileExists(ArchivePath()))
    {
        FileSystem::DeleteFile(ArchivePath());
    }
    if (!std::ofstream(NativePath::FromUtf8(ArchivePath()), std::ios::binary | std::ios::app))
    {
        Platform.Log.Log(LogCategory::LogTemp, ELogVerbosity::Log, Printf("[MOD] Failed to write to zip file %s check permissions", ModName.c_str()));
        return Fail();
    }

    FHttpRequestPtr Request = Http.CreateRequest();
    if (!Request)
    {
        return OnChunkComplete(nullptr, false);
    }
    // A chunk cut short goes on from what the archive holds; a new chunk starts at NextOffset.
    AskedFrom = ResumeTries > 0 ? std::max<int64>(FileSystem::FileSize(ArchivePath()), 0) : NextOffset;
    AnsweredFrom = -1;
    Request->SetVerb("GET");
    Request->SetURL(DownloadUrl);
    Request->SetHeader("Accept", "application/json");
    Request->SetHeader("User-Agent", ModioRequests::UserAgent);
    Request->SetHeader("X-Modio-Platform", "source");
    Request->SetHeader("Range", Printf("bytes=%lld-%lld", static_cast<long long>(AskedFrom), static_cast<long long>(NextOffset + ChunkSize - 1)));
    Request->SetResponseBodyFile(ArchivePath(), bContinueArchive);
    if (ArchiveDigest)
    {
        Request->SetResponseBodyDigest(ArchiveDigest);
    }
    std::weak_ptr<FPluginModDownload> Self = weak_from_this();
    Request->OnHeaderReceived() = [Self](FHttpRequestPtr, const std::string& Name, const std::string& Value) {
        if (auto Download = Self.lock())
        {
            Download->OnHeader(Name, Value);
        }
    };
    Request->OnRequestProgress() = [Self](FHttpRequestPtr, int64, int64 BytesReceived) {
        if (auto Download = Self.lock())
        {
            Download->OnChunkProgress(BytesReceived);
        }
    };
    Request->OnProcessRequestComplete() = [Self](FHttpRequestPtr Done, FHttpResponsePtr Response, bool bConnected) {
        if (auto Download = Self.lock())
        {
            Download->ChunkRequest.reset();
            Download->OnChunkComplete(Response, bConnected, Done && !bConnected ? Done->GetFailureReason() : std::string());
        }
    };
    ChunkRequest = Request;
    if (!Request->ProcessRequest())
    {
        ChunkRequest.reset();
        OnChunkComplete(nullptr, false);
    }
}

void FPluginModDownload::OnHeader(const std::string& Name, const std::string& Value)
{
    int64 First = 0;
    int64 Last = 0;
    int64 Total = 0;
    if (EqualsIgnoreCase(Name, "Content-Range") && ParseContentRange(Value, First, Last, Total))
    {
        TotalBytes = Total;
        AnsweredFrom = First;
        bTotalFromRange = true;
        Platform.Log.Log(LogCategory::LogTemp, ELogVerbosity::Log, Printf("[MOD] Received mod file size: %lld", static_cast<long long>(Total)));
    }
    else if (EqualsIgnoreCase(Name, "Content-Length") && AskedFrom == 0 && !bTotalFromRange)
    {
        // A server that ignores ranges still tells the whole size this way.
        TotalBytes = std::strtoll(Value.c_str(), nullptr, 10);
    }
}

void FPluginModDownload::OnChunkProgress(int64 BytesReceived)
{
    ReceivedBytes = AskedFrom + BytesReceived;
    Progress = TotalBytes > 0 ? static_cast<float>(static_cast<double>(ReceivedBytes) / static_cast<double>(TotalBytes)) : 0.0f;
}

void FPluginModDownload::OnChunkComplete(FHttpResponsePtr Response, bool bConnected, const std::string& FailureReason)
{
    if (bCancelRequested)
    {
        return;
    }
    const int32 Code = Response ? Response->GetResponseCode() : 0;
    if ((!bConnected || !Response) && ResumeChunk(FailureReason))
    {
        return;
    }
    if (!bConnected || !Response || (Code != 200 && Code != 206))
    {
        Platform.Log.Log(LogCategory::LogTemp, ELogVerbosity::Log, Printf("[MOD] Failed to download mod %s http response code %d", ModName.c_str(), Code));
        // Without an answer the code is 0 and tells nothing: say what the connection did.
        if (!FailureReason.empty())
        {
            Platform.Log.Log(LogCategory::LogTemp, ELogVerbosity::Log, Printf("[MOD] Failed to download mod %s: %s", ModName.c_str(), FailureReason.c_str()));
        }
        return Fail();
    }
    if (!AnswerStartsWhereAsked(Response))
    {
        Platform.Log.Log(LogCategory::LogTemp, ELogVerbosity::Log, Printf("[MOD] Failed to download mod %s http response code %d", ModName.c_str(), Code));
        Platform.Log.Log(LogCategory::LogTemp, ELogVerbosity::Log,
            Printf("[MOD] Failed to download mod %s: the server answered another range than byte %lld onwards", ModName.c_str(),
                static_cast<long long>(AskedFrom)));
        return Fail();
    }
    ResumeTries = 0;
    int64 First = 0;
    int64 Last = 0;
    int64 Total = 0;
    const std::string ContentRange = Response->GetHeader("Content-Range");
    if (ContentRange.size() < 2 || !ParseContentRange(ContentRange, First, Last, Total) || Last == Total - 1)
    {
        bAppend = false;
        ReceivedBytes = FileSystem::FileSize(ArchivePath());
        Progress = 1.0f;
        Platform.Log.Log(LogCategory::LogTemp, ELogVerbosity::Log, Printf("[MOD] Mod %s successfully downloaded", ModName.c_str()));
        return ExtractDownload();
    }
    if (Last + 1 <= NextOffset || Last >= Total)
    {
        // A range that does not move forward would ask for the same bytes for ever.
        Platform.Log.Log(LogCategory::LogTemp, ELogVerbosity::Log, Printf("[MOD] Failed to download mod %s http response code %d", ModName.c_str(), Code));
        return Fail();
    }
    bAppend = true;
    NextOffset = Last + 1;
    Download();
    Platform.Log.Log(LogCategory::LogTemp, ELogVerbosity::Log, Printf("[MOD] Mod %s successfully downloaded chunk", ModName.c_str()));
}

bool FPluginModDownload::AnswerStartsWhereAsked(const FHttpResponsePtr& Response) const
{
    int64 First = 0;
    int64 Last = 0;
    int64 Total = 0;
    const std::string ContentRange = Response->GetHeader("Content-Range");
    if (ContentRange.size() >= 2 && ParseContentRange(ContentRange, First, Last, Total))
    {
        return First == AskedFrom;
    }
    // A whole file answered without a range is only right for a request from the first byte.
    return AskedFrom == 0;
}

bool FPluginModDownload::ResumeChunk(const std::string& FailureReason)
{
    // Bytes of another range already went into the archive: going on would only add to them.
    if (ResumeTries >= MaxResumeTries || (AnsweredFrom >= 0 && AnsweredFrom != AskedFrom))
    {
        return false;
    }
    const float Pause = 0.25f * static_cast<float>(1 << ResumeTries);
    ++ResumeTries;
    Platform.Log.Log(LogCategory::LogTemp, ELogVerbosity::Log,
        Printf("[MOD] Mod %s download broke off at byte %lld (%s); asking for the rest in %.2f s", ModName.c_str(),
            static_cast<long long>(FileSystem::FileSize(ArchivePath())), FailureReason.empty() ? "no answer" : FailureReason.c_str(), Pause));
    if (!Timers)
    {
        Download();
        return true;
    }
    std::weak_ptr<FPluginModDownload> Self = weak_from_this();
    Timers->After(Pause, [Self] {
        auto Download = Self.lock();
        if (Download && !Download->bCancelRequested && Download->State == EPluginDownloadState::Downloading)
        {
            Download->Download();
        }
    });
    return true;
}

void FPluginModDownload::Fail()
{
    State = EPluginDownloadState::Failed;
}

void FPluginModDownload::Cancel()
{
    if (bCancelRequested || State == EPluginDownloadState::Complete || State == EPluginDownloadState::Failed ||
        State == EPluginDownloadState::Installing)
    {
        return;
    }
    bCancelRequested = true;
    Platform.Log.Log(LogCategory::LogTemp, ELogVerbosity::Log, Printf("[MOD] Mod %s download cancelled", ModName.c_str()));
    if (FHttpRequestPtr Request = std::move(ChunkRequest))
    {
        Request->OnProcessRequestComplete() = nullptr;
        Request->CancelRequest();
    }
    if (State == EPluginDownloadState::Downloading)
    {
        RemoveDownloadedFiles();
        Fail();
    }
}

void FPluginModDownload::RemoveDownloadedFiles()
{
    FileSystem::DeleteFile(ArchivePath());
    FileSystem::DeleteDirectoryRecursively(ExtractFolder());
}

void FPluginModDownload::GetProgressBytes(int64& OutReceived, int64& OutTotal) const
{
    OutReceived = ReceivedBytes;
    OutTotal = TotalBytes;
}
}
