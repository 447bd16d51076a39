#include "Platform/CurlTransfer.h"

#include "Common/FileHelper.h"
#include "Common/StringUtil.h"
#include "Platform/CurlDelivery.h"
#include "Platform/CurlHttpRequest.h"
#include "Platform/CurlHttpResponse.h"

#include <algorithm>
#include <cstring>

#include <sys/stat.h>
#include <unistd.h>

namespace Maptorn
{
namespace
{
// At most one progress event per request in this interval, plus the last one.
constexpr std::chrono::milliseconds ProgressInterval(50);
constexpr long MaxRedirects = 5;

bool IsSuccessCode(long Code)
{
    return Code >= 200 && Code < 300;
}
}

FCurlTransfer::FCurlTransfer(
    std::shared_ptr<FCurlHttpRequest> InRequest, FCurlTransferSetup InSetup, FCurlDelivery& InDelivery)
    : Request(std::move(InRequest)), Setup(std::move(InSetup)), Delivery(InDelivery)
{
}

FCurlTransfer::~FCurlTransfer()
{
    if (Easy != nullptr)
    {
        curl_easy_cleanup(Easy);
    }
    curl_slist_free_all(HeaderList);
}

CURL* FCurlTransfer::Prepare(const FCurlHttpOptions& Options)
{
    Easy = curl_easy_init();
    if (Easy == nullptr)
    {
        return nullptr;
    }
    const long StallSeconds = Setup.StallTimeoutSeconds > 0 ? Setup.StallTimeoutSeconds : Options.StallTimeoutSeconds;
    curl_easy_setopt(Easy, CURLOPT_PRIVATE, this);
    curl_easy_setopt(Easy, CURLOPT_URL, Setup.Url.c_str());
    curl_easy_setopt(Easy, CURLOPT_NOSIGNAL, 1L);
    // Archives run to gigabytes: larger buffers mean fewer callbacks and system calls per byte
    // (libcurl's defaults are 16 and 64 KiB).
    curl_easy_setopt(Easy, CURLOPT_BUFFERSIZE, 512L * 1024L);
    curl_easy_setopt(Easy, CURLOPT_UPLOAD_BUFFERSIZE, 512L * 1024L);
    curl_easy_setopt(Easy, CURLOPT_PROTOCOLS_STR, "http,https");
    // A redirect may not take an https request to plain http, where the file or token could be read or changed.
    const bool bSecure = Setup.Url.size() >= 8 && EqualsIgnoreCase(std::string_view(Setup.Url).substr(0, 8), "https://");
    curl_easy_setopt(Easy, CURLOPT_REDIR_PROTOCOLS_STR, bSecure ? "https" : "http,https");
    curl_easy_setopt(Easy, CURLOPT_SSL_VERIFYPEER, 1L);
    curl_easy_setopt(Easy, CURLOPT_SSL_VERIFYHOST, 2L);
    if (!Options.CaBundle.empty())
    {
        curl_easy_setopt(Easy, CURLOPT_CAINFO, Options.CaBundle.c_str());
    }
    curl_easy_setopt(Easy, CURLOPT_CONNECTTIMEOUT, Options.ConnectTimeoutSeconds);
    curl_easy_setopt(Easy, CURLOPT_LOW_SPEED_LIMIT, 1L);
    curl_easy_setopt(Easy, CURLOPT_LOW_SPEED_TIME, StallSeconds);
    curl_easy_setopt(Easy, CURLOPT_HEADERFUNCTION, &FCurlTransfer::OnHeaderLine);
    curl_easy_setopt(Easy, CURLOPT_HEADERDATA, this);
    curl_easy_setopt(Easy, CURLOPT_WRITEFUNCTION, &FCurlTransfer::OnWriteBody);
    curl_easy_setopt(Easy, CURLOPT_WRITEDATA, this);
    curl_easy_setopt(Easy, CURLOPT_NOPROGRESS, 0L);
    curl_easy_setopt(Easy, CURLOPT_XFERINFOFUNCTION, &FCurlTransfer::OnProgress);
    curl_easy_setopt(Easy, CURLOPT_XFERINFODATA, this);
    return ApplyVerbAndBody() ? Easy : nullptr;
}

bool FCurlTransfer::ApplyVerbAndBody()
{
    const std::string& Verb = Setup.Verb;
    const bool bHasContent = Setup.ContentFile != nullptr || !Setup.Content.empty();
    if (Verb == "HEAD")
    {
        curl_easy_setopt(Easy, CURLOPT_NOBODY, 1L);
        return ApplyHeaders(false);
    }
    if (Verb == "GET" && !bHasContent)
    {
        // Download links answer with a redirect to where the file really is.
        curl_easy_setopt(Easy, CURLOPT_HTTPGET, 1L);
        curl_easy_setopt(Easy, CURLOPT_FOLLOWLOCATION, 1L);
        curl_easy_setopt(Easy, CURLOPT_MAXREDIRS, MaxRedirects);
        return ApplyHeaders(false);
    }
    curl_easy_setopt(Easy, CURLOPT_CUSTOMREQUEST, Verb.c_str());
    const bool bUploadMode = Verb == "PUT";
    const bool bPostMode = !bUploadMode && (bHasContent || Verb == "POST" || Verb == "PATCH");
    if (bUploadMode || bPostMode)
    {
        // Both directions read through curl's own buffer, so a streamed file is never held whole.
        curl_easy_setopt(Easy, CURLOPT_READFUNCTION, &FCurlTransfer::OnReadBody);
        curl_easy_setopt(Easy, CURLOPT_READDATA, this);
        curl_easy_setopt(Easy, CURLOPT_SEEKFUNCTION, &FCurlTransfer::OnSeekBody);
        curl_easy_setopt(Easy, CURLOPT_SEEKDATA, this);
    }
    if (bUploadMode)
    {
        curl_easy_setopt(Easy, CURLOPT_UPLOAD, 1L);
        curl_easy_setopt(Easy, CURLOPT_INFILESIZE_LARGE, static_cast<curl_off_t>(ContentLength()));
    }
    else if (bPostMode)
    {
        curl_easy_setopt(Easy, CURLOPT_POST, 1L);
        curl_easy_setopt(Easy, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(ContentLength()));
    }
    else
    {
        curl_easy_setopt(Easy, CURLOPT_HTTPGET, 1L);
    }
    return ApplyHeaders(bPostMode);
}

bool FCurlTransfer::ApplyHeaders(bool bPostMode)
{
    const auto Append = [this](const std::string& Line) {
        curl_slist* Extended = curl_slist_append(HeaderList, Line.c_str());
        if (Extended != nullptr)
        {
            HeaderList = Extended;
        }
        return Extended != nullptr;
    };
    for (const auto& [Name, Value] : Setup.Headers)
    {
        if (!EqualsIgnoreCase(Name, "Expect") && !Append(FormatRequestHeaderLine(Name, Value)))
        {
            return false;
        }
    }
    // A 100-continue round trip only delays uploads; a POST sends no made-up form content type.
    if (!Append("Expect:") ||
        (bPostMode && FindHeader(Setup.Headers, "Content-Type").empty() && !Append("Content-Type:")))
    {
        return false;
    }
    curl_easy_setopt(Easy, CURLOPT_HTTPHEADER, HeaderList);
    return true;
}

int64 FCurlTransfer::ContentLength() const
{
    return Setup.ContentFile ? Setup.ContentFileSize : static_cast<int64>(Setup.Content.size());
}

size_t FCurlTransfer::OnReadBody(char* Buffer, size_t Size, size_t Count, void* Self)
{
    return static_cast<FCurlTransfer*>(Self)->ReadBody(Buffer, Size * Count);
}

int FCurlTransfer::OnSeekBody(void* Self, curl_off_t Offset, int Origin)
{
    if (Origin != SEEK_SET)
    {
        return CURL_SEEKFUNC_CANTSEEK;
    }
    return static_cast<FCurlTransfer*>(Self)->SeekBody(Offset) ? CURL_SEEKFUNC_OK : CURL_SEEKFUNC_FAIL;
}

size_t FCurlTransfer::OnWriteBody(char* Data, size_t Size, size_t Count, void* Self)
{
    // Anything short of the full count makes curl end the transfer with a write error.
    return static_cast<FCurlTransfer*>(Self)->WriteBody(Data, Size * Count) ? Size * Count : 0;
}

size_t FCurlTransfer::OnHeaderLine(char* Data, size_t Size, size_t Count, void* Self)
{
    static_cast<FCurlTransfer*>(Self)->ReceiveHeaderLine(std::string_view(Data, Size * Count));
    return Size * Count;
}

int FCurlTransfer::OnProgress(void* Self, curl_off_t, curl_off_t, curl_off_t, curl_off_t)
{
    static_cast<FCurlTransfer*>(Self)->PostProgress(false);
    return 0;
}

size_t FCurlTransfer::ReadBody(char* Buffer, size_t Capacity)
{
    const int64 Remaining = ContentLength() - ContentOffset;
    const size_t Wanted = static_cast<size_t>(std::min<int64>(Remaining, static_cast<int64>(Capacity)));
    if (Wanted == 0)
    {
        return 0;
    }
    size_t Read = Wanted;
    if (Setup.GrowingContent)
    {
        // Waits on this thread: the writer copies into the page cache far faster than a network
        // takes the bytes, so a wait is as short as one piece of its copy.
        if (!Setup.GrowingContent->WaitUntil(ContentOffset + 1))
        {
            return CURL_READFUNC_ABORT;
        }
        const size_t Available = static_cast<size_t>(std::min<int64>(Setup.GrowingContent->Written() - ContentOffset, static_cast<int64>(Wanted)));
        const ssize_t Got = ::pread(fileno(Setup.ContentFile.get()), Buffer, Available, static_cast<off_t>(ContentOffset));
        if (Got <= 0)
        {
            return CURL_READFUNC_ABORT;
        }
        Read = static_cast<size_t>(Got);
    }
    else if (Setup.ContentFile)
    {
        Read = std::fread(Buffer, 1, Wanted, Setup.ContentFile.get());
        if (Read == 0)
        {
            // The file ended before the length already announced: the body cannot be completed.
            return CURL_READFUNC_ABORT;
        }
    }
    else
    {
        std::memcpy(Buffer, Setup.Content.data() + ContentOffset, Wanted);
    }
    ContentOffset += static_cast<int64>(Read);
    BytesSent = ContentOffset;
    return Read;
}

bool FCurlTransfer::SeekBody(int64 Offset)
{
    // curl rewinds when it resends the request, for example on a kept-alive connection that closed.
    if (Offset < 0 || Offset > ContentLength())
    {
        return false;
    }
    if (Setup.ContentFile && fseeko(Setup.ContentFile.get(), static_cast<off_t>(Offset), SEEK_SET) != 0)
    {
        return false;
    }
    ContentOffset = Offset;
    BytesSent = Offset;
    return true;
}

bool FCurlTransfer::WriteBody(const char* Data, size_t Size)
{
    if (!bBodyStarted)
    {
        bBodyStarted = true;
        // An error answer stays in memory for the caller to read, so a partial download keeps its bytes.
        if (!Setup.ResponseBodyFile.empty() && IsSuccessCode(ResponseCode()))
        {
            if (!OpenResponseBodyFile())
            {
                return false;
            }
            bBodyToFile = true;
        }
    }
    if (bBodyToFile)
    {
        if (std::fwrite(Data, 1, Size, ResponseFile.get()) != Size)
        {
            return false;
        }
        if (BodyHasher)
        {
            // The hasher reads the file, so the bytes must be in it before it hears of them.
            if (std::fflush(ResponseFile.get()) != 0)
            {
                return false;
            }
            BodyHasher->Written(static_cast<int64>(Size));
        }
    }
    else
    {
        ResponseContent.insert(ResponseContent.end(), Data, Data + Size);
    }
    BytesReceived += static_cast<int64>(Size);
    return true;
}

bool FCurlTransfer::OpenResponseBodyFile()
{
    // An empty file is appended to rather than truncated: ext4 takes the truncation of a file it
    // holds for a rewrite in place and writes the file back the moment it closes, which costs a
    // large download a synchronous flush. (The downloader makes the file before asking.)
    const bool bAppend = Setup.bAppendResponseBody || FileSystem::FileSize(Setup.ResponseBodyFile) == 0;
    ResponseFile.reset(std::fopen(Setup.ResponseBodyFile.c_str(), bAppend ? "ab" : "wb"));
    if (ResponseFile && Setup.ResponseBodyDigest)
    {
        struct stat Info;
        const int64 StartOffset = ::fstat(fileno(ResponseFile.get()), &Info) == 0 ? static_cast<int64>(Info.st_size) : 0;
        BodyHasher = std::make_unique<FCurlBodyHasher>(Setup.ResponseBodyFile, StartOffset, Setup.ResponseBodyDigest);
    }
    return ResponseFile != nullptr;
}

void FCurlTransfer::ReceiveHeaderLine(std::string_view Line)
{
    if (StartsWithIgnoreCase(Line, "HTTP/"))
    {
        // A new response begins (after a redirect or an interim answer): only the last one counts.
        ResponseHeaders.clear();
        return;
    }
    auto Header = ParseResponseHeaderLine(Line);
    if (!Header)
    {
        return;
    }
    ResponseHeaders.push_back(*Header);
    Delivery.Post(
        [Request = Request, Header = std::move(*Header)] { Request->DeliverHeader(Header.first, Header.second); });
}

void FCurlTransfer::PostProgress(bool bFinal)
{
    const auto Now = std::chrono::steady_clock::now();
    if (!bFinal && Now - LastProgressPost < ProgressInterval)
    {
        return;
    }
    // A rewound upload resends bytes already reported; the caller sees a count that only grows.
    const int64 Sent = std::max(PostedSent, BytesSent);
    const int64 Received = std::max(PostedReceived, BytesReceived);
    if (!bFinal && Sent == PostedSent && Received == PostedReceived)
    {
        return;
    }
    PostedSent = Sent;
    PostedReceived = Received;
    LastProgressPost = Now;
    Delivery.Post([Request = Request, Sent, Received] { Request->DeliverProgress(Sent, Received); });
}

namespace
{
// 1234567 → "1,234,567".
std::string WithThousands(curl_off_t Value)
{
    std::string Digits = std::to_string(Value);
    for (int Index = static_cast<int>(Digits.size()) - 3; Index > 0 && Digits[Index - 1] != '-'; Index -= 3)
    {
        Digits.insert(static_cast<std::size_t>(Index), ",");
    }
    return Digits;
}

std::string HostAndPort(const std::string& Url)
{
    std::string Result = Url;
    if (CURLU* Parsed = curl_url())
    {
        char* Host = nullptr;
        char* Port = nullptr;
        if (curl_url_set(Parsed, CURLUPART_URL, Url.c_str(), 0) == CURLUE_OK && curl_url_get(Parsed, CURLUPART_HOST, &Host, 0) == CURLUE_OK &&
            curl_url_get(Parsed, CURLUPART_PORT, &Port, CURLU_DEFAULT_PORT) == CURLUE_OK)
        {
            Result = std::string(Host) + ":" + Port;
        }
        curl_free(Host);
        curl_free(Port);
        curl_url_cleanup(Parsed);
    }
    return Result;
}
}

// Says what happened in the words a modder reads, not curl's code.
std::string FCurlTransfer::DescribeFailure(CURLcode Result) const
{
    if (!Easy)
    {
        return curl_easy_strerror(Result);
    }
    curl_off_t Expected = -1;
    curl_off_t Received = 0;
    curl_easy_getinfo(Easy, CURLINFO_CONTENT_LENGTH_DOWNLOAD_T, &Expected);
    curl_easy_getinfo(Easy, CURLINFO_SIZE_DOWNLOAD_T, &Received);
    switch (Result)
    {
    case CURLE_COULDNT_CONNECT:
    case CURLE_COULDNT_RESOLVE_HOST:
        return "could not connect to " + HostAndPort(Setup.Url);
    case CURLE_PARTIAL_FILE:
    case CURLE_RECV_ERROR:
    case CURLE_GOT_NOTHING:
        if (Expected > 0)
        {
            return "the server closed the connection after " + WithThousands(Received) + " of " + WithThousands(Expected) + " bytes";
        }
        return "the server closed the connection after " + WithThousands(Received) + " bytes";
    case CURLE_OPERATION_TIMEDOUT:
        return "the server stopped answering (timed out after " + WithThousands(Received) + " bytes)";
    case CURLE_ABORTED_BY_CALLBACK:
        return "cancelled";
    default:
        return curl_easy_strerror(Result);
    }
}

long FCurlTransfer::ResponseCode() const
{
    long Code = 0;
    curl_easy_getinfo(Easy, CURLINFO_RESPONSE_CODE, &Code);
    return Code;
}

void FCurlTransfer::Finish(CURLcode Result)
{
    bool bConnectedSuccessfully = Result == CURLE_OK && Easy != nullptr;
    const long Code = bConnectedSuccessfully ? ResponseCode() : 0;
    if (bConnectedSuccessfully && !bBodyStarted && !Setup.ResponseBodyFile.empty() && IsSuccessCode(Code))
    {
        // An empty body still replaces (or leaves as it was, when appending) the file's content.
        bConnectedSuccessfully = OpenResponseBodyFile();
    }
    if (ResponseFile)
    {
        const bool bClosed = std::fclose(ResponseFile.release()) == 0;
        bConnectedSuccessfully = bConnectedSuccessfully && bClosed;
    }
    if (BodyHasher)
    {
        // Every byte written is in the digest before the caller hears of the end.
        const bool bHashed = BodyHasher->Finish();
        bConnectedSuccessfully = bConnectedSuccessfully && bHashed;
        BodyHasher.reset();
    }
    Setup.ContentFile.reset();
    PostProgress(true);

    FHttpResponsePtr Response;
    if (bConnectedSuccessfully)
    {
        Response = std::make_shared<FCurlHttpResponse>(
            static_cast<int32>(Code), std::move(ResponseHeaders), std::move(ResponseContent), BytesReceived);
    }
    ResponseContent = {};
    std::string Reason;
    if (!bConnectedSuccessfully)
    {
        Reason = Result != CURLE_OK ? DescribeFailure(Result) : "the response could not be written to " + Setup.ResponseBodyFile;
    }
    Delivery.Post([Request = Request, Response = std::move(Response), bConnectedSuccessfully, Reason = std::move(Reason)]() mutable {
        Request->DeliverCompletion(Response, bConnectedSuccessfully, std::move(Reason));
    });
}

void FCurlTransfer::Abandon()
{
    Request->MarkAbandoned();
}
}
