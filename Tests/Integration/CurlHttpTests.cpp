#include "Platform/CurlHttp.h"
#include "Platform/StandaloneTasks.h"
#include "Support/TempDir.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <tuple>
#include <utility>
#include <vector>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

using namespace Maptorn;
namespace fs = std::filesystem;

namespace
{
using FHeaders = std::vector<std::pair<std::string, std::string>>;

std::string LowerCase(std::string Text)
{
    std::transform(
        Text.begin(), Text.end(), Text.begin(), [](unsigned char C) { return static_cast<char>(std::tolower(C)); });
    return Text;
}

struct FServerRequest
{
    std::string Method;
    std::string Path;
    FHeaders Headers;
    std::string Body;

    // Every value of the header, in order (names ignoring case).
    std::vector<std::string> All(const std::string& Name) const
    {
        std::vector<std::string> Values;
        for (const auto& [Key, Value] : Headers)
        {
            if (LowerCase(Key) == LowerCase(Name))
            {
                Values.push_back(Value);
            }
        }
        return Values;
    }
    std::string Header(const std::string& Name) const
    {
        const std::vector<std::string> Values = All(Name);
        return Values.empty() ? std::string() : Values.back();
    }
};

// One accepted connection; the handler writes the raw response bytes, so it can also misbehave.
class FConnection
{
public:
    explicit FConnection(int InSocket) : Socket(InSocket) {}
    bool Send(const std::string& Bytes)
    {
        std::size_t Done = 0;
        while (Done < Bytes.size())
        {
            const ssize_t Sent = ::send(Socket, Bytes.data() + Done, Bytes.size() - Done, MSG_NOSIGNAL);
            if (Sent <= 0)
            {
                return false;
            }
            Done += static_cast<std::size_t>(Sent);
        }
        return true;
    }
    bool SendHead(int Code, const FHeaders& Headers)
    {
        std::string Head = "HTTP/1.1 " + std::to_string(Code) + " Test\r\n";
        for (const auto& [Name, Value] : Headers)
        {
            Head += Name + ": " + Value + "\r\n";
        }
        return Send(Head + "Connection: close\r\n\r\n");
    }
    bool Respond(int Code, FHeaders Headers, const std::string& Body)
    {
        Headers.emplace_back("Content-Length", std::to_string(Body.size()));
        return SendHead(Code, Headers) && Send(Body);
    }

private:
    int Socket;
};

using FHandler = std::function<void(const FServerRequest&, FConnection&)>;

// A plain HTTP/1.1 server on a free loopback port, one thread per connection, every response
// closing its connection. It records each request it receives.
class FLoopbackServer
{
public:
    FLoopbackServer()
    {
        Listener = ::socket(AF_INET, SOCK_STREAM, 0);
        const int Yes = 1;
        ::setsockopt(Listener, SOL_SOCKET, SO_REUSEADDR, &Yes, sizeof(Yes));
        sockaddr_in Address{};
        Address.sin_family = AF_INET;
        Address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t Length = sizeof(Address);
        if (::bind(Listener, reinterpret_cast<sockaddr*>(&Address), Length) != 0 || ::listen(Listener, 64) != 0 ||
            ::getsockname(Listener, reinterpret_cast<sockaddr*>(&Address), &Length) != 0)
        {
            ADD_FAILURE() << "the loopback server could not listen";
        }
        Port = ntohs(Address.sin_port);
        Acceptor = std::thread([this] { AcceptLoop(); });
    }

    ~FLoopbackServer()
    {
        {
            std::lock_guard Lock(Mutex);
            bStopping = true;
        }
        Stopping.notify_all();
        ::shutdown(Listener, SHUT_RDWR);
        Acceptor.join();
        ::close(Listener);
        std::vector<std::thread> Threads;
        {
            std::lock_guard Lock(Mutex);
            Threads.swap(ConnectionThreads);
        }
        for (std::thread& Thread : Threads)
        {
            Thread.join();
        }
    }

    std::string Url(const std::string& Path) const { return "http://127.0.0.1:" + std::to_string(Port) + Path; }

    void Handle(const std::string& Path, FHandler Handler)
    {
        std::lock_guard Lock(Mutex);
        Handlers[Path] = std::move(Handler);
    }

    // Holds a handler (and its connection) open until the server goes away.
    void WaitUntilStopping()
    {
        std::unique_lock Lock(Mutex);
        Stopping.wait(Lock, [this] { return bStopping; });
    }

    std::vector<FServerRequest> Received() const
    {
        std::lock_guard Lock(Mutex);
        return Requests;
    }
    FServerRequest LastReceived(const std::string& Path) const
    {
        std::lock_guard Lock(Mutex);
        const auto Found = std::find_if(
            Requests.rbegin(), Requests.rend(), [&Path](const auto& Request) { return Request.Path == Path; });
        return Found == Requests.rend() ? FServerRequest{} : *Found;
    }

private:
    void AcceptLoop()
    {
        for (;;)
        {
            const int Socket = ::accept(Listener, nullptr, nullptr);
            std::lock_guard Lock(Mutex);
            if (Socket < 0 || bStopping)
            {
                if (Socket >= 0)
                {
                    ::close(Socket);
                }
                return;
            }
            ConnectionThreads.emplace_back([this, Socket] {
                Serve(Socket);
                ::close(Socket);
            });
        }
    }

    void Serve(int Socket)
    {
        std::string Buffer;
        char Chunk[65536];
        std::size_t HeadEnd = std::string::npos;
        while ((HeadEnd = Buffer.find("\r\n\r\n")) == std::string::npos)
        {
            const ssize_t Read = ::recv(Socket, Chunk, sizeof(Chunk), 0);
            if (Read <= 0)
            {
                return;
            }
            Buffer.append(Chunk, static_cast<std::size_t>(Read));
        }
        FServerRequest Request = ParseHead(Buffer.substr(0, HeadEnd));
        Request.Body = Buffer.substr(HeadEnd + 4);
        const std::string LengthText = Request.Header("Content-Length");
        const std::size_t Length = LengthText.empty() ? 0 : std::stoul(LengthText);
        while (Request.Body.size() < Length)
        {
            const ssize_t Read = ::recv(Socket, Chunk, sizeof(Chunk), 0);
            if (Read <= 0)
            {
                return;
            }
            Request.Body.append(Chunk, static_cast<std::size_t>(Read));
        }
        FHandler Handler;
        {
            std::lock_guard Lock(Mutex);
            Requests.push_back(Request);
            const auto Found = Handlers.find(Request.Path);
            Handler = Found == Handlers.end() ? FHandler() : Found->second;
        }
        FConnection Connection(Socket);
        if (!Request.Header("Transfer-Encoding").empty() || !Handler)
        {
            Connection.Respond(400, {}, "unexpected request");
            return;
        }
        Handler(Request, Connection);
    }

    static FServerRequest ParseHead(const std::string& Head)
    {
        FServerRequest Request;
        std::size_t LineStart = 0;
        bool bFirst = true;
        while (LineStart <= Head.size())
        {
            std::size_t LineEnd = Head.find("\r\n", LineStart);
            LineEnd = LineEnd == std::string::npos ? Head.size() : LineEnd;
            const std::string Line = Head.substr(LineStart, LineEnd - LineStart);
            LineStart = LineEnd + 2;
            if (bFirst)
            {
                bFirst = false;
                const std::size_t Space = Line.find(' ');
                Request.Method = Line.substr(0, Space);
                Request.Path = Line.substr(Space + 1, Line.find(' ', Space + 1) - Space - 1);
                continue;
            }
            const std::size_t Colon = Line.find(':');
            if (Colon != std::string::npos)
            {
                const std::size_t ValueStart = Line.find_first_not_of(' ', Colon + 1);
                Request.Headers.emplace_back(
                    Line.substr(0, Colon), ValueStart == std::string::npos ? "" : Line.substr(ValueStart));
            }
        }
        return Request;
    }

    int Listener = -1;
    int Port = 0;
    mutable std::mutex Mutex;
    std::condition_variable Stopping;
    bool bStopping = false;
    std::map<std::string, FHandler> Handlers;
    std::vector<FServerRequest> Requests;
    std::vector<std::thread> ConnectionThreads;
    std::thread Acceptor;
};

// Bytes with no period that lines up with a buffer size, so a lost or repeated chunk shows.
std::string MakeBytes(std::size_t Size, unsigned Seed)
{
    std::string Bytes(Size, '\0');
    unsigned State = Seed * 2654435761u + 1;
    for (char& Byte : Bytes)
    {
        State = State * 1664525u + 1013904223u;
        Byte = static_cast<char>(State >> 24);
    }
    return Bytes;
}

std::string ReadFile(const fs::path& Path)
{
    std::ifstream File(Path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(File), std::istreambuf_iterator<char>());
}

void WriteFile(const fs::path& Path, const std::string& Bytes)
{
    std::ofstream(Path, std::ios::binary) << Bytes;
}

std::string AsString(const std::vector<uint8>& Bytes)
{
    return std::string(Bytes.begin(), Bytes.end());
}

// A port on which nothing listens: bound for a moment, then released without listen.
int ClosedPort()
{
    const int Socket = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in Address{};
    Address.sin_family = AF_INET;
    Address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t Length = sizeof(Address);
    ::bind(Socket, reinterpret_cast<sockaddr*>(&Address), Length);
    ::getsockname(Socket, reinterpret_cast<sockaddr*>(&Address), &Length);
    ::close(Socket);
    return ntohs(Address.sin_port);
}

// Everything the callbacks of one request saw, in the order they ran.
struct FOutcome
{
    int Completions = 0;
    bool bConnectedSuccessfully = false;
    FHttpResponsePtr Response;
    FHeaders HeadersSeen;
    std::vector<std::pair<int64, int64>> Progress;
    std::vector<std::thread::id> CallbackThreads;
    bool bCallbackAfterCompletion = false;
};

constexpr int MaxPumps = 60000;
const std::string BlobPath = "/blob";
}

// A real loopback server, the real task loop and the real adapter; the test thread is the game thread.
class CurlHttp : public ::testing::Test
{
protected:
    CurlHttp()
    {
        Server.Handle("/hello", [](const FServerRequest&, FConnection& Connection) {
            Connection.Respond(200,
                {{"Content-Type", "application/octet-stream"}, {"X-Twice", "first"}, {"x-twice", "second"},
                    {"X-Padded", "   padded value   "}},
                HelloBody());
        });
        Server.Handle("/status/404",
            [](const FServerRequest&, FConnection& Connection) { Connection.Respond(404, {}, "no such mod"); });
        Server.Handle("/status/500",
            [](const FServerRequest&, FConnection& Connection) { Connection.Respond(500, {}, "broken"); });
        Server.Handle("/echo", [](const FServerRequest& Request, FConnection& Connection) {
            Connection.Respond(200, {{"X-Echo", Request.Header("X-Echo")}, {"X-Method", Request.Method}}, Request.Body);
        });
        Server.Handle("/upload", [this](const FServerRequest& Request, FConnection& Connection) {
            Connection.Respond(
                200, {{"X-Body-Matches", Request.Body == Blob ? "yes" : "no"}}, std::to_string(Request.Body.size()));
        });
        Server.Handle(BlobPath,
            [this](const FServerRequest& Request, FConnection& Connection) { ServeBlob(Request, Connection); });
        Server.Handle("/redirect", [](const FServerRequest&, FConnection& Connection) {
            Connection.Respond(302, {{"Location", "/hello"}}, "moved");
        });
        Server.Handle("/truncated", [](const FServerRequest&, FConnection& Connection) {
            Connection.SendHead(200, {{"Content-Length", "1000"}});
            Connection.Send(std::string(400, 'x'));
        });
        Server.Handle("/stall", [this](const FServerRequest&, FConnection& Connection) {
            Connection.SendHead(200, {{"Content-Length", "1000"}, {"X-Stalling", "yes"}});
            Connection.Send(std::string(10, 'x'));
            Server.WaitUntilStopping();
        });
        Server.Handle("/silent", [this](const FServerRequest&, FConnection&) { Server.WaitUntilStopping(); });
    }

    static std::string HelloBody()
    {
        std::string Body;
        for (int Byte = 0; Byte < 256; ++Byte)
        {
            Body.push_back(static_cast<char>(Byte));
        }
        return Body + std::string("\r\n\0end", 6);
    }

    // "Range: bytes=First-" or "bytes=First-Last" gets a 206 with its Content-Range.
    void ServeBlob(const FServerRequest& Request, FConnection& Connection)
    {
        const std::string Range = Request.Header("Range");
        if (Range.rfind("bytes=", 0) != 0)
        {
            Connection.Respond(200, {}, Blob);
            return;
        }
        const std::size_t Dash = Range.find('-');
        const std::size_t First = std::stoul(Range.substr(6, Dash - 6));
        const std::size_t Last = Dash + 1 < Range.size() ? std::stoul(Range.substr(Dash + 1)) : Blob.size() - 1;
        const std::string ContentRange =
            "bytes " + std::to_string(First) + "-" + std::to_string(Last) + "/" + std::to_string(Blob.size());
        Connection.Respond(206, {{"Content-Range", ContentRange}}, Blob.substr(First, Last - First + 1));
    }

    FHttpRequestPtr NewRequest(const std::string& Verb, const std::string& Path)
    {
        FHttpRequestPtr Request = Http->CreateRequest();
        Request->SetVerb(Verb);
        Request->SetURL(Path.rfind("http", 0) == 0 ? Path : Server.Url(Path));
        return Request;
    }

    // Binds every callback to a record; the record, not the request, is captured.
    std::shared_ptr<FOutcome> Watch(const FHttpRequestPtr& Request)
    {
        auto Outcome = std::make_shared<FOutcome>();
        Request->OnHeaderReceived() = [Outcome](FHttpRequestPtr, const std::string& Name, const std::string& Value) {
            Outcome->bCallbackAfterCompletion |= Outcome->Completions > 0;
            Outcome->CallbackThreads.push_back(std::this_thread::get_id());
            Outcome->HeadersSeen.emplace_back(Name, Value);
        };
        Request->OnRequestProgress() = [Outcome](FHttpRequestPtr, int64 Sent, int64 Received) {
            Outcome->bCallbackAfterCompletion |= Outcome->Completions > 0;
            Outcome->CallbackThreads.push_back(std::this_thread::get_id());
            Outcome->Progress.emplace_back(Sent, Received);
        };
        Request->OnProcessRequestComplete() = [Outcome](FHttpRequestPtr, FHttpResponsePtr Response, bool bConnected) {
            Outcome->CallbackThreads.push_back(std::this_thread::get_id());
            ++Outcome->Completions;
            Outcome->Response = Response;
            Outcome->bConnectedSuccessfully = bConnected;
        };
        return Outcome;
    }

    // Pumps the game thread (with an iteration cap, not a clock) until Done holds.
    bool PumpUntil(const std::function<bool()>& Done)
    {
        for (int Pump = 0; Pump < MaxPumps && !Done(); ++Pump)
        {
            Tasks.PumpGameThread();
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        return Done();
    }

    std::shared_ptr<FOutcome> Run(const FHttpRequestPtr& Request)
    {
        std::shared_ptr<FOutcome> Outcome = Watch(Request);
        EXPECT_TRUE(Request->ProcessRequest());
        EXPECT_TRUE(PumpUntil([&] { return Outcome->Completions > 0; })) << "the request never completed";
        return Outcome;
    }

    // A full round trip behind it proves that nothing else was still on its way.
    void DrainWithAnotherRequest() { EXPECT_EQ(Run(NewRequest("GET", "/hello"))->Completions, 1); }

    // Declared first: the server's handlers read it until the server has stopped.
    const std::string Blob = MakeBytes(3 * 1024 * 1024 + 17, 7);
    FLoopbackServer Server;
    Testing::FTempDir Folder;
    FStandaloneTasks Tasks{1};
    std::unique_ptr<FCurlHttp> Http = std::make_unique<FCurlHttp>(Tasks);
};

TEST_F(CurlHttp, GetDeliversStatusHeadersAndBodyBytes)
{
    FHttpRequestPtr Request = NewRequest("GET", "/hello");
    std::shared_ptr<FOutcome> Outcome = Run(Request);

    ASSERT_TRUE(Outcome->bConnectedSuccessfully);
    ASSERT_NE(Outcome->Response, nullptr);
    EXPECT_EQ(Request->GetStatus(), EHttpRequestStatus::Succeeded);
    EXPECT_EQ(Request->GetResponse(), Outcome->Response);
    EXPECT_EQ(Outcome->Response->GetResponseCode(), 200);
    EXPECT_EQ(AsString(Outcome->Response->GetContent()), HelloBody());
    EXPECT_EQ(Outcome->Response->GetContentLength(), static_cast<int64>(HelloBody().size()));
    EXPECT_EQ(Outcome->Response->GetHeader("content-type"), "application/octet-stream");
    EXPECT_EQ(Outcome->Response->GetHeader("CONTENT-TYPE"), "application/octet-stream");
}

TEST_F(CurlHttp, ResponseHeadersAreFoundIgnoringCaseTrimmedAndTheLastValueWins)
{
    std::shared_ptr<FOutcome> Outcome = Run(NewRequest("GET", "/hello"));
    ASSERT_NE(Outcome->Response, nullptr);
    EXPECT_EQ(Outcome->Response->GetHeader("X-TWICE"), "second");
    EXPECT_EQ(Outcome->Response->GetHeader("x-padded"), "padded value");
    EXPECT_EQ(Outcome->Response->GetHeader("X-Absent"), "");
}

TEST_F(CurlHttp, ErrorStatusesStillCompleteAsConnectedWithTheirCodeAndBody)
{
    for (const auto& [Path, Code, Body] :
        {std::tuple{"/status/404", 404, "no such mod"}, std::tuple{"/status/500", 500, "broken"}})
    {
        FHttpRequestPtr Request = NewRequest("GET", Path);
        std::shared_ptr<FOutcome> Outcome = Run(Request);
        EXPECT_TRUE(Outcome->bConnectedSuccessfully) << Path;
        ASSERT_NE(Outcome->Response, nullptr) << Path;
        EXPECT_EQ(Outcome->Response->GetResponseCode(), Code);
        EXPECT_EQ(Outcome->Response->GetContentAsString(), Body);
        EXPECT_EQ(Request->GetStatus(), EHttpRequestStatus::Succeeded);
    }
}

TEST_F(CurlHttp, PostSendsItsBodyAndTheLastValueOfASameNamedHeader)
{
    FHttpRequestPtr Request = NewRequest("POST", "/echo");
    Request->SetHeader("X-Echo", "first");
    Request->SetHeader("x-echo", "second");
    Request->SetHeader("Content-Type", "application/json");
    Request->SetContentAsString("{\"name\":\"Kelvor map\"}");
    EXPECT_EQ(Request->GetHeader("X-ECHO"), "second");
    std::shared_ptr<FOutcome> Outcome = Run(Request);

    ASSERT_NE(Outcome->Response, nullptr);
    EXPECT_EQ(Outcome->Response->GetContentAsString(), "{\"name\":\"Kelvor map\"}");
    EXPECT_EQ(Outcome->Response->GetHeader("X-Echo"), "second");
    const FServerRequest Received = Server.LastReceived("/echo");
    EXPECT_EQ(Received.Method, "POST");
    EXPECT_EQ(Received.All("X-Echo"), std::vector<std::string>{"second"});
    EXPECT_EQ(Received.All("Content-Type"), std::vector<std::string>{"application/json"});
}

TEST_F(CurlHttp, EveryVerbReachesTheServerWithItsBody)
{
    for (const std::string Verb : {"PUT", "PATCH", "DELETE", "POST"})
    {
        FHttpRequestPtr Request = NewRequest(Verb, "/echo");
        Request->SetContentAsString("body of " + Verb);
        std::shared_ptr<FOutcome> Outcome = Run(Request);
        ASSERT_NE(Outcome->Response, nullptr) << Verb;
        EXPECT_EQ(Outcome->Response->GetHeader("X-Method"), Verb);
        EXPECT_EQ(Server.LastReceived("/echo").Body, "body of " + Verb);
        // Nothing the caller did not set, such as a form content type.
        EXPECT_TRUE(Server.LastReceived("/echo").All("Content-Type").empty()) << Verb;
    }
    FHttpRequestPtr Delete = NewRequest("delete", "/echo");
    EXPECT_EQ(Run(Delete)->Response->GetHeader("X-Method"), "DELETE");
    EXPECT_EQ(Server.LastReceived("/echo").Body, "");
}

TEST_F(CurlHttp, NeitherExpectNorAcceptEncodingIsSent)
{
    FHttpRequestPtr Request = NewRequest("PUT", "/upload");
    Request->SetContentAsString(Blob);
    std::shared_ptr<FOutcome> Outcome = Run(Request);
    ASSERT_NE(Outcome->Response, nullptr);
    EXPECT_EQ(Outcome->Response->GetHeader("X-Body-Matches"), "yes");
    const FServerRequest Received = Server.LastReceived("/upload");
    EXPECT_TRUE(Received.All("Expect").empty());
    EXPECT_TRUE(Received.All("Accept-Encoding").empty());
    EXPECT_EQ(Received.Header("Content-Length"), std::to_string(Blob.size()));
}

TEST_F(CurlHttp, PutStreamsAFileThatTheServerReceivesByteForByte)
{
    const fs::path Source = Folder.Path() / "Map.pak";
    WriteFile(Source, Blob);
    FHttpRequestPtr Request = NewRequest("PUT", "/upload");
    ASSERT_TRUE(Request->SetContentAsStreamedFile(Source.string()));
    std::shared_ptr<FOutcome> Outcome = Run(Request);

    ASSERT_TRUE(Outcome->bConnectedSuccessfully);
    EXPECT_EQ(Outcome->Response->GetHeader("X-Body-Matches"), "yes");
    EXPECT_EQ(Outcome->Response->GetContentAsString(), std::to_string(Blob.size()));
    EXPECT_EQ(Server.LastReceived("/upload").Header("Content-Length"), std::to_string(Blob.size()));
}

TEST_F(CurlHttp, AStreamedFileThatCannotBeOpenedIsRefused)
{
    FHttpRequestPtr Request = NewRequest("PUT", "/upload");
    EXPECT_FALSE(Request->SetContentAsStreamedFile((Folder.Path() / "missing.pak").string()));
}

TEST_F(CurlHttp, ResponseBodyStreamedToAFileReplacesItsContent)
{
    const fs::path Target = Folder.Path() / "download.zip";
    WriteFile(Target, std::string(5 * 1024 * 1024, 'o'));
    FHttpRequestPtr Request = NewRequest("GET", BlobPath);
    Request->SetResponseBodyFile(Target.string(), false);
    std::shared_ptr<FOutcome> Outcome = Run(Request);

    ASSERT_TRUE(Outcome->bConnectedSuccessfully);
    EXPECT_EQ(Outcome->Response->GetResponseCode(), 200);
    EXPECT_TRUE(Outcome->Response->GetContent().empty());
    EXPECT_EQ(Outcome->Response->GetContentLength(), static_cast<int64>(Blob.size()));
    EXPECT_TRUE(ReadFile(Target) == Blob);

    FHttpRequestPtr Part = NewRequest("GET", BlobPath);
    Part->SetHeader("Range", "bytes=1000-1999");
    Part->SetResponseBodyFile(Target.string(), false);
    std::shared_ptr<FOutcome> PartOutcome = Run(Part);
    ASSERT_NE(PartOutcome->Response, nullptr);
    EXPECT_EQ(PartOutcome->Response->GetResponseCode(), 206);
    EXPECT_TRUE(ReadFile(Target) == Blob.substr(1000, 1000));
}

TEST_F(CurlHttp, ResponseBodyAppendedToAFileResumesARangedDownload)
{
    const fs::path Target = Folder.Path() / "download.zip";
    const std::size_t Have = 1234567;
    WriteFile(Target, Blob.substr(0, Have));
    FHttpRequestPtr Request = NewRequest("GET", BlobPath);
    Request->SetHeader("Range", "bytes=" + std::to_string(Have) + "-");
    Request->SetResponseBodyFile(Target.string(), true);
    std::shared_ptr<FOutcome> Outcome = Run(Request);

    ASSERT_TRUE(Outcome->bConnectedSuccessfully);
    EXPECT_EQ(Outcome->Response->GetResponseCode(), 206);
    EXPECT_EQ(Outcome->Response->GetHeader("Content-Range"),
        "bytes " + std::to_string(Have) + "-" + std::to_string(Blob.size() - 1) + "/" + std::to_string(Blob.size()));
    EXPECT_TRUE(ReadFile(Target) == Blob);
}

TEST_F(CurlHttp, AnErrorAnswerStaysInMemoryAndLeavesTheResponseFileAlone)
{
    const fs::path Target = Folder.Path() / "download.zip";
    WriteFile(Target, "partial");
    FHttpRequestPtr Request = NewRequest("GET", "/status/404");
    Request->SetResponseBodyFile(Target.string(), true);
    std::shared_ptr<FOutcome> Outcome = Run(Request);

    ASSERT_NE(Outcome->Response, nullptr);
    EXPECT_EQ(Outcome->Response->GetResponseCode(), 404);
    EXPECT_EQ(Outcome->Response->GetContentAsString(), "no such mod");
    EXPECT_EQ(ReadFile(Target), "partial");
}

TEST_F(CurlHttp, HeaderCallbacksArriveBeforeCompletionWithTrimmedValues)
{
    FHttpRequestPtr Request = NewRequest("GET", BlobPath);
    Request->SetHeader("Range", "bytes=0-99");
    auto ContentRangeBeforeCompletion = std::make_shared<std::string>();
    std::shared_ptr<FOutcome> Outcome = Watch(Request);
    Request->OnProcessRequestComplete() = [Outcome, ContentRangeBeforeCompletion](
                                              FHttpRequestPtr, FHttpResponsePtr, bool) {
        for (const auto& [Name, Value] : Outcome->HeadersSeen)
        {
            if (LowerCase(Name) == "content-range")
            {
                *ContentRangeBeforeCompletion = Value;
            }
        }
        ++Outcome->Completions;
    };
    ASSERT_TRUE(Request->ProcessRequest());
    ASSERT_TRUE(PumpUntil([&] { return Outcome->Completions > 0; }));
    EXPECT_EQ(*ContentRangeBeforeCompletion, "bytes 0-99/" + std::to_string(Blob.size()));

    std::shared_ptr<FOutcome> Hello = Run(NewRequest("GET", "/hello"));
    EXPECT_NE(std::find(Hello->HeadersSeen.begin(), Hello->HeadersSeen.end(),
                  std::pair<std::string, std::string>("X-Padded", "padded value")),
        Hello->HeadersSeen.end());
    EXPECT_FALSE(Hello->bCallbackAfterCompletion);
}

TEST_F(CurlHttp, ProgressGrowsMonotonicallyAndEndsAtTheFullSize)
{
    std::shared_ptr<FOutcome> Download = Run(NewRequest("GET", BlobPath));
    ASSERT_FALSE(Download->Progress.empty());
    for (std::size_t Index = 1; Index < Download->Progress.size(); ++Index)
    {
        EXPECT_LE(Download->Progress[Index - 1].second, Download->Progress[Index].second);
    }
    EXPECT_EQ(Download->Progress.back().second, static_cast<int64>(Blob.size()));
    EXPECT_FALSE(Download->bCallbackAfterCompletion);

    const fs::path Source = Folder.Path() / "Map.pak";
    WriteFile(Source, Blob);
    FHttpRequestPtr Upload = NewRequest("PUT", "/upload");
    ASSERT_TRUE(Upload->SetContentAsStreamedFile(Source.string()));
    std::shared_ptr<FOutcome> Sent = Run(Upload);
    ASSERT_FALSE(Sent->Progress.empty());
    for (std::size_t Index = 1; Index < Sent->Progress.size(); ++Index)
    {
        EXPECT_LE(Sent->Progress[Index - 1].first, Sent->Progress[Index].first);
        EXPECT_LE(Sent->Progress[Index - 1].second, Sent->Progress[Index].second);
    }
    EXPECT_EQ(Sent->Progress.back().first, static_cast<int64>(Blob.size()));
    EXPECT_FALSE(Sent->bCallbackAfterCompletion);
}

TEST_F(CurlHttp, EveryCallbackRunsOnTheThreadThatPumps)
{
    FHttpRequestPtr Request = NewRequest("GET", BlobPath);
    std::shared_ptr<FOutcome> Outcome = Run(Request);
    ASSERT_EQ(Outcome->Completions, 1);
    ASSERT_GT(Outcome->CallbackThreads.size(), 2u);
    for (const std::thread::id Thread : Outcome->CallbackThreads)
    {
        EXPECT_EQ(Thread, std::this_thread::get_id());
    }
}

TEST_F(CurlHttp, GetFollowsARedirect)
{
    std::shared_ptr<FOutcome> Outcome = Run(NewRequest("GET", "/redirect"));
    ASSERT_NE(Outcome->Response, nullptr);
    EXPECT_EQ(Outcome->Response->GetResponseCode(), 200);
    EXPECT_EQ(AsString(Outcome->Response->GetContent()), HelloBody());
    EXPECT_EQ(Outcome->Response->GetHeader("Location"), "");
}

TEST_F(CurlHttp, ARefusedConnectionFailsWithoutAResponse)
{
    FHttpRequestPtr Request = NewRequest("GET", "http://127.0.0.1:" + std::to_string(ClosedPort()) + "/hello");
    std::shared_ptr<FOutcome> Outcome = Run(Request);
    EXPECT_EQ(Outcome->Completions, 1);
    EXPECT_FALSE(Outcome->bConnectedSuccessfully);
    EXPECT_EQ(Outcome->Response, nullptr);
    EXPECT_EQ(Request->GetResponse(), nullptr);
    EXPECT_EQ(Request->GetStatus(), EHttpRequestStatus::Failed);
}

TEST_F(CurlHttp, AServerClosingMidBodyFails)
{
    FHttpRequestPtr Request = NewRequest("GET", "/truncated");
    std::shared_ptr<FOutcome> Outcome = Run(Request);
    EXPECT_FALSE(Outcome->bConnectedSuccessfully);
    EXPECT_EQ(Outcome->Response, nullptr);
    EXPECT_EQ(Request->GetStatus(), EHttpRequestStatus::Failed);
}

TEST_F(CurlHttp, AStalledTransferFailsAfterTheRequestsStallTimeout)
{
    FHttpRequestPtr Request = NewRequest("GET", "/stall");
    Request->SetTimeout(1.0f);
    std::shared_ptr<FOutcome> Outcome = Run(Request);
    EXPECT_EQ(Outcome->Completions, 1);
    EXPECT_FALSE(Outcome->bConnectedSuccessfully);
    EXPECT_EQ(Outcome->Response, nullptr);
}

TEST_F(CurlHttp, AStalledTransferFailsAfterTheAdaptersStallTimeout)
{
    FCurlHttpOptions Options;
    Options.StallTimeoutSeconds = 1;
    Http = std::make_unique<FCurlHttp>(Tasks, Options);
    std::shared_ptr<FOutcome> Outcome = Run(NewRequest("GET", "/silent"));
    EXPECT_FALSE(Outcome->bConnectedSuccessfully);
    EXPECT_EQ(Outcome->Response, nullptr);
}

TEST_F(CurlHttp, CancellingARunningRequestCompletesItOnceAsAFailure)
{
    FHttpRequestPtr Request = NewRequest("GET", "/stall");
    std::shared_ptr<FOutcome> Outcome = Watch(Request);
    ASSERT_TRUE(Request->ProcessRequest());
    EXPECT_EQ(Request->GetStatus(), EHttpRequestStatus::Processing);
    ASSERT_TRUE(PumpUntil([&] { return !Outcome->HeadersSeen.empty(); })) << "the response never started";

    Request->CancelRequest();
    Request->CancelRequest();
    ASSERT_TRUE(PumpUntil([&] { return Outcome->Completions > 0; }));
    DrainWithAnotherRequest();
    EXPECT_EQ(Outcome->Completions, 1);
    EXPECT_FALSE(Outcome->bConnectedSuccessfully);
    EXPECT_EQ(Outcome->Response, nullptr);
    EXPECT_EQ(Request->GetStatus(), EHttpRequestStatus::Failed);
    EXPECT_FALSE(Outcome->bCallbackAfterCompletion);
}

TEST_F(CurlHttp, CancellingBeforeProcessingCompletesOnceAndTheRequestCannotStart)
{
    FHttpRequestPtr Request = NewRequest("GET", "/hello");
    std::shared_ptr<FOutcome> Outcome = Watch(Request);
    Request->CancelRequest();
    EXPECT_FALSE(Request->ProcessRequest());
    ASSERT_TRUE(PumpUntil([&] { return Outcome->Completions > 0; }));
    DrainWithAnotherRequest();
    EXPECT_EQ(Outcome->Completions, 1);
    EXPECT_FALSE(Outcome->bConnectedSuccessfully);
    EXPECT_EQ(Server.Received().size(), 1u);
}

TEST_F(CurlHttp, ARequestIsProcessedOnlyOnce)
{
    FHttpRequestPtr Request = NewRequest("GET", "/hello");
    std::shared_ptr<FOutcome> Outcome = Watch(Request);
    ASSERT_TRUE(Request->ProcessRequest());
    EXPECT_FALSE(Request->ProcessRequest());
    ASSERT_TRUE(PumpUntil([&] { return Outcome->Completions > 0; }));
    EXPECT_FALSE(Request->ProcessRequest());
    DrainWithAnotherRequest();
    EXPECT_EQ(Outcome->Completions, 1);
    EXPECT_EQ(Server.Received().size(), 2u);
}

TEST_F(CurlHttp, ManyConcurrentRequestsEachCompleteOnceWithTheirOwnAnswer)
{
    std::vector<std::pair<std::string, std::shared_ptr<FOutcome>>> Running;
    for (int Index = 0; Index < 20; ++Index)
    {
        const std::string Body =
            "request " + std::to_string(Index) + " " + MakeBytes(static_cast<std::size_t>(Index) * 7919, Index);
        FHttpRequestPtr Request = NewRequest("POST", "/echo");
        Request->SetContentAsString(Body);
        Running.emplace_back(Body, Watch(Request));
        ASSERT_TRUE(Request->ProcessRequest());
    }
    ASSERT_TRUE(PumpUntil([&] {
        return std::all_of(
            Running.begin(), Running.end(), [](const auto& Entry) { return Entry.second->Completions > 0; });
    }));
    DrainWithAnotherRequest();
    for (const auto& [Body, Outcome] : Running)
    {
        EXPECT_EQ(Outcome->Completions, 1);
        ASSERT_NE(Outcome->Response, nullptr);
        EXPECT_TRUE(Outcome->Response->GetContentAsString() == Body);
    }
}

TEST_F(CurlHttp, DestroyingTheAdapterWithRequestsInFlightIsSafeAndSilent)
{
    std::vector<FHttpRequestPtr> Stalled;
    std::vector<std::shared_ptr<FOutcome>> Outcomes;
    for (int Index = 0; Index < 3; ++Index)
    {
        Stalled.push_back(NewRequest("GET", "/stall"));
        Outcomes.push_back(Watch(Stalled.back()));
        ASSERT_TRUE(Stalled.back()->ProcessRequest());
        FHttpRequestPtr Upload = NewRequest("PUT", "/upload");
        Upload->SetContentAsString(Blob);
        Outcomes.push_back(Watch(Upload));
        ASSERT_TRUE(Upload->ProcessRequest());
    }
    ASSERT_TRUE(PumpUntil([&] {
        return std::all_of(
            Outcomes.begin(), Outcomes.end(), [](const auto& Outcome) { return !Outcome->CallbackThreads.empty(); });
    }));
    std::vector<std::size_t> CallbacksBefore;
    for (const auto& Outcome : Outcomes)
    {
        CallbacksBefore.push_back(Outcome->CallbackThreads.size());
    }

    Http.reset();
    for (int Pump = 0; Pump < 100; ++Pump)
    {
        Tasks.PumpGameThread();
    }
    for (std::size_t Index = 0; Index < Outcomes.size(); ++Index)
    {
        EXPECT_EQ(Outcomes[Index]->CallbackThreads.size(), CallbacksBefore[Index]);
    }
    for (const FHttpRequestPtr& Request : Stalled)
    {
        EXPECT_EQ(Request->GetStatus(), EHttpRequestStatus::Failed);
        EXPECT_FALSE(Request->ProcessRequest());
        Request->CancelRequest();
    }
    Tasks.PumpGameThread();
    for (std::size_t Index = 0; Index < Outcomes.size(); ++Index)
    {
        EXPECT_EQ(Outcomes[Index]->CallbackThreads.size(), CallbacksBefore[Index]);
    }
}
