#include "Platform/CurlHttpRequest.h"

#include "Platform/CurlTransferThread.h"

#include <algorithm>
#include <cctype>
#include <cmath>

namespace Maptorn
{
FCurlHttpRequest::FCurlHttpRequest(std::weak_ptr<FCurlTransferThread> InTransferThread)
    : TransferThread(std::move(InTransferThread))
{
}

// A started request keeps what it was started with; later changes are ignored.

void FCurlHttpRequest::SetVerb(const std::string& InVerb)
{
    if (!bStarted)
    {
        Setup.Verb = InVerb;
        std::transform(Setup.Verb.begin(), Setup.Verb.end(), Setup.Verb.begin(),
            [](char C) { return static_cast<char>(std::toupper(static_cast<unsigned char>(C))); });
    }
}

void FCurlHttpRequest::SetURL(const std::string& InUrl)
{
    if (!bStarted)
    {
        Setup.Url = InUrl;
    }
}

void FCurlHttpRequest::SetHeader(const std::string& Name, const std::string& Value)
{
    if (!bStarted && !Name.empty())
    {
        SetHeaderReplacing(Setup.Headers, Name, Value);
    }
}

void FCurlHttpRequest::SetContent(std::vector<uint8> InContent)
{
    if (!bStarted)
    {
        Setup.Content = std::move(InContent);
        Setup.ContentFile.reset();
        Setup.ContentFileSize = 0;
        Setup.GrowingContent.reset();
    }
}

void FCurlHttpRequest::SetContentAsString(const std::string& InContent)
{
    SetContent(std::vector<uint8>(InContent.begin(), InContent.end()));
}

bool FCurlHttpRequest::SetContentAsStreamedFile(const std::string& FilePath)
{
    if (bStarted)
    {
        return false;
    }
    FUniqueFile File(std::fopen(FilePath.c_str(), "rb"));
    if (!File || fseeko(File.get(), 0, SEEK_END) != 0)
    {
        return false;
    }
    const off_t Size = ftello(File.get());
    if (Size < 0 || fseeko(File.get(), 0, SEEK_SET) != 0)
    {
        return false;
    }
    Setup.Content.clear();
    Setup.Content.shrink_to_fit();
    Setup.ContentFile = std::move(File);
    Setup.ContentFileSize = static_cast<int64>(Size);
    Setup.GrowingContent.reset();
    return true;
}

bool FCurlHttpRequest::SetContentAsGrowingFile(const std::string& FilePath, int64 Size, std::shared_ptr<FGrowingFile> Writer)
{
    if (bStarted || !Writer || Size < 0)
    {
        return false;
    }
    FUniqueFile File(std::fopen(FilePath.c_str(), "rb"));
    if (!File)
    {
        return false;
    }
    Setup.Content.clear();
    Setup.Content.shrink_to_fit();
    Setup.ContentFile = std::move(File);
    Setup.ContentFileSize = Size;
    Setup.GrowingContent = std::move(Writer);
    return true;
}

void FCurlHttpRequest::SetResponseBodyFile(const std::string& FilePath, bool bAppend)
{
    if (!bStarted)
    {
        Setup.ResponseBodyFile = FilePath;
        Setup.bAppendResponseBody = bAppend;
    }
}

void FCurlHttpRequest::SetResponseBodyDigest(std::shared_ptr<FMd5> Digest)
{
    if (!bStarted)
    {
        Setup.ResponseBodyDigest = std::move(Digest);
    }
}

void FCurlHttpRequest::SetTimeout(float Seconds)
{
    if (!bStarted)
    {
        Setup.StallTimeoutSeconds = Seconds > 0.0f ? std::max(1L, static_cast<long>(std::ceil(Seconds))) : 0L;
    }
}

std::string FCurlHttpRequest::GetHeader(const std::string& Name) const
{
    return FindHeader(Setup.Headers, Name);
}

bool FCurlHttpRequest::ProcessRequest()
{
    std::shared_ptr<FCurlTransferThread> Thread = TransferThread.lock();
    if (bStarted || !Thread || Setup.Url.empty())
    {
        return false;
    }
    bStarted = true;
    Status = EHttpRequestStatus::Processing;
    FCurlTransferSetup Transfer{Setup.Verb, Setup.Url, Setup.Headers, std::move(Setup.Content), std::move(Setup.ContentFile),
        Setup.ContentFileSize, std::move(Setup.GrowingContent), Setup.ResponseBodyFile, Setup.bAppendResponseBody, Setup.ResponseBodyDigest, Setup.StallTimeoutSeconds};
    TransferId =
        Thread->Start(std::make_unique<FCurlTransfer>(shared_from_this(), std::move(Transfer), Thread->GetDelivery()));
    if (TransferId == 0)
    {
        Status = EHttpRequestStatus::Failed;
        return false;
    }
    return true;
}

void FCurlHttpRequest::CancelRequest()
{
    if (bCompleted || bCancelRequested)
    {
        return;
    }
    bCancelRequested = true;
    std::shared_ptr<FCurlTransferThread> Thread = TransferThread.lock();
    if (!Thread)
    {
        return;
    }
    if (!bStarted)
    {
        // Never sent: it still completes, once, as a failure, and cannot be started afterwards.
        bStarted = true;
        Thread->GetDelivery().Post([Self = shared_from_this()] { Self->DeliverCompletion(nullptr, false); });
        return;
    }
    Thread->Cancel(TransferId);
}

void FCurlHttpRequest::DeliverHeader(const std::string& Name, const std::string& Value)
{
    if (!bCompleted && !bCancelRequested && HeaderReceivedDelegate)
    {
        HeaderReceivedDelegate(shared_from_this(), Name, Value);
    }
}

void FCurlHttpRequest::DeliverProgress(int64 BytesSent, int64 BytesReceived)
{
    if (!bCompleted && !bCancelRequested && ProgressDelegate)
    {
        ProgressDelegate(shared_from_this(), BytesSent, BytesReceived);
    }
}

void FCurlHttpRequest::DeliverCompletion(FHttpResponsePtr InResponse, bool bConnectedSuccessfully, std::string Reason)
{
    if (bCompleted)
    {
        return;
    }
    bCompleted = true;
    // A cancel wins over a transfer that finished before the I/O thread saw it.
    const bool bSucceeded = bConnectedSuccessfully && !bCancelRequested && InResponse != nullptr;
    Response = bSucceeded ? std::move(InResponse) : nullptr;
    Status = bSucceeded ? EHttpRequestStatus::Succeeded : EHttpRequestStatus::Failed;
    FailureReason = bSucceeded ? std::string() : bCancelRequested ? std::string("cancelled") : std::move(Reason);

    // Dropped once run, so a delegate holding its own request does not keep it alive.
    FHttpRequestCompleteDelegate Complete = std::move(CompleteDelegate);
    CompleteDelegate = nullptr;
    ProgressDelegate = nullptr;
    HeaderReceivedDelegate = nullptr;
    if (Complete)
    {
        Complete(shared_from_this(), Response, bSucceeded);
    }
}

void FCurlHttpRequest::MarkAbandoned()
{
    Status = EHttpRequestStatus::Failed;
}
}
