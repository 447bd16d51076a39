#pragma once

#include "Common/CoreTypes.h"
#include "Platform/MaptornPlatform.h"
#include "Transfer/FormDataBody.h"

#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace Maptorn
{
class FGrowingFile;

// One slice of the file as announced to the service.
struct MAPTORNCORE_API FMultipartUploadPart
{
    int32 Offset = 0;
    int32 Size = 0;
    int32 Index = 0;
    int32 Reserved = 0;
};

// Sends one mod file to mod.io, either part by part (Start) or as one form-data POST whose body
// is first written to a temporary file (SendFormData). One object per upload; the request
// handlers keep it alive until the last answer. Every end fires OnFinished exactly once.
class MAPTORNCORE_API FModioMultipartUpload : public std::enable_shared_from_this<FModioMultipartUpload>
{
public:
    static constexpr int32 PartSize = 52428799;
    static constexpr int32 PartCountDivisor = 52428800;

    FModioMultipartUpload(FMaptornPlatform& InPlatform, std::string InBaseUrl, int64 InGameId);

    // Opens the multipart upload of FilePath, then sends its parts and completes it.
    void Start();
    // The owner's abort: the next answer ends the upload.
    void Abort() { bAborted = true; }

    // Writes the form-data body to the temporary file, then posts it to the mod's files.
    void SendFormData(bool bIncludeFile);
    bool BuildFormDataBody(bool bIncludeFile, std::string& OutPath, int64& OutSize);
    // Saved/modio_upload.tmp.
    std::string FormDataBodyPath() const;

    // The part layout announced for a file of FileSize bytes.
    static std::vector<FMultipartUploadPart> MakeParts(int32 FileSize);
    // "<offset>-<size>/<file size>", the form the service is sent.
    static std::string MakeContentRange(const FMultipartUploadPart& Part, int32 FileSize);

    int32 CurrentPart = 0;
    int32 FileSize = 0;
    bool bBusy = false;
    // Set by the owner, read by the handlers without a lock.
    std::atomic<bool> bAborted = false;
    std::string UploadId;
    std::vector<FMultipartUploadPart> Parts;
    std::string FilePath;
    std::vector<uint8> PartBuffer;
    std::string ModId;
    std::string AuthToken;
    std::string FileName;
    std::function<void(bool)> OnFinished;
    // Fraction of the file (or the form-data body) sent, 0..1.
    std::function<void(float)> OnProgress;

    // Form-data fields: the file is FileFolder/FileName.
    std::string FileFolder;
    std::string Version;
    std::string Changelog;
    std::string Platform;

private:
    using FAnswerHandler = void (FModioMultipartUpload::*)(FHttpResponsePtr Response, bool bConnected);

    void Dispatch(const FHttpRequestPtr& Request, FAnswerHandler Handler);
    bool PrepareFormDataBodyPath(std::string& OutPath);
    FFormDataFields FormDataFields(bool bIncludeFile) const;
    void LogFormDataBodyError(EFormDataBodyError Error);
    bool SendFormDataWhileWriting();
    void PrepareFormDataRequest(const FHttpRequestPtr& Request, int64 BodySize);
    void OnFormDataAnswer(FHttpResponsePtr Response, bool bConnected);
    void OnCreateAnswer(FHttpResponsePtr Response, bool bConnected);
    void BuildParts();
    void SendPart();
    void OnPartProgress(int64 BytesSent);
    void OnPartAnswer(FHttpResponsePtr Response, bool bConnected);
    void SendComplete();
    void OnCompleteAnswer(FHttpResponsePtr Response, bool bConnected);
    FHttpRequestPtr MakeRequest(const std::string& Verb, const std::string& Url);
    void Finish(bool bSucceeded);
    void LogError(const std::string& Message);

    FMaptornPlatform& PlatformPorts;
    std::string BaseUrl;
    int64 GameId = 0;
    bool bStarted = false;
    // The body being written while it is sent, and why its writing stopped, if it did.
    std::shared_ptr<FGrowingFile> BodyWriter;
    std::atomic<EFormDataBodyError> BodyWriteError = EFormDataBodyError::None;
};
}
