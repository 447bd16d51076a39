#pragma once

#include "Common/CoreTypes.h"
#include "Common/Md5.h"

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace Maptorn
{
class FGrowingFile;
class IHttpRequest;
class IHttpResponse;
using FHttpRequestPtr = std::shared_ptr<IHttpRequest>;
using FHttpResponsePtr = std::shared_ptr<IHttpResponse>;

enum class EHttpRequestStatus
{
    NotStarted,
    Processing,
    Failed,
    Succeeded,
};

// Stands for the engine's IHttpResponse.
class MAPTORNCORE_API IHttpResponse
{
public:
    virtual ~IHttpResponse() = default;
    virtual int32 GetResponseCode() const = 0;
    // Empty when the body was streamed to a file.
    virtual const std::vector<uint8>& GetContent() const = 0;
    virtual std::string GetContentAsString() const = 0;
    // Header names compare ignoring case; empty when absent.
    virtual std::string GetHeader(const std::string& Name) const = 0;
    virtual std::vector<std::pair<std::string, std::string>> GetAllHeaders() const = 0;
    virtual int64 GetContentLength() const = 0;
};

// Every callback runs on the game thread, inside the host's tick.
using FHttpRequestCompleteDelegate =
    std::function<void(FHttpRequestPtr Request, FHttpResponsePtr Response, bool bConnectedSuccessfully)>;
using FHttpRequestProgressDelegate = std::function<void(FHttpRequestPtr Request, int64 BytesSent, int64 BytesReceived)>;
using FHttpRequestHeaderReceivedDelegate =
    std::function<void(FHttpRequestPtr Request, const std::string& HeaderName, const std::string& HeaderValue)>;

// Stands for the engine's IHttpRequest. A failed transfer completes with bConnectedSuccessfully
// false and no response.
class MAPTORNCORE_API IHttpRequest
{
public:
    virtual ~IHttpRequest() = default;

    virtual void SetVerb(const std::string& Verb) = 0;
    virtual void SetURL(const std::string& Url) = 0;
    virtual void SetHeader(const std::string& Name, const std::string& Value) = 0;
    virtual void SetContent(std::vector<uint8> Content) = 0;
    virtual void SetContentAsString(const std::string& Content) = 0;
    // The body is read from the file while it is sent; false when the file cannot be opened.
    virtual bool SetContentAsStreamedFile(const std::string& FilePath) = 0;
    // The body is read from a file another thread is still writing: Size bytes in all, each read
    // waiting until Writer has written them; a writer that stops short ends the transfer as
    // failed. False when the host cannot stream a growing file: the caller writes it first.
    virtual bool SetContentAsGrowingFile(const std::string& FilePath, int64 Size, std::shared_ptr<FGrowingFile> Writer)
    {
        (void)FilePath;
        (void)Size;
        (void)Writer;
        return false;
    }
    // The response body goes to this file instead of memory, appended or replacing its content;
    // only a 2xx answer's body goes there (an error answer stays in memory).
    virtual void SetResponseBodyFile(const std::string& FilePath, bool bAppend) = 0;
    // Every byte written to the response body file is also fed to Digest, on whatever thread
    // writes it and before the completion is delivered, so a download is checked without reading
    // the file again. A host that cannot leaves Digest as it is; the caller compares its byte
    // count with the file's and reads the file itself when they differ.
    virtual void SetResponseBodyDigest(std::shared_ptr<FMd5> Digest) { (void)Digest; }
    // Seconds without progress before the transfer is given up; 0 keeps the host's default.
    virtual void SetTimeout(float Seconds) = 0;

    virtual std::string GetVerb() const = 0;
    virtual std::string GetURL() const = 0;
    virtual std::string GetHeader(const std::string& Name) const = 0;
    virtual EHttpRequestStatus GetStatus() const = 0;
    virtual FHttpResponsePtr GetResponse() const = 0;

    virtual FHttpRequestCompleteDelegate& OnProcessRequestComplete() = 0;
    virtual FHttpRequestProgressDelegate& OnRequestProgress() = 0;
    virtual FHttpRequestHeaderReceivedDelegate& OnHeaderReceived() = 0;

    // Starts the transfer without blocking; false when it cannot be started.
    virtual bool ProcessRequest() = 0;
    virtual void CancelRequest() = 0;
    // After a failed transfer, what happened in a few words ("could not connect to 127.0.0.1:9");
    // empty when the host cannot tell.
    virtual std::string GetFailureReason() const { return {}; }
};

// Stands for FHttpModule.
class MAPTORNCORE_API IMaptornHttp
{
public:
    virtual ~IMaptornHttp() = default;
    virtual FHttpRequestPtr CreateRequest() = 0;
};
}
