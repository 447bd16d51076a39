#include "Transfer/ModioMultipartUpload.h"

#include "Common/FileHelper.h"
#include "Common/NativePath.h"
#include "Common/StringUtil.h"
#include "Modio/JsonFields.h"
#include "Modio/ModioRequests.h"

#include <algorithm>
#include <fstream>

namespace Maptorn
{
namespace
{
using FJson = nlohmann::json;

// An answer's body as JSON, discarded when it is not JSON.
FJson ParseAnswer(const FHttpResponsePtr& Response)
{
    return FJson::parse(Response->GetContentAsString(), nullptr, false);
}

// The engine's TryGetStringField: strings, numbers and booleans read as text; anything else is absent.
bool TryGetStringField(const FJson& Object, const char* Key, std::string& Out)
{
    const FJson* Field = Object.is_object() ? JsonFields::FindField(Object, Key) : nullptr;
    if (!Field || !(Field->is_string() || Field->is_number() || Field->is_boolean()))
    {
        return false;
    }
    Out = JsonFields::GetString(Object, Key);
    return true;
}
}

FModioMultipartUpload::FModioMultipartUpload(FMaptornPlatform& InPlatform, std::string InBaseUrl, int64 InGameId)
    : PlatformPorts(InPlatform)
    , BaseUrl(std::move(InBaseUrl))
    , GameId(InGameId)
{
}

std::vector<FMultipartUploadPart> FModioMultipartUpload::MakeParts(int32 Size)
{
    if (Size <= PartSize)
    {
        return {FMultipartUploadPart{0, Size, 0, 0}};
    }
    // The part count is a single-precision product, truncated, and the trailing part is declared
    // one part length further on with a full part's size: the service expects exactly this layout.
    const int32 Count = static_cast<int32>(static_cast<float>(Size) * (1.0f / static_cast<float>(PartCountDivisor)));
    std::vector<FMultipartUploadPart> Layout;
    for (int32 Index = 0; Index < Count; ++Index)
    {
        Layout.push_back(FMultipartUploadPart{Index * PartSize, PartSize, Index, 0});
    }
    if (Size - Count * PartSize > 0)
    {
        Layout.push_back(FMultipartUploadPart{(Count + 1) * PartSize, PartSize, Count, 0});
    }
    return Layout;
}

std::string FModioMultipartUpload::MakeContentRange(const FMultipartUploadPart& Part, int32 Size)
{
    return Printf("%d-%d/%d", Part.Offset, Part.Size, Size);
}

FHttpRequestPtr FModioMultipartUpload::MakeRequest(const std::string& Verb, const std::string& Url)
{
    return ModioRequests::MakeAuthorizedRequest(PlatformPorts.Http, Verb, Url, AuthToken);
}

void FModioMultipartUpload::LogError(const std::string& Message)
{
    PlatformPorts.Log.Log(LogCategory::LogTemp, ELogVerbosity::Error, Message);
}

void FModioMultipartUpload::Finish(bool bSucceeded)
{
    bBusy = false;
    if (OnFinished)
    {
        OnFinished(bSucceeded);
    }
}

void FModioMultipartUpload::Start()
{
    if (bStarted)
    {
        LogError("Assertion failed: already started");
        return;
    }
    bStarted = true;
    bBusy = true;
    FHttpRequestPtr Request = MakeRequest("POST", ModioRequests::MultipartCreateUrl(BaseUrl, GameId, ModId));
    if (Request)
    {
        Request->SetHeader("Content-Type", "application/x-www-form-urlencoded");
        Request->SetContentAsString(Printf("filename=%s", FileName.c_str()));
    }
    Dispatch(Request, &FModioMultipartUpload::OnCreateAnswer);
}

void FModioMultipartUpload::Dispatch(const FHttpRequestPtr& Request, FAnswerHandler Handler)
{
    // The handlers hold the upload alive until the last answer.
    std::shared_ptr<FModioMultipartUpload> Self = shared_from_this();
    if (Request)
    {
        Request->OnProcessRequestComplete() = [Self, Handler](FHttpRequestPtr, FHttpResponsePtr Response, bool bConnected) {
            ((*Self).*Handler)(Response, bConnected);
        };
        if (Request->ProcessRequest())
        {
            return;
        }
    }
    // A request that never starts ends like one that got no answer.
    ((*Self).*Handler)(nullptr, false);
}

void FModioMultipartUpload::OnCreateAnswer(FHttpResponsePtr Response, bool bConnected)
{
    if (bAborted)
    {
        LogError("Create multipart upload was aborted");
        Finish(false);
        return;
    }
    if (!bConnected || !Response || Response->GetResponseCode() != 200)
    {
        const int32 Code = Response ? Response->GetResponseCode() : 0;
        const std::string Text = Response ? Response->GetContentAsString() : std::string();
        LogError(Printf("Create multipart upload failed with error %d \n\n%s\n\n", Code, Text.c_str()));
        Finish(false);
        return;
    }
    if (!TryGetStringField(ParseAnswer(Response), "upload_id", UploadId))
    {
        LogError("Create multipart upload failed, no uploadid was returned");
        Finish(false);
        return;
    }
    PlatformPorts.Log.Log(LogCategory::LogTemp, ELogVerbosity::Log, "Create multipart mod file upload succeed");
    BuildParts();
}

void FModioMultipartUpload::BuildParts()
{
    if (!FileSystem::FileExists(FilePath))
    {
        LogError(Printf("Multipart upload filepath doesn't exist %s", FilePath.c_str()));
        Finish(false);
        return;
    }
    const int64 RealSize = FileSystem::FileSize(FilePath);
    if (RealSize > INT32_MAX)
    {
        // The service is told sizes as 32-bit numbers; a wrapped size would send garbage.
        LogError(Printf("Multipart upload file is too large (%lld bytes), files of 2 GiB or more are not supported",
            static_cast<long long>(RealSize)));
        Finish(false);
        return;
    }
    FileSize = static_cast<int32>(RealSize);
    Parts = MakeParts(FileSize);
    CurrentPart = 0;
    PlatformPorts.Log.Log(LogCategory::LogTemp, ELogVerbosity::Log, Printf("Uploading %d parts", static_cast<int32>(Parts.size())));
    SendPart();
}

void FModioMultipartUpload::SendPart()
{
    if (CurrentPart >= static_cast<int32>(Parts.size()))
    {
        SendComplete();
        return;
    }
    const FMultipartUploadPart& Part = Parts[static_cast<std::size_t>(CurrentPart)];
    std::ifstream File(NativePath::FromUtf8(FilePath), std::ios::binary);
    if (!File)
    {
        LogError(Printf("Uploading part failed to open file for read %s", FilePath.c_str()));
        Finish(false);
        return;
    }
    if (!File.seekg(Part.Offset))
    {
        LogError(Printf("Uploading part failed to seek to %d", Part.Offset));
        Finish(false);
        return;
    }
    // One buffer serves every part, so at most one part is in memory.
    PartBuffer.resize(static_cast<std::size_t>(std::max(Part.Size, 0)));
    File.read(reinterpret_cast<char*>(PartBuffer.data()), static_cast<std::streamsize>(PartBuffer.size()));
    if (File.gcount() != static_cast<std::streamsize>(PartBuffer.size()))
    {
        LogError(Printf("Uploading part failed to read to buffer %s, Part.Size = ", FilePath.c_str()));
        Finish(false);
        return;
    }
    FHttpRequestPtr Request = MakeRequest("PUT", ModioRequests::MultipartPartUrl(BaseUrl, GameId, ModId, UploadId));
    if (Request)
    {
        Request->SetHeader("Content-Range", MakeContentRange(Part, FileSize));
        Request->SetContent(PartBuffer);
        std::shared_ptr<FModioMultipartUpload> Self = shared_from_this();
        Request->OnRequestProgress() = [Self](FHttpRequestPtr, int64 BytesSent, int64) { Self->OnPartProgress(BytesSent); };
    }
    Dispatch(Request, &FModioMultipartUpload::OnPartAnswer);
}

void FModioMultipartUpload::OnPartProgress(int64 BytesSent)
{
    if (bAborted)
    {
        // The create step's wording is shared here on purpose.
        LogError("Create multipart upload was aborted");
        return;
    }
    int64 SentBefore = 0;
    for (int32 Index = 0; Index < CurrentPart && Index < static_cast<int32>(Parts.size()); ++Index)
    {
        SentBefore += Parts[static_cast<std::size_t>(Index)].Size;
    }
    const float Progress = FileSize > 0
        ? std::clamp(static_cast<float>(static_cast<double>(SentBefore + BytesSent) / FileSize), 0.0f, 1.0f)
        : 0.0f;
    PlatformPorts.Log.Log(LogCategory::LogTemp, ELogVerbosity::Log, Printf("Upload progress %f", Progress));
    if (OnProgress)
    {
        OnProgress(Progress);
    }
}

void FModioMultipartUpload::OnPartAnswer(FHttpResponsePtr Response, bool bConnected)
{
    if (bAborted)
    {
        LogError("Upload multipart upload was aborted");
        Finish(false);
        return;
    }
    if (!bConnected || !Response || Response->GetResponseCode() != 200)
    {
        LogError("Upload multipart failed");
        Finish(false);
        return;
    }
    const FJson Answer = ParseAnswer(Response);
    if (!Answer.is_object() || !JsonFields::FindField(Answer, "upload_id"))
    {
        LogError("Upload multipart failed, no upload_id was returned");
        Finish(false);
        return;
    }
    PlatformPorts.Log.Log(LogCategory::LogTemp, ELogVerbosity::Log,
        Printf("Upload multipart succeeded with index %d", JsonFields::TruncateToInt32(JsonFields::GetNumber(Answer, "part_number"))));
    ++CurrentPart;
    SendPart();
}

void FModioMultipartUpload::SendComplete()
{
    Dispatch(MakeRequest("POST", ModioRequests::MultipartCompleteUrl(BaseUrl, GameId, ModId, UploadId)),
        &FModioMultipartUpload::OnCompleteAnswer);
}

void FModioMultipartUpload::OnCompleteAnswer(FHttpResponsePtr Response, bool bConnected)
{
    if (bAborted)
    {
        LogError("Complete multipart upload was aborted");
        Finish(false);
        return;
    }
    // Only 201 completes the upload; the create step's wording is shared here on purpose.
    if (!bConnected || !Response || Response->GetResponseCode() != 201)
    {
        LogError("Create multipart upload failed");
        Finish(false);
        return;
    }
    Finish(true);
}
}
