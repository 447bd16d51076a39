// The single-request way of adding a mod file: a multipart/form-data body written to a
// temporary file in the project's Saved folder, then streamed from there, so an archive of any
// size never sits in memory.

#include "Transfer/ModioMultipartUpload.h"

#include "Common/FileHelper.h"
#include "Common/Paths.h"
#include "Common/StringUtil.h"
#include "Modio/ModioRequests.h"
#include "Transfer/FormDataBody.h"

namespace Maptorn
{
std::string FModioMultipartUpload::FormDataBodyPath() const
{
    const std::string SavedDir = Paths::ConvertRelativePathToFull(PlatformPorts.Engine.GetBaseDir(), PlatformPorts.Engine.ProjectSavedDir());
    return Paths::Combine(SavedDir, "modio_upload.tmp");
}

bool FModioMultipartUpload::BuildFormDataBody(bool bIncludeFile, std::string& OutPath, int64& OutSize)
{
    OutPath = FormDataBodyPath();
    OutSize = 0;
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

    FFormDataFields Fields;
    Fields.Version = Version;
    Fields.Changelog = Changelog;
    Fields.Platform = Platform;
    Fields.bIncludeFile = bIncludeFile;
    Fields.FileName = FileName;
    const std::string SourceFile = Paths::Combine(FileFolder, FileName);
    switch (WriteFormDataBody(Fields, SourceFile, OutPath, PartBuffer, OutSize, PartSize))
    {
    case EFormDataBodyError::None:
        return true;
    case EFormDataBodyError::BodyNotWritable:
        LogError("Upload form-data file creation failed, disk might be full or no-read/write permissions");
        return false;
    case EFormDataBodyError::FileNotReadable:
        LogError("Upload file failed to open for read, disk might be full or no-read/write permissions");
        return false;
    case EFormDataBodyError::ShortRead:
        LogError("Assertion failed: FileReadSize == FileTotalSize");
        return false;
    case EFormDataBodyError::Cancelled: // this body is never written with a cancel flag
        return false;
    }
    return false;
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
    std::string BodyPath;
    int64 BodySize = 0;
    if (!BuildFormDataBody(bIncludeFile, BodyPath, BodySize))
    {
        Finish(false);
        return;
    }
    // One part as large as the body, so progress reads body bytes sent over body size.
    FileSize = static_cast<int32>(BodySize);
    Parts = {FMultipartUploadPart{0, FileSize, 0, 0}};
    CurrentPart = 0;

    FHttpRequestPtr Request = MakeRequest("POST", ModioRequests::ModFilesUrl(BaseUrl, GameId, ModId));
    if (Request)
    {
        Request->SetHeader("Content-Type", Printf("multipart/form-data; boundary=%s", FormDataBoundary));
        Request->SetHeader("Content-Length", Printf("%d", FileSize));
        if (!Request->SetContentAsStreamedFile(BodyPath))
        {
            LogError("Upload form-data file creation failed, disk might be full or no-read/write permissions");
            Finish(false);
            return;
        }
        std::shared_ptr<FModioMultipartUpload> Self = shared_from_this();
        Request->OnRequestProgress() = [Self](FHttpRequestPtr, int64 BytesSent, int64) { Self->OnPartProgress(BytesSent); };
    }
    Dispatch(Request, &FModioMultipartUpload::OnFormDataAnswer);
}

void FModioMultipartUpload::OnFormDataAnswer(FHttpResponsePtr Response, bool bConnected)
{
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
