// The single-request way of adding a mod file: a multipart/form-data body written to a
// temporary file in the project's Saved folder, then streamed from there, so an archive of any
// size never sits in memory.

#include "Transfer/ModioMultipartUpload.h"

#include "Common/FileHelper.h"
#include "Common/Paths.h"
#include "Common/StringUtil.h"
#include "Modio/ModioRequests.h"
#include "Transfer/FormDataBody.h"
#include "Transfer/GrowingFile.h"

namespace Maptorn
{
std::string FModioMultipartUpload::FormDataBodyPath() const
{
    const std::string SavedDir = Paths::ConvertRelativePathToFull(PlatformPorts.Engine.GetBaseDir(), PlatformPorts.Engine.ProjectSavedDir());
    return Paths::Combine(SavedDir, "modio_upload.tmp");
}

bool FModioMultipartUpload::PrepareFormDataBodyPath(std::string& OutPath)
{
    OutPath = FormDataBodyPath();
    if (FileSystem::FileExists(OutPath))
    {
        FileSystem::DeleteFile(OutPath);
    }
    if (FileSystem::FileExists(OutPath))
    {
        // A body we cannot replace would send stale bytes: stop before anything goes out.
        LogError("Assertion failed: PlatformFile.FileExists(*TmpFilePath) == false");
        return false;
    }
    FileSystem::CreateDirectoryTree(Paths::GetPath(OutPath));
    return true;
}

FFormDataFields FModioMultipartUpload::FormDataFields(bool bIncludeFile) const
{
    FFormDataFields Fields;
    Fields.Version = Version;
    Fields.Changelog = Changelog;
    Fields.Platform = Platform;
    Fields.bIncludeFile = bIncludeFile;
    Fields.FileName = FileName;
    return Fields;
}

void FModioMultipartUpload::LogFormDataBodyError(EFormDataBodyError Error)
{
    switch (Error)
    {
    case EFormDataBodyError::None:
    case EFormDataBodyError::Cancelled: // this body is never written with a cancel flag
        return;
    case EFormDataBodyError::BodyNotWritable:
        return LogError("Upload form-data file creation failed, disk might be full or no-read/write permissions");
    case EFormDataBodyError::FileNotReadable:
        return LogError("Upload file failed to open for read, disk might be full or no-read/write permissions");
    case EFormDataBodyError::ShortRead:
        return LogError("Assertion failed: FileReadSize == FileTotalSize");
    }
}

bool FModioMultipartUpload::BuildFormDataBody(bool bIncludeFile, std::string& OutPath, int64& OutSize)
{
    OutSize = 0;
    if (!PrepareFormDataBodyPath(OutPath))
    {
        return false;
    }
    const EFormDataBodyError Error =
        WriteFormDataBody(FormDataFields(bIncludeFile), Paths::Combine(FileFolder, FileName), OutPath, PartBuffer, OutSize, PartSize);
    LogFormDataBodyError(Error);
    return Error == EFormDataBodyError::None;
}

void FModioMultipartUpload::PrepareFormDataRequest(const FHttpRequestPtr& Request, int64 BodySize)
{
    // One part as large as the body, so progress reads body bytes sent over body size.
    FileSize = static_cast<int32>(BodySize);
    Parts = {FMultipartUploadPart{0, FileSize, 0, 0}};
    CurrentPart = 0;
    Request->SetHeader("Content-Type", Printf("multipart/form-data; boundary=%s", FormDataBoundary));
    Request->SetHeader("Content-Length", Printf("%d", FileSize));
    std::shared_ptr<FModioMultipartUpload> Self = shared_from_this();
    Request->OnRequestProgress() = [Self](FHttpRequestPtr, int64 BytesSent, int64) { Self->OnPartProgress(BytesSent); };
}

// Where the host can send a file that is still being written, the archive is copied into the
// body on the pool while the request already sends what is there: the copy of a large archive
// then costs next to nothing on top of the sending. The body file ends up the same either way.
bool FModioMultipartUpload::SendFormDataWhileWriting()
{
    const std::string SourceFile = Paths::Combine(FileFolder, FileName);
    const int64 SourceSize = FileSystem::FileSize(SourceFile);
    FHttpRequestPtr Request = MakeRequest("POST", ModioRequests::ModFilesUrl(BaseUrl, GameId, ModId));
    std::string BodyPath;
    if (SourceSize < 0 || !Request || !PrepareFormDataBodyPath(BodyPath))
    {
        return false; // the whole-body way reports why
    }
    const std::string Head = MakeFormDataHead(FormDataFields(true));
    const std::string Tail = MakeFormDataTail();
    const int64 BodySize = static_cast<int64>(Head.size()) + SourceSize + static_cast<int64>(Tail.size());
    auto Writer = std::make_shared<FGrowingFile>();
    if (!FileHelper::SaveStringToFile("", BodyPath) || !Request->SetContentAsGrowingFile(BodyPath, BodySize, Writer))
    {
        return false;
    }
    BodyWriter = Writer;
    BodyWriteError = EFormDataBodyError::None;
    std::shared_ptr<FModioMultipartUpload> Self = shared_from_this();
    PlatformPorts.Tasks.AsyncTask(ENamedThreads::AnyBackgroundThreadNormalTask, [Self, Head, Tail, SourceFile, BodyPath, BodySize, Writer]
    {
        int64 Written = 0;
        EFormDataBodyError Error = WriteBodyAroundFile(Head, SourceFile, Tail, BodyPath, Self->PartBuffer, Written, PartSize, nullptr, Writer.get());
        if (Error == EFormDataBodyError::None && Written != BodySize)
        {
            Error = EFormDataBodyError::ShortRead; // the file changed size since it was measured
        }
        // The error is kept before the reader hears of the end, so the answer can tell it.
        Self->BodyWriteError = Error;
        Writer->Finish(Error == EFormDataBodyError::None);
    });
    PrepareFormDataRequest(Request, BodySize);
    Dispatch(Request, &FModioMultipartUpload::OnFormDataAnswer);
    return true;
}

void FModioMultipartUpload::SendFormData(bool bIncludeFile)
{
    if (bStarted)
    {
        LogError("Assertion failed: already started");
        return;
    }
    bStarted = true;
    bBusy = true;
    if (bIncludeFile && SendFormDataWhileWriting())
    {
        return;
    }
    std::string BodyPath;
    int64 BodySize = 0;
    if (!BuildFormDataBody(bIncludeFile, BodyPath, BodySize))
    {
        Finish(false);
        return;
    }
    FHttpRequestPtr Request = MakeRequest("POST", ModioRequests::ModFilesUrl(BaseUrl, GameId, ModId));
    if (Request)
    {
        if (!Request->SetContentAsStreamedFile(BodyPath))
        {
            LogError("Upload form-data file creation failed, disk might be full or no-read/write permissions");
            Finish(false);
            return;
        }
        PrepareFormDataRequest(Request, BodySize);
    }
    Dispatch(Request, &FModioMultipartUpload::OnFormDataAnswer);
}

void FModioMultipartUpload::OnFormDataAnswer(FHttpResponsePtr Response, bool bConnected)
{
    if (BodyWriter && BodyWriter->Failed())
    {
        // The body could not be written whole, so the request was given up part-way.
        LogFormDataBodyError(BodyWriteError);
        Finish(false);
        return;
    }
    if (bAborted)
    {
        LogError("Upload multipart upload was aborted");
        Finish(false);
        return;
    }
    // mod.io answers a new mod file with 201; any 2xx means the file was stored.
    const int32 Code = Response ? Response->GetResponseCode() : 0;
    if (!bConnected || Code < 200 || Code > 299)
    {
        LogError("Upload multipart failed");
        Finish(false);
        return;
    }
    Finish(true);
}
}
