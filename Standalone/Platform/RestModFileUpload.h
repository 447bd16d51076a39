#pragma once

#include "Modio/ModioSdkTypes.h"
#include "Platform/HttpPort.h"

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace Maptorn
{
struct FRestUploadOptions
{
    // Archives larger than this go through a multipart session, the others in one form-data request.
    int64 MultipartThreshold = 200ll * 1024 * 1024;
    // Every part but the last has exactly this many bytes (mod.io takes 50 MiB parts only).
    int64 PartSize = 50ll * 1024 * 1024;
    // Where each upload makes its own temporary folder; the system's temporary folder when empty.
    std::string TemporaryFolder;
};

struct FRestUploadTarget
{
    std::string BaseUrl;
    int64 GameId = 0;
    FModioModID ModId = 0;
    std::string Token;
};

// One mod-file submission: the folder is packed into a ZIP on a worker thread, then sent in one
// form-data request or, above the threshold, through a multipart session that skips the parts
// the service already holds. Requests and their callbacks run on the game thread; the worker's
// results are picked up by Poll, which the session's RunPendingHandlers calls. The archive and
// the request body live in a folder of their own that is removed on every end, destruction too.
class FRestModFileUpload
{
public:
    // bTokenRefused: the service answered 401, so the token is no good any more.
    using FOnFinished = std::function<void(FModioErrorCode Error, bool bTokenRefused)>;

    FRestModFileUpload(IMaptornHttp& Http, FRestUploadTarget Target, FModioCreateModFileParams Params, FRestUploadOptions Options,
        FOnFinished OnFinished);
    // Cancels the request and the worker; OnFinished is not called.
    ~FRestModFileUpload();
    FRestModFileUpload(const FRestModFileUpload&) = delete;
    FRestModFileUpload& operator=(const FRestModFileUpload&) = delete;

    void Start();
    // Game thread: carries on once the worker has finished its step.
    void Poll();

    bool IsFinished() const { return bFinished; }
    FModioModID GetModId() const { return Target.ModId; }
    // Any thread; nothing once finished.
    std::optional<FModioModProgressInfo> GetProgress() const;

private:
    using FAnswerHandler = std::function<void(int32 Status, const std::string& Body)>;
    using FWorkerStep = std::function<FModioErrorCode()>;

    void RunOnWorker(FWorkerStep Step, std::function<void()> Then);
    void StopWorker();
    FModioErrorCode PackFolder();
    void OnFolderPacked();

    void SendWholeFile();

    void OpenSession();
    void ListParts(int64 Offset);
    void SendNextPart();
    void SendPart(int64 PartIndex);
    void CompleteSession();
    void AttachUpload();
    int64 PartCount() const;
    int64 PartLength(int64 PartIndex) const;
    int64 ConfirmedBytes() const;

    // The answer goes to OnAnswer when 2xx; anything else finishes the upload with its error.
    // OnRefusal, when given, takes the answers other than 2xx instead of ending the upload.
    void Send(FHttpRequestPtr Request, FAnswerHandler OnAnswer, FAnswerHandler OnRefusal = nullptr);
    FHttpRequestPtr MakeRequest(const std::string& Verb, const std::string& Url);
    FHttpRequestPtr MakeFormRequest(const std::string& Url, const std::string& Body);
    void SetProgress(EModioModProgressState State, int64 Current, int64 Total);
    void TrackUploadProgress(const FHttpRequestPtr& Request, int64 AlreadySent, int64 SkipBytes);
    void Finish(FModioErrorCode Error, bool bTokenRefused = false);
    // Ends with the modfile mod.io answered: it must be one, and hold the archive sent.
    void FinishWithModfile(const std::string& Answer);
    void RemoveTemporaryFolder();

    IMaptornHttp& Http;
    const FRestUploadTarget Target;
    const FModioCreateModFileParams Params;
    const FRestUploadOptions Options;
    FOnFinished OnFinished;

    std::string TemporaryFolder;
    std::string ArchivePath;
    std::string BodyPath;
    std::string ArchiveName;
    int64 ArchiveSize = 0;
    int64 BodyHeadSize = 0;
    std::string ArchiveMd5;
    // The multipart nonce is the archive's MD5, then "<md5>-<n>": a nonce whose session completed
    // is refused (29002), so the next generation opens a new session, while an interrupted one is
    // found again under its own nonce.
    int32 NonceGeneration = 0;
    static constexpr int32 MaxNonceGenerations = 100;

    std::string UploadId;
    std::vector<bool> PartsOnService;
    int64 NextPart = 0;
    std::vector<uint8> PartBytes;

    std::thread Worker;
    std::atomic<bool> bWorkerDone = false;
    std::atomic<bool> bCancelled = false;
    FModioErrorCode WorkerError;
    std::function<void()> AfterWorker;

    FHttpRequestPtr RequestInFlight;
    bool bFinished = false;

    mutable std::mutex ProgressMutex;
    std::optional<FModioModProgressInfo> Progress;

    // Request callbacks hold a weak reference: once the upload is gone they do nothing.
    std::shared_ptr<int> Lifetime = std::make_shared<int>(0);
};
}
