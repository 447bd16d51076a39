#pragma once

#include "Platform/CurlHttpHeaders.h"
#include "Platform/CurlTransfer.h"
#include "Platform/HttpPort.h"

#include <atomic>
#include <memory>
#include <string>
#include <vector>

namespace Maptorn
{
class FCurlTransferThread;

// A request as the core sees it: set up and read on the game thread. Starting it hands a
// snapshot to the I/O thread; what comes back is delivered through the Deliver functions, which
// run on the game thread.
class FCurlHttpRequest final : public IHttpRequest, public std::enable_shared_from_this<FCurlHttpRequest>
{
public:
    explicit FCurlHttpRequest(std::weak_ptr<FCurlTransferThread> TransferThread);

    void SetVerb(const std::string& Verb) override;
    void SetURL(const std::string& Url) override;
    void SetHeader(const std::string& Name, const std::string& Value) override;
    void SetContent(std::vector<uint8> Content) override;
    void SetContentAsString(const std::string& Content) override;
    bool SetContentAsStreamedFile(const std::string& FilePath) override;
    bool SetContentAsGrowingFile(const std::string& FilePath, int64 Size, std::shared_ptr<FGrowingFile> Writer) override;
    void SetResponseBodyFile(const std::string& FilePath, bool bAppend) override;
    void SetResponseBodyDigest(std::shared_ptr<FMd5> Digest) override;
    void SetTimeout(float Seconds) override;

    std::string GetVerb() const override { return Setup.Verb; }
    std::string GetURL() const override { return Setup.Url; }
    std::string GetHeader(const std::string& Name) const override;
    EHttpRequestStatus GetStatus() const override { return Status.load(); }
    FHttpResponsePtr GetResponse() const override { return Response; }

    FHttpRequestCompleteDelegate& OnProcessRequestComplete() override { return CompleteDelegate; }
    FHttpRequestProgressDelegate& OnRequestProgress() override { return ProgressDelegate; }
    FHttpRequestHeaderReceivedDelegate& OnHeaderReceived() override { return HeaderReceivedDelegate; }

    bool ProcessRequest() override;
    void CancelRequest() override;
    std::string GetFailureReason() const override { return FailureReason; }

    // Game thread, posted by the transfer.
    void DeliverHeader(const std::string& Name, const std::string& Value);
    void DeliverProgress(int64 BytesSent, int64 BytesReceived);
    void DeliverCompletion(FHttpResponsePtr Response, bool bConnectedSuccessfully, std::string Reason = {});
    // I/O thread: the adapter went away before this request finished.
    void MarkAbandoned();

private:
    std::weak_ptr<FCurlTransferThread> TransferThread;

    // What the transfer is started with; its body moves to the transfer, the rest stays readable.
    FCurlTransferSetup Setup;

    FHttpRequestCompleteDelegate CompleteDelegate;
    FHttpRequestProgressDelegate ProgressDelegate;
    FHttpRequestHeaderReceivedDelegate HeaderReceivedDelegate;

    std::atomic<EHttpRequestStatus> Status = EHttpRequestStatus::NotStarted;
    FHttpResponsePtr Response;
    std::string FailureReason;
    uint64 TransferId = 0;
    bool bStarted = false;
    bool bCancelRequested = false;
    bool bCompleted = false;
};
}
