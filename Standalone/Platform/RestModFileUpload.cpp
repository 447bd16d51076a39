#include "Platform/RestModFileUpload.h"

#include "Common/FileHelper.h"
#include "Modio/ModioRequests.h"
#include "Platform/RestModFileArchive.h"
#include "Common/Md5.h"
#include "Modio/ModfileChecksum.h"
#include "Platform/RestModFileRequests.h"
#include "Platform/RestModioSessionRequests.h"
#include "Transfer/FormDataBody.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <system_error>

#include <stdlib.h>

namespace Maptorn
{
namespace
{
FModioErrorCode ArchiveError(const std::string& Message)
{
    return FModioErrorCode{ModioRest::ErrorValue::ArchiveFailed, Message};
}

// The archive and the request body are as big as the mod, so they go to the system's temporary
// folder (TMPDIR), not the config folder the login lives in; mkdtemp makes the folder owner-only,
// as the mod may not be public yet.
std::string MakeTemporaryFolder(const std::string& Parent)
{
    std::error_code Error;
    const std::filesystem::path Base = Parent.empty() ? std::filesystem::temp_directory_path(Error) : std::filesystem::path(Parent);
    if (Error || Base.empty())
    {
        return {};
    }
    std::string Template = (Base / "maptorn-upload-XXXXXX").string();
    return ::mkdtemp(Template.data()) ? Template : std::string();
}

// The archive is copied into the body a mebibyte at a time.
constexpr int64 BodyCopyPiece = int64(1) << 20;

// Head, archive, tail: the body of the single request, streamed from disk by the HTTP adapter.
bool WriteFormBody(const std::string& Head, const std::string& ArchivePath, const std::string& Tail, const std::string& BodyPath,
    const std::atomic<bool>& bCancelled)
{
    std::vector<uint8> Buffer;
    int64 BodySize = 0;
    return WriteBodyAroundFile(Head, ArchivePath, Tail, BodyPath, Buffer, BodySize, BodyCopyPiece, &bCancelled) == EFormDataBodyError::None;
}
}

FRestModFileUpload::FRestModFileUpload(IMaptornHttp& InHttp, FRestUploadTarget InTarget, FModioCreateModFileParams InParams,
    FRestUploadOptions InOptions, FOnFinished InOnFinished)
    : Http(InHttp)
    , Target(std::move(InTarget))
    , Params(std::move(InParams))
    , Options(std::move(InOptions))
    , OnFinished(std::move(InOnFinished))
{
}

FRestModFileUpload::~FRestModFileUpload()
{
    Lifetime.reset();
    StopWorker();
    if (FHttpRequestPtr Request = std::move(RequestInFlight))
    {
        Request->CancelRequest();
    }
    // A transfer still reading the body keeps its open file; the name can go now.
    RemoveTemporaryFolder();
}

void FRestModFileUpload::Start()
{
    SetProgress(EModioModProgressState::Initializing, 0, 0);
    if (!FileSystem::DirectoryExists(Params.RootDirectory))
    {
        Finish(FModioErrorCode{ModioRest::ErrorValue::BadParameter, "The folder to upload does not exist: " + Params.RootDirectory});
        return;
    }
    TemporaryFolder = MakeTemporaryFolder(Options.TemporaryFolder);
    if (TemporaryFolder.empty())
    {
        Finish(ArchiveError("No temporary folder can be made for the upload"));
        return;
    }
    ArchiveName = ModioRest::ArchiveFileName(Params.RootDirectory);
    ArchivePath = TemporaryFolder + "/" + ArchiveName;
    BodyPath = TemporaryFolder + "/body.form";
    RunOnWorker([this] { return PackFolder(); }, [this] { OnFolderPacked(); });
}

void FRestModFileUpload::RunOnWorker(FWorkerStep Step, std::function<void()> Then)
{
    AfterWorker = std::move(Then);
    bWorkerDone = false;
    try
    {
        Worker = std::thread([this, Step = std::move(Step)] {
            WorkerError = Step();
            bWorkerDone = true;
        });
    }
    catch (const std::system_error&)
    {
        Finish(ArchiveError("No worker thread can be started for the upload"));
    }
}

void FRestModFileUpload::StopWorker()
{
    bCancelled = true;
    if (Worker.joinable())
    {
        Worker.join();
    }
}

void FRestModFileUpload::Poll()
{
    if (bFinished || !Worker.joinable() || !bWorkerDone.load())
    {
        return;
    }
    Worker.join();
    if (WorkerError)
    {
        Finish(WorkerError);
        return;
    }
    std::function<void()> Then = std::move(AfterWorker);
    AfterWorker = nullptr;
    Then();
}

// Worker thread.
FModioErrorCode FRestModFileUpload::PackFolder()
{
    std::string Error;
    const FModFileArchiveProgress OnProgress = [this](int64 Read, int64 Total) {
        SetProgress(EModioModProgressState::Compressing, Read, Total);
    };
    if (!WriteModFileArchive(Params.RootDirectory, ArchivePath, OnProgress, bCancelled, Error))
    {
        return ArchiveError(Error);
    }
    ArchiveSize = FileSystem::FileSize(ArchivePath);
    ArchiveMd5 = FMd5::OfFile(ArchivePath, &bCancelled);
    if (ArchiveSize <= 0 || ArchiveMd5.empty())
    {
        return ArchiveError("The packed folder cannot be read back from the temporary folder");
    }
    if (ArchiveSize > Options.MultipartThreshold)
    {
        return {};
    }
    const std::string Head = ModioRest::MakeFormHead(ModioRest::ModfileFields(Params, ArchiveMd5),
        ModioRest::FFormFile{"filedata", ArchiveName, "application/zip"});
    BodyHeadSize = static_cast<int64>(Head.size());
    if (!WriteFormBody(Head, ArchivePath, ModioRest::MakeFormTail(true), BodyPath, bCancelled))
    {
        return ArchiveError("The request body cannot be written to the temporary folder");
    }
    // The body holds the archive now; one copy on disk is enough.
    FileSystem::DeleteFile(ArchivePath);
    return {};
}

void FRestModFileUpload::OnFolderPacked()
{
    if (ArchiveSize > Options.MultipartThreshold)
    {
        OpenSession();
    }
    else
    {
        SendWholeFile();
    }
}

void FRestModFileUpload::SendWholeFile()
{
    FHttpRequestPtr Request = MakeRequest("POST", ModioRest::ModfilesUrl(Target.BaseUrl, Target.GameId, Target.ModId));
    if (Request)
    {
        Request->SetHeader("Content-Type", ModioRest::FormContentType());
        if (!Request->SetContentAsStreamedFile(BodyPath))
        {
            Finish(ArchiveError("The request body cannot be read from the temporary folder"));
            return;
        }
    }
    SetProgress(EModioModProgressState::Uploading, 0, ArchiveSize);
    TrackUploadProgress(Request, 0, BodyHeadSize);
    Send(Request, [this](int32, const std::string& Body) {
        FinishWithModfile(Body);
    });
}

void FRestModFileUpload::FinishWithModfile(const std::string& Answer)
{
    if (!ModioRest::IsModfileObject(Answer))
    {
        return Finish(ModioRest::UnexpectedAnswer());
    }
    const std::string Mismatch = ModfileChecksumMismatch(Answer, ArchiveMd5);
    Finish(Mismatch.empty() ? FModioErrorCode{} : FModioErrorCode{ModioRest::ErrorValue::ChecksumMismatch, Mismatch});
}

void FRestModFileUpload::Send(FHttpRequestPtr Request, FAnswerHandler OnAnswer, FAnswerHandler OnRefusal)
{
    if (!Request)
    {
        Finish(ModioRest::TransportFailure());
        return;
    }
    std::weak_ptr<int> Alive = Lifetime;
    Request->OnProcessRequestComplete() = [this, Alive, OnAnswer = std::move(OnAnswer), OnRefusal = std::move(OnRefusal)](
                                              FHttpRequestPtr, FHttpResponsePtr Response, bool bConnectedSuccessfully) {
        if (Alive.expired())
        {
            return;
        }
        RequestInFlight.reset();
        if (!bConnectedSuccessfully || !Response)
        {
            Finish(ModioRest::TransportFailure());
            return;
        }
        const int32 Status = Response->GetResponseCode();
        if ((Status < 200 || Status >= 300) && OnRefusal)
        {
            OnRefusal(Status, Response->GetContentAsString());
            return;
        }
        if (Status < 200 || Status >= 300)
        {
            Finish(ModioRest::ErrorFromAnswer(Status, Response->GetContentAsString()), Status == 401);
            return;
        }
        OnAnswer(Status, Response->GetContentAsString());
    };
    RequestInFlight = Request;
    if (!Request->ProcessRequest())
    {
        Request->OnProcessRequestComplete() = nullptr;
        RequestInFlight.reset();
        Finish(ModioRest::TransportFailure());
    }
}

FHttpRequestPtr FRestModFileUpload::MakeRequest(const std::string& Verb, const std::string& Url)
{
    return ModioRequests::MakeAuthorizedRequest(Http, Verb, Url, Target.Token);
}

FHttpRequestPtr FRestModFileUpload::MakeFormRequest(const std::string& Url, const std::string& Body)
{
    FHttpRequestPtr Request = MakeRequest("POST", Url);
    if (Request)
    {
        Request->SetHeader("Content-Type", "application/x-www-form-urlencoded");
        Request->SetContentAsString(Body);
    }
    return Request;
}

void FRestModFileUpload::TrackUploadProgress(const FHttpRequestPtr& Request, int64 AlreadySent, int64 SkipBytes)
{
    if (!Request)
    {
        return;
    }
    std::weak_ptr<int> Alive = Lifetime;
    Request->OnRequestProgress() = [this, Alive, AlreadySent, SkipBytes](FHttpRequestPtr, int64 BytesSent, int64) {
        if (!Alive.expired())
        {
            const int64 OfArchive = std::max<int64>(0, BytesSent - SkipBytes);
            SetProgress(EModioModProgressState::Uploading, std::min(AlreadySent + OfArchive, ArchiveSize), ArchiveSize);
        }
    };
}

void FRestModFileUpload::SetProgress(EModioModProgressState State, int64 Current, int64 Total)
{
    std::scoped_lock Lock(ProgressMutex);
    if (!bFinished)
    {
        Progress = FModioModProgressInfo{Target.ModId, State, Current, Total};
    }
}

std::optional<FModioModProgressInfo> FRestModFileUpload::GetProgress() const
{
    std::scoped_lock Lock(ProgressMutex);
    return Progress;
}

void FRestModFileUpload::Finish(FModioErrorCode Error, bool bTokenRefused)
{
    if (bFinished)
    {
        return;
    }
    {
        std::scoped_lock Lock(ProgressMutex);
        bFinished = true;
        Progress.reset();
    }
    StopWorker();
    if (FHttpRequestPtr Request = std::move(RequestInFlight))
    {
        Request->OnProcessRequestComplete() = nullptr;
        Request->CancelRequest();
    }
    PartBytes = {};
    RemoveTemporaryFolder();
    if (FOnFinished Callback = std::move(OnFinished))
    {
        OnFinished = nullptr;
        Callback(std::move(Error), bTokenRefused);
    }
}

void FRestModFileUpload::RemoveTemporaryFolder()
{
    if (!TemporaryFolder.empty())
    {
        FileSystem::DeleteDirectoryRecursively(TemporaryFolder);
        TemporaryFolder.clear();
    }
}
}
