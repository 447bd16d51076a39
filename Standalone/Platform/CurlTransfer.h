#pragma once

#include "Common/CoreTypes.h"
#include "Platform/CurlHttp.h"
#include "Platform/CurlBodyHasher.h"
#include "Platform/CurlHttpHeaders.h"
#include "Transfer/GrowingFile.h"

#include <curl/curl.h>

#include <chrono>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace Maptorn
{
class FCurlDelivery;
class FCurlHttpRequest;

struct FFileCloser
{
    void operator()(std::FILE* File) const { std::fclose(File); }
};
using FUniqueFile = std::unique_ptr<std::FILE, FFileCloser>;

// What a request hands over when it starts; the request keeps no copy of its body.
struct FCurlTransferSetup
{
    std::string Verb = "GET";
    std::string Url;
    FHttpHeaderList Headers;
    std::vector<uint8> Content;
    FUniqueFile ContentFile;
    int64 ContentFileSize = 0;
    // Set when ContentFile is still being written: reads wait for its writer.
    std::shared_ptr<FGrowingFile> GrowingContent;
    std::string ResponseBodyFile;
    bool bAppendResponseBody = false;
    std::shared_ptr<FMd5> ResponseBodyDigest;
    // 0 keeps the adapter's stall timeout.
    long StallTimeoutSeconds = 0;
};

// One request's life on the I/O thread: its easy handle, the body it reads and the body it
// receives, and what it posts back to the game thread. Only the I/O thread touches it once started.
class FCurlTransfer
{
public:
    FCurlTransfer(std::shared_ptr<FCurlHttpRequest> Request, FCurlTransferSetup Setup, FCurlDelivery& Delivery);
    ~FCurlTransfer();
    FCurlTransfer(const FCurlTransfer&) = delete;
    FCurlTransfer& operator=(const FCurlTransfer&) = delete;

    // The easy handle, configured; null when libcurl cannot make one.
    CURL* Prepare(const FCurlHttpOptions& Options);
    CURL* GetEasy() const { return Easy; }
    // The transfer is over (CURLE_OK when the whole response arrived): posts the last progress
    // and the completion.
    void Finish(CURLcode Result);
    // The adapter goes away with this transfer unfinished: nothing more is posted.
    void Abandon();

private:
    static size_t OnReadBody(char* Buffer, size_t Size, size_t Count, void* Self);
    static int OnSeekBody(void* Self, curl_off_t Offset, int Origin);
    static size_t OnWriteBody(char* Data, size_t Size, size_t Count, void* Self);
    static size_t OnHeaderLine(char* Data, size_t Size, size_t Count, void* Self);
    static int OnProgress(void* Self, curl_off_t, curl_off_t, curl_off_t, curl_off_t);

    bool ApplyVerbAndBody();
    bool ApplyHeaders(bool bPostMode);
    size_t ReadBody(char* Buffer, size_t Capacity);
    bool SeekBody(int64 Offset);
    bool WriteBody(const char* Data, size_t Size);
    void ReceiveHeaderLine(std::string_view Line);
    bool OpenResponseBodyFile();
    void PostProgress(bool bFinal);
    long ResponseCode() const;
    std::string DescribeFailure(CURLcode Result) const;
    int64 ContentLength() const;

    std::shared_ptr<FCurlHttpRequest> Request;
    FCurlTransferSetup Setup;
    FCurlDelivery& Delivery;
    CURL* Easy = nullptr;
    curl_slist* HeaderList = nullptr;

    int64 ContentOffset = 0;
    int64 BytesSent = 0;
    int64 BytesReceived = 0;
    int64 PostedSent = -1;
    int64 PostedReceived = -1;
    std::chrono::steady_clock::time_point LastProgressPost;

    FHttpHeaderList ResponseHeaders;
    std::vector<uint8> ResponseContent;
    FUniqueFile ResponseFile;
    std::unique_ptr<FCurlBodyHasher> BodyHasher;
    bool bBodyStarted = false;
    bool bBodyToFile = false;
};
}
