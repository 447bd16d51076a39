#include "Modio/RetryingHttp.h"

#include "Common/NativePath.h"
#include "Common/StringUtil.h"
#include "Modio/ModioRetryPolicy.h"

#include <fstream>
#include <optional>
#include <utility>
#include <vector>

namespace Maptorn
{
// Named rather than anonymous: FShared holds these requests, and the unity build sees both in one unit.
namespace RetryingHttpDetail
{
class FRetryingRequest;
}
using RetryingHttpDetail::FRetryingRequest;

struct FRetryingHttp::FShared
{
    IMaptornHttp& Inner;
    FTickTimers& Timers;
    IMaptornLog* Log;
    // Requests not yet finished; they are let go when the HTTP goes.
    std::vector<std::weak_ptr<FRetryingRequest>> Live;

    void Say(ELogVerbosity Verbosity, const std::string& Message) const
    {
        if (Log)
        {
            Log->Log(LogCategory::LogTemp, Verbosity, Message);
        }
    }
};

namespace RetryingHttpDetail
{
// Keeps what the caller set, so that every attempt is the same request on a new host request.
class FRetryingRequest final : public IHttpRequest, public std::enable_shared_from_this<FRetryingRequest>
{
public:
    explicit FRetryingRequest(std::weak_ptr<FRetryingHttp::FShared> InShared) : Shared(std::move(InShared)) {}

    void SetVerb(const std::string& InVerb) override { Verb = InVerb; }
    void SetURL(const std::string& InUrl) override { Url = InUrl; }
    void SetHeader(const std::string& Name, const std::string& Value) override
    {
        for (auto& Header : Headers)
        {
            if (EqualsIgnoreCase(Header.first, Name))
            {
                Header.second = Value;
                return;
            }
        }
        Headers.emplace_back(Name, Value);
    }
    void SetContent(std::vector<uint8> InContent) override
    {
        Content = std::move(InContent);
        ContentFile.reset();
    }
    void SetContentAsString(const std::string& Text) override { SetContent(std::vector<uint8>(Text.begin(), Text.end())); }
    bool SetContentAsStreamedFile(const std::string& FilePath) override
    {
        if (!std::ifstream(NativePath::FromUtf8(FilePath), std::ios::binary))
        {
            return false;
        }
        ContentFile = FilePath;
        Content.clear();
        return true;
    }
    void SetResponseBodyFile(const std::string& FilePath, bool bAppend) override
    {
        ResponseFile = FilePath;
        bAppendResponse = bAppend;
    }
    void SetResponseBodyDigest(std::shared_ptr<FMd5> InDigest) override { Digest = std::move(InDigest); }
    void SetTimeout(float Seconds) override { Timeout = Seconds; }

    std::string GetVerb() const override { return Verb; }
    std::string GetURL() const override { return Url; }
    std::string GetHeader(const std::string& Name) const override
    {
        for (const auto& Header : Headers)
        {
            if (EqualsIgnoreCase(Header.first, Name))
            {
                return Header.second;
            }
        }
        return {};
    }
    EHttpRequestStatus GetStatus() const override { return Status; }
    FHttpResponsePtr GetResponse() const override { return LastResponse; }
    std::string GetFailureReason() const override { return LastFailureReason; }

    FHttpRequestCompleteDelegate& OnProcessRequestComplete() override { return Complete; }
    FHttpRequestProgressDelegate& OnRequestProgress() override { return Progress; }
    FHttpRequestHeaderReceivedDelegate& OnHeaderReceived() override { return HeaderReceived; }

    bool ProcessRequest() override
    {
        if (Status != EHttpRequestStatus::NotStarted)
        {
            return false;
        }
        Status = EHttpRequestStatus::Processing;
        if (!SendAttempt())
        {
            Status = EHttpRequestStatus::Failed;
            return false;
        }
        return true;
    }

    // The owner is going: nothing more is sent or heard, and the host's request lets go of this one.
    void Detach()
    {
        bCancelled = true;
        Complete = nullptr;
        Progress = nullptr;
        HeaderReceived = nullptr;
        if (FHttpRequestPtr Running = std::move(Inner))
        {
            Running->OnProcessRequestComplete() = nullptr;
            Running->OnRequestProgress() = nullptr;
            Running->OnHeaderReceived() = nullptr;
            Running->CancelRequest();
        }
    }

    void CancelRequest() override
    {
        if (Status != EHttpRequestStatus::Processing || bCancelled)
        {
            return;
        }
        bCancelled = true;
        if (FHttpRequestPtr Running = std::move(Inner))
        {
            Running->CancelRequest();
        }
        else
        {
            // Waiting for the next attempt: the cancel ends it now.
            Finish(nullptr, false);
        }
    }

private:
    bool SendAttempt()
    {
        const std::shared_ptr<FRetryingHttp::FShared> Ports = Shared.lock();
        FHttpRequestPtr Request = Ports ? Ports->Inner.CreateRequest() : nullptr;
        if (!Request)
        {
            return false;
        }
        Request->SetVerb(Verb);
        Request->SetURL(Url);
        for (const auto& [Name, Value] : Headers)
        {
            Request->SetHeader(Name, Value);
        }
        if (ContentFile)
        {
            if (!Request->SetContentAsStreamedFile(*ContentFile))
            {
                return false;
            }
        }
        else if (!Content.empty())
        {
            Request->SetContent(Content);
        }
        if (!ResponseFile.empty())
        {
            Request->SetResponseBodyFile(ResponseFile, bAppendResponse);
        }
        if (Digest)
        {
            Request->SetResponseBodyDigest(Digest);
        }
        if (Timeout > 0.0f)
        {
            Request->SetTimeout(Timeout);
        }
        // The host holds its request until it completes; the request holds this one until then.
        std::shared_ptr<FRetryingRequest> Self = shared_from_this();
        Request->OnRequestProgress() = [Self](FHttpRequestPtr, int64 Sent, int64 Received) {
            if (Self->Progress && !Self->bCancelled)
            {
                Self->Progress(Self, Sent, Received);
            }
        };
        Request->OnHeaderReceived() = [Self](FHttpRequestPtr, const std::string& Name, const std::string& Value) {
            if (Self->HeaderReceived && !Self->bCancelled)
            {
                Self->HeaderReceived(Self, Name, Value);
            }
        };
        Request->OnProcessRequestComplete() = [Self](FHttpRequestPtr Done, FHttpResponsePtr Response, bool bConnected) {
            Self->OnAttemptComplete(Done, std::move(Response), bConnected);
        };
        Inner = Request;
        if (!Request->ProcessRequest())
        {
            Inner.reset();
            return false;
        }
        return true;
    }

    void OnAttemptComplete(const FHttpRequestPtr& Done, FHttpResponsePtr Response, bool bConnected)
    {
        LastFailureReason = Done && !bConnected ? Done->GetFailureReason() : std::string();
        Inner.reset();
        const int32 Code = bConnected && Response ? Response->GetResponseCode() : 0;
        const bool bRead = EqualsIgnoreCase(Verb, "GET") || EqualsIgnoreCase(Verb, "HEAD");
        const bool bRepeatableRead = bRead && (bConnected || ResponseFile.empty());
        const std::shared_ptr<FRetryingHttp::FShared> Ports = Shared.lock();
        const ModioRetry::EVerdict Verdict = bCancelled || !Ports ? ModioRetry::EVerdict::Done
                                                                  : ModioRetry::Judge(Code, bConnected && Response, bRepeatableRead, Attempts);
        if (Verdict == ModioRetry::EVerdict::Done)
        {
            return Finish(std::move(Response), bConnected);
        }
        float Wait = 0.0f;
        if (Verdict == ModioRetry::EVerdict::WaitForRateLimit)
        {
            ++Attempts.RateLimitWaits;
            Wait = ModioRetry::RetryAfterSeconds(Response->GetHeader("retry-after"));
            Ports->Say(ELogVerbosity::Warning, ModioRetry::WaitText(Wait));
        }
        else
        {
            Wait = ModioRetry::BackoffSeconds(Attempts.TransientRetries++);
            const std::string What = Code != 0 ? Printf("HTTP %d", Code) : LastFailureReason.empty() ? std::string("no answer") : LastFailureReason;
            Ports->Say(ELogVerbosity::Log, Printf("mod.io did not answer (%s); trying again in %.1f s", What.c_str(), Wait));
        }
        LastResponse = std::move(Response);
        // Held by the timer only: a request nobody waits for any more is dropped with its owner's timers.
        Ports->Timers.After(Wait, [Self = shared_from_this()] {
            if (!Self->bCancelled && !Self->SendAttempt())
            {
                Self->Finish(nullptr, false);
            }
        });
    }

    void Finish(FHttpResponsePtr Response, bool bConnected)
    {
        LastResponse = std::move(Response);
        Status = bConnected && LastResponse ? EHttpRequestStatus::Succeeded : EHttpRequestStatus::Failed;
        if (Complete)
        {
            Complete(shared_from_this(), LastResponse, bConnected && LastResponse);
        }
    }

    std::weak_ptr<FRetryingHttp::FShared> Shared;
    std::string Verb = "GET";
    std::string Url;
    std::vector<std::pair<std::string, std::string>> Headers;
    std::vector<uint8> Content;
    std::optional<std::string> ContentFile;
    std::string ResponseFile;
    bool bAppendResponse = false;
    std::shared_ptr<FMd5> Digest;
    float Timeout = 0.0f;

    FHttpRequestCompleteDelegate Complete;
    FHttpRequestProgressDelegate Progress;
    FHttpRequestHeaderReceivedDelegate HeaderReceived;

    FHttpRequestPtr Inner;
    FHttpResponsePtr LastResponse;
    std::string LastFailureReason;
    ModioRetry::FAttempts Attempts;
    EHttpRequestStatus Status = EHttpRequestStatus::NotStarted;
    bool bCancelled = false;
};
}

FRetryingHttp::FRetryingHttp(IMaptornHttp& InInner, FTickTimers& InTimers, IMaptornLog* InLog)
    : Shared(std::make_shared<FShared>(FShared{InInner, InTimers, InLog, {}}))
{
}

FRetryingHttp::~FRetryingHttp()
{
    for (const std::weak_ptr<FRetryingRequest>& Entry : Shared->Live)
    {
        if (const std::shared_ptr<FRetryingRequest> Request = Entry.lock())
        {
            Request->Detach();
        }
    }
}

FHttpRequestPtr FRetryingHttp::CreateRequest()
{
    std::erase_if(Shared->Live, [](const std::weak_ptr<FRetryingRequest>& Entry) { return Entry.expired(); });
    auto Request = std::make_shared<FRetryingRequest>(Shared);
    Shared->Live.push_back(Request);
    return Request;
}
}
