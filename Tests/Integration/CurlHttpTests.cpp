#include "Platform/CurlHttp.h"
#include "Platform/StandaloneTasks.h"
#include "Support/TempDir.h"
#include "Support/TestZip.h"

#include <gtest/gtest.h>
#include <httplib.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <strings.h>
#include <sys/socket.h>
#include <unistd.h>

using namespace Maptorn;
using Maptorn::Testing::ReadTextFile;
using Maptorn::Testing::VariedBytes;
using Maptorn::Testing::WriteBinaryFile;
namespace fs = std::filesystem;

namespace
{
using FHeaders = std::vector<std::pair<std::string, std::string>>;

// What the server received; header names compare ignoring case.
struct FServerRequest
{
    std::string Method;
    std::string Path;
    httplib::Headers Headers;
    std::string Body;

    std::vector<std::string> All(const std::string& Name) const
    {
        std::vector<std::string> Values;
        for (auto [It, End] = Headers.equal_range(Name); It != End; ++It)
        {
            Values.push_back(It->second);
        }
        return Values;
    }
    std::string Header(const std::string& Name) const { return All(Name).empty() ? "" : All(Name).back(); }
};

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
const std::string HelloBody = [] {
    std::string Body;
    for (int Byte = 0; Byte < 256; ++Byte)
    {
        Body.push_back(static_cast<char>(Byte));
    }
    return Body + std::string("\r\n\0end", 6);
}();
}

// A real loopback server (closing every connection after its answer, recording every request),
// the real task loop and the real adapter; the test thread is the game thread.
class CurlHttp : public ::testing::Test
{
protected:
    CurlHttp()
    {
        Route("/hello", [](const httplib::Request&, httplib::Response& Answer) {
            Answer.set_header("X-Twice", "first");
            Answer.set_header("x-twice", "second");
            Answer.set_header("X-Padded", "   padded value   ");
            Answer.set_content(HelloBody, "application/octet-stream");
        });
        Route("/status/404", [](const httplib::Request&, httplib::Response& Answer) {
            Answer.status = 404;
            Answer.set_content("no such mod", "text/plain");
        });
        Route("/echo", [](const httplib::Request& Request, httplib::Response& Answer) {
            Answer.set_header("X-Echo", Request.get_header_value("X-Echo"));
            Answer.set_header("X-Method", Request.method);
            Answer.set_content(Request.body, "application/octet-stream");
        });
        Route("/upload", [this](const httplib::Request& Request, httplib::Response& Answer) {
            Answer.set_header("X-Body-Matches", Request.body == Blob ? "yes" : "no");
            Answer.set_content(std::to_string(Request.body.size()), "text/plain");
        });
        // The server answers ranges itself with a 206 and its Content-Range.
        Route(BlobPath, [this](const httplib::Request&, httplib::Response& Answer) {
            Answer.set_content(Blob, "application/octet-stream");
        });
        Route("/redirect", [](const httplib::Request&, httplib::Response& Answer) { Answer.set_redirect("/hello"); });
        Route("/truncated", [](const httplib::Request&, httplib::Response& Answer) {
            Answer.set_content_provider(1000, "application/octet-stream", [](size_t, size_t, httplib::DataSink& Sink) {
                Sink.write(std::string(400, 'x').data(), 400);
                return false;
            });
        });
        // Ten bytes of a thousand, then nothing until the server goes away.
        Route("/stall", [this](const httplib::Request&, httplib::Response& Answer) {
            Answer.set_content_provider(1000, "application/octet-stream", [this](size_t Offset, size_t, httplib::DataSink& Sink) {
                if (Offset == 0)
                {
                    return Sink.write("xxxxxxxxxx", 10);
                }
                WaitUntilStopping();
                return false;
            });
        });
        Route("/silent", [this](const httplib::Request&, httplib::Response&) { WaitUntilStopping(); });
        Server.set_keep_alive_max_count(1);
        Port = Server.bind_to_any_port("127.0.0.1");
        Listener = std::thread([this] { Server.listen_after_bind(); });
        // A stop that comes before the listen loop runs is lost and the join would never return.
        while (!Server.is_running())
        {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    }

    ~CurlHttp() override
    {
        Http.reset();
        {
            std::lock_guard Lock(Mutex);
            bStopping = true;
        }
        Stopping.notify_all();
        Server.stop();
        Listener.join();
    }

    // Every verb the tests use reaches the handler, after the request is recorded.
    void Route(const std::string& Path, std::function<void(const httplib::Request&, httplib::Response&)> Handler)
    {
        const auto Recorded = [this, Handler](const httplib::Request& Request, httplib::Response& Answer) {
            {
                std::lock_guard Lock(Mutex);
                Requests.push_back({Request.method, Request.path, Request.headers, Request.body});
            }
            Handler(Request, Answer);
        };
        Server.Get(Path, Recorded).Post(Path, Recorded).Put(Path, Recorded).Patch(Path, Recorded).Delete(Path, Recorded);
    }

    void WaitUntilStopping()
    {
        std::unique_lock Lock(Mutex);
        Stopping.wait(Lock, [this] { return bStopping; });
    }

    std::size_t ReceivedCount()
    {
        std::lock_guard Lock(Mutex);
        return Requests.size();
    }
    FServerRequest LastReceived(const std::string& Path)
    {
        std::lock_guard Lock(Mutex);
        const auto Found = std::find_if(
            Requests.rbegin(), Requests.rend(), [&Path](const auto& Request) { return Request.Path == Path; });
        return Found == Requests.rend() ? FServerRequest{} : *Found;
    }

    FHttpRequestPtr NewRequest(const std::string& Verb, const std::string& Path)
    {
        FHttpRequestPtr Request = Http->CreateRequest();
        Request->SetVerb(Verb);
        Request->SetURL(Path.rfind("http", 0) == 0 ? Path : "http://127.0.0.1:" + std::to_string(Port) + Path);
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

    const std::string Blob = VariedBytes(3 * 1024 * 1024 + 17, 7);
    httplib::Server Server;
    int Port = 0;
    std::thread Listener;
    std::mutex Mutex;
    std::condition_variable Stopping;
    bool bStopping = false;
    std::vector<FServerRequest> Requests;
    Testing::FTempDir Folder;
    FStandaloneTasks Tasks{1};
    std::unique_ptr<FCurlHttp> Http = std::make_unique<FCurlHttp>(Tasks);
};

// A redirect is followed: the answer is the target's, without the redirect's Location.
TEST_F(CurlHttp, GetDeliversStatusBodyBytesAndHeadersFoundIgnoringCaseTrimmedWithTheLastValueWinning)
{
    for (const std::string Path : {"/hello", "/redirect"})
    {
        SCOPED_TRACE(Path);
        FHttpRequestPtr Request = NewRequest("GET", Path);
        std::shared_ptr<FOutcome> Outcome = Run(Request);

        ASSERT_TRUE(Outcome->bConnectedSuccessfully);
        ASSERT_NE(Outcome->Response, nullptr);
        EXPECT_EQ(Request->GetStatus(), EHttpRequestStatus::Succeeded);
        EXPECT_EQ(Request->GetResponse(), Outcome->Response);
        EXPECT_EQ(Outcome->Response->GetResponseCode(), 200);
        EXPECT_EQ(AsString(Outcome->Response->GetContent()), HelloBody);
        EXPECT_EQ(Outcome->Response->GetContentLength(), static_cast<int64>(HelloBody.size()));
        EXPECT_EQ(Outcome->Response->GetHeader("CONTENT-TYPE"), "application/octet-stream");
        EXPECT_EQ(Outcome->Response->GetHeader("X-TWICE"), "second");
        EXPECT_EQ(Outcome->Response->GetHeader("x-padded"), "padded value");
        EXPECT_EQ(Outcome->Response->GetHeader("X-Absent"), "");
        EXPECT_EQ(Outcome->Response->GetHeader("Location"), "");
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
    const FServerRequest Received = LastReceived("/echo");
    EXPECT_EQ(Received.All("X-Echo"), std::vector<std::string>{"second"});
    EXPECT_EQ(Received.All("Content-Type"), std::vector<std::string>{"application/json"});
}

TEST_F(CurlHttp, EveryVerbReachesTheServerWithItsBody)
{
    for (const std::string Verb : {"PUT", "PATCH", "DELETE"})
    {
        FHttpRequestPtr Request = NewRequest(Verb, "/echo");
        Request->SetContentAsString("body of " + Verb);
        std::shared_ptr<FOutcome> Outcome = Run(Request);
        ASSERT_NE(Outcome->Response, nullptr) << Verb;
        EXPECT_EQ(Outcome->Response->GetHeader("X-Method"), Verb);
        EXPECT_EQ(LastReceived("/echo").Body, "body of " + Verb);
        // Nothing the caller did not set, such as a form content type.
        EXPECT_TRUE(LastReceived("/echo").All("Content-Type").empty()) << Verb;
    }
    FHttpRequestPtr Delete = NewRequest("delete", "/echo");
    EXPECT_EQ(Run(Delete)->Response->GetHeader("X-Method"), "DELETE");
    EXPECT_EQ(LastReceived("/echo").Body, "");
}

TEST_F(CurlHttp, PutSendsAStringOrAStreamedFileByteForByteWithNeitherExpectNorAcceptEncoding)
{
    const fs::path Source = Folder.Path() / "Map.pak";
    EXPECT_FALSE(NewRequest("PUT", "/upload")->SetContentAsStreamedFile(Source.string())) << "a file that cannot be opened";
    WriteBinaryFile(Source, Blob);
    for (const bool bStreamed : {false, true})
    {
        SCOPED_TRACE(bStreamed ? "streamed" : "in memory");
        FHttpRequestPtr Request = NewRequest("PUT", "/upload");
        if (bStreamed)
        {
            ASSERT_TRUE(Request->SetContentAsStreamedFile(Source.string()));
        }
        else
        {
            Request->SetContentAsString(Blob);
        }
        std::shared_ptr<FOutcome> Outcome = Run(Request);
        ASSERT_TRUE(Outcome->bConnectedSuccessfully);
        EXPECT_EQ(Outcome->Response->GetHeader("X-Body-Matches"), "yes");
        EXPECT_EQ(Outcome->Response->GetContentAsString(), std::to_string(Blob.size()));
        const FServerRequest Received = LastReceived("/upload");
        EXPECT_TRUE(Received.All("Expect").empty());
        EXPECT_TRUE(Received.All("Accept-Encoding").empty());
        EXPECT_TRUE(Received.All("Transfer-Encoding").empty());
        EXPECT_EQ(Received.Header("Content-Length"), std::to_string(Blob.size()));
    }
}

// Only a successful answer goes to the file: replacing what it held, or resuming a ranged download.
TEST_F(CurlHttp, AResponseBodyStreamedToAFileReplacesOrAppendsAndAnErrorAnswerStaysInMemory)
{
    const std::size_t Have = 1234567;
    struct FCase
    {
        const char* What;
        std::string Path;
        std::string Before;
        bool bAppend;
        int Code;
        std::string After;
    };
    const FCase Cases[] = {
        {"replaced", BlobPath, std::string(5 * 1024 * 1024, 'o'), false, 200, Blob},
        {"resumed", BlobPath, Blob.substr(0, Have), true, 206, Blob},
        {"an error answer", "/status/404", "partial", true, 404, "partial"},
    };
    for (const FCase& Case : Cases)
    {
        SCOPED_TRACE(Case.What);
        const fs::path Target = Folder.Path() / "download.zip";
        WriteBinaryFile(Target, Case.Before);
        FHttpRequestPtr Request = NewRequest("GET", Case.Path);
        if (Case.Code == 206)
        {
            Request->SetHeader("Range", "bytes=" + std::to_string(Have) + "-");
        }
        Request->SetResponseBodyFile(Target.string(), Case.bAppend);
        std::shared_ptr<FOutcome> Outcome = Run(Request);

        ASSERT_TRUE(Outcome->bConnectedSuccessfully);
        EXPECT_EQ(Request->GetStatus(), EHttpRequestStatus::Succeeded);
        EXPECT_EQ(Outcome->Response->GetResponseCode(), Case.Code);
        EXPECT_TRUE(ReadTextFile(Target) == Case.After);
        if (Case.Code == 404)
        {
            EXPECT_EQ(Outcome->Response->GetContentAsString(), "no such mod");
            continue;
        }
        EXPECT_TRUE(Outcome->Response->GetContent().empty());
        EXPECT_EQ(Outcome->Response->GetContentLength(), static_cast<int64>(Blob.size() - (Case.bAppend ? Have : 0)));
    }
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
            if (::strcasecmp(Name.c_str(), "content-range") == 0)
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
}

// Every callback runs on the thread that pumps (the game thread), none after the completion.
TEST_F(CurlHttp, ProgressGrowsMonotonicallyAndEndsAtTheFullSizeOnThePumpingThread)
{
    FHttpRequestPtr Upload = NewRequest("PUT", "/upload");
    Upload->SetContentAsString(Blob);
    const std::shared_ptr<FOutcome> Received = Run(NewRequest("GET", BlobPath));
    const std::shared_ptr<FOutcome> Sent = Run(Upload);
    for (const auto& [Outcome, bSending] : {std::pair{Received, false}, std::pair{Sent, true}})
    {
        ASSERT_FALSE(Outcome->Progress.empty());
        for (std::size_t Index = 1; Index < Outcome->Progress.size(); ++Index)
        {
            EXPECT_LE(Outcome->Progress[Index - 1].first, Outcome->Progress[Index].first);
            EXPECT_LE(Outcome->Progress[Index - 1].second, Outcome->Progress[Index].second);
        }
        const auto& Last = Outcome->Progress.back();
        EXPECT_EQ(bSending ? Last.first : Last.second, static_cast<int64>(Blob.size()));
        EXPECT_FALSE(Outcome->bCallbackAfterCompletion);
        ASSERT_GT(Outcome->CallbackThreads.size(), 2u);
        for (const std::thread::id Thread : Outcome->CallbackThreads)
        {
            EXPECT_EQ(Thread, std::this_thread::get_id());
        }
    }
}

TEST_F(CurlHttp, ARefusedConnectionOrAServerClosingMidBodyFailsWithoutAResponse)
{
    for (const std::string& Url : {"http://127.0.0.1:" + std::to_string(ClosedPort()) + "/hello", std::string("/truncated")})
    {
        SCOPED_TRACE(Url);
        FHttpRequestPtr Request = NewRequest("GET", Url);
        std::shared_ptr<FOutcome> Outcome = Run(Request);
        EXPECT_EQ(Outcome->Completions, 1);
        EXPECT_FALSE(Outcome->bConnectedSuccessfully);
        EXPECT_EQ(Outcome->Response, nullptr);
        EXPECT_EQ(Request->GetResponse(), nullptr);
        EXPECT_EQ(Request->GetStatus(), EHttpRequestStatus::Failed);
    }
}

// First by the request's own timeout, then by the adapter's.
TEST_F(CurlHttp, AStalledTransferFailsAfterTheRequestsOrTheAdaptersStallTimeout)
{
    FHttpRequestPtr Request = NewRequest("GET", "/stall");
    Request->SetTimeout(1.0f);
    std::shared_ptr<FOutcome> Outcome = Run(Request);
    EXPECT_EQ(Outcome->Completions, 1);
    EXPECT_FALSE(Outcome->bConnectedSuccessfully);
    EXPECT_EQ(Outcome->Response, nullptr);

    FCurlHttpOptions Options;
    Options.StallTimeoutSeconds = 1;
    Http = std::make_unique<FCurlHttp>(Tasks, Options);
    Outcome = Run(NewRequest("GET", "/silent"));
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

// A request runs once; one cancelled before it starts completes once as a failure and never runs.
TEST_F(CurlHttp, ARequestIsProcessedOnlyOnceAndNeverAfterACancel)
{
    FHttpRequestPtr Request = NewRequest("GET", "/hello");
    std::shared_ptr<FOutcome> Outcome = Watch(Request);
    ASSERT_TRUE(Request->ProcessRequest());
    EXPECT_FALSE(Request->ProcessRequest());
    FHttpRequestPtr Cancelled = NewRequest("GET", "/hello");
    std::shared_ptr<FOutcome> CancelledOutcome = Watch(Cancelled);
    Cancelled->CancelRequest();
    EXPECT_FALSE(Cancelled->ProcessRequest());
    ASSERT_TRUE(PumpUntil([&] { return Outcome->Completions > 0 && CancelledOutcome->Completions > 0; }));
    EXPECT_FALSE(Request->ProcessRequest());
    DrainWithAnotherRequest();
    EXPECT_EQ(Outcome->Completions, 1);
    EXPECT_TRUE(Outcome->bConnectedSuccessfully);
    EXPECT_EQ(CancelledOutcome->Completions, 1);
    EXPECT_FALSE(CancelledOutcome->bConnectedSuccessfully);
    EXPECT_EQ(ReceivedCount(), 2u);
}

TEST_F(CurlHttp, ManyConcurrentRequestsEachCompleteOnceWithTheirOwnAnswer)
{
    std::vector<std::pair<std::string, std::shared_ptr<FOutcome>>> Running;
    for (int Index = 0; Index < 20; ++Index)
    {
        const std::string Body =
            "request " + std::to_string(Index) + " " + VariedBytes(static_cast<std::size_t>(Index) * 7919, Index);
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
