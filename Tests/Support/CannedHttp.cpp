#include "Support/CannedHttp.h"

#include "Common/StringUtil.h"

#include <map>

namespace Maptorn::Testing
{
namespace
{
class FCannedResponse final : public IHttpResponse
{
public:
    FCannedResponse(int32 InStatus, const std::string& Body)
        : Status(InStatus)
        , Content(Body.begin(), Body.end())
    {
    }
    int32 GetResponseCode() const override { return Status; }
    const std::vector<uint8>& GetContent() const override { return Content; }
    std::string GetContentAsString() const override { return std::string(Content.begin(), Content.end()); }
    std::string GetHeader(const std::string& Name) const override
    {
        return ToLower(Name) == "content-range" ? ContentRange : ToLower(Name) == "retry-after" ? RetryAfter : std::string();
    }
    std::vector<std::pair<std::string, std::string>> GetAllHeaders() const override { return {}; }
    int64 GetContentLength() const override { return static_cast<int64>(Content.size()); }

    std::string ContentRange;
    std::string RetryAfter;

private:
    int32 Status;
    std::vector<uint8> Content;
};

class FCannedRequest final : public IHttpRequest, public std::enable_shared_from_this<FCannedRequest>
{
public:
    explicit FCannedRequest(std::vector<FHttpRequestPtr>& InInFlight) : InFlight(InInFlight) {}

    void SetVerb(const std::string& InVerb) override { Verb = InVerb; }
    void SetURL(const std::string& InUrl) override { Url = InUrl; }
    void SetHeader(const std::string& Name, const std::string& Value) override { Headers[ToLower(Name)] = Value; }
    void SetContent(std::vector<uint8> InContent) override { Body.assign(InContent.begin(), InContent.end()); }
    void SetContentAsString(const std::string& Content) override { Body = Content; }
    bool SetContentAsStreamedFile(const std::string&) override { return true; }
    void SetResponseBodyFile(const std::string&, bool) override {}
    void SetTimeout(float) override {}
    std::string GetVerb() const override { return Verb; }
    std::string GetURL() const override { return Url; }
    std::string GetHeader(const std::string& Name) const override
    {
        const auto Found = Headers.find(ToLower(Name));
        return Found == Headers.end() ? std::string() : Found->second;
    }
    EHttpRequestStatus GetStatus() const override { return Status; }
    FHttpResponsePtr GetResponse() const override { return Response; }
    FHttpRequestCompleteDelegate& OnProcessRequestComplete() override { return Complete; }
    FHttpRequestProgressDelegate& OnRequestProgress() override { return Progress; }
    FHttpRequestHeaderReceivedDelegate& OnHeaderReceived() override { return HeaderReceived; }
    bool ProcessRequest() override
    {
        Status = EHttpRequestStatus::Processing;
        InFlight.push_back(shared_from_this());
        return true;
    }
    void CancelRequest() override {}

    void Finish(const FCannedHttp::FAnswer* Answer)
    {
        if (Answer && Answer->bConnected)
        {
            auto Canned = std::make_shared<FCannedResponse>(Answer->Status, Answer->Body);
            Canned->ContentRange = Answer->ContentRange;
            Canned->RetryAfter = Answer->RetryAfter;
            Response = Canned;
        }
        else
        {
            Response = nullptr;
        }
        Status = Response ? EHttpRequestStatus::Succeeded : EHttpRequestStatus::Failed;
        if (Complete)
        {
            Complete(shared_from_this(), Response, Response != nullptr);
        }
    }

    std::string Body;

private:
    std::vector<FHttpRequestPtr>& InFlight;
    std::string Verb, Url;
    std::map<std::string, std::string> Headers;
    EHttpRequestStatus Status = EHttpRequestStatus::NotStarted;
    FHttpResponsePtr Response;
    FHttpRequestCompleteDelegate Complete;
    FHttpRequestProgressDelegate Progress;
    FHttpRequestHeaderReceivedDelegate HeaderReceived;
};
}

FHttpRequestPtr FCannedHttp::CreateRequest()
{
    auto Request = std::make_shared<FCannedRequest>(InFlight);
    Sent.push_back(Request);
    return Request;
}

void FCannedHttp::Pump()
{
    std::vector<FHttpRequestPtr> Batch;
    Batch.swap(InFlight);
    for (const FHttpRequestPtr& Request : Batch)
    {
        const FAnswer* Answer = Answers.empty() ? nullptr : &Answers.front();
        std::static_pointer_cast<FCannedRequest>(Request)->Finish(Answer);
        if (!Answers.empty())
        {
            Answers.pop_front();
        }
    }
}
}
