// How the client's HTTP rides out mod.io's rate limit and passing faults: which answers send a
// request again, after how much tick time, and when it gives up, against an in-process port.

#include "Common/TickTimers.h"
#include "Modio/RetryingHttp.h"
#include "Support/CannedHttp.h"
#include "Support/FakePlatform.h"

#include <gtest/gtest.h>

#include <optional>

using namespace Maptorn;
using namespace Maptorn::Testing;

namespace
{
using FAnswer = FCannedHttp::FAnswer;
const FAnswer Broken{false, 0, ""};

FAnswer Status(int32 Code, std::string RetryAfter = {})
{
    FAnswer Answer;
    Answer.Status = Code;
    Answer.RetryAfter = std::move(RetryAfter);
    return Answer;
}

struct FCase
{
    const char* Rule;
    const char* Verb;
    bool bBodyToFile;
    std::vector<FAnswer> Answers;
    size_t Sends;
    int32 FinalStatus; // 0: the caller hears of a broken transfer
    float Waited;      // seconds of tick time until the caller hears
};
}

TEST(RetryingHttp, EachAnswerIsSentAgainOnlyWhenThatIsSafeAndOnlyAfterItsWait)
{
    const std::vector<FCase> Cases = {
        {"a 429 to a POST did not happen: sent again after retry-after", "POST", false, {Status(429, "2"), Status(201)}, 2, 201, 2.0f},
        {"retry-after is capped at 60 s", "GET", false, {Status(429, "3600"), Status(200)}, 2, 200, 60.0f},
        {"a 429 without retry-after waits 1 s", "GET", false, {Status(429), Status(200)}, 2, 200, 1.0f},
        {"after five waits the 429 reaches the caller", "GET", false, std::vector<FAnswer>(6, Status(429, "0")), 6, 429, 0.0f},
        {"a read meeting 503 then 502 is tried again with growing pauses", "GET", false, {Status(503), Status(502), Status(200)}, 3, 200, 0.75f},
        {"three transient retries at most", "GET", false, std::vector<FAnswer>(5, Status(504)), 4, 504, 1.75f},
        {"a broken read is tried again", "GET", false, {Broken, Status(200)}, 2, 200, 0.25f},
        {"a broken read into a file is left to its caller", "GET", true, {Broken, Status(200)}, 1, 0, 0.0f},
        {"a 503 to a read into a file wrote nothing there: tried again", "GET", true, {Status(503), Status(206)}, 2, 206, 0.25f},
        {"a POST meeting 503 is never repeated", "POST", false, {Status(503), Status(201)}, 1, 503, 0.0f},
        {"a POST whose connection broke is never repeated", "POST", false, {Broken, Status(201)}, 1, 0, 0.0f},
        {"an error of the caller's own is not retried", "GET", false, {Status(404), Status(200)}, 1, 404, 0.0f},
    };
    for (const FCase& Case : Cases)
    {
        SCOPED_TRACE(Case.Rule);
        FCannedHttp Canned;
        Canned.Answers.assign(Case.Answers.begin(), Case.Answers.end());
        FTickTimers Timers;
        FRecordingLog Log;
        FRetryingHttp Http(Canned, Timers, &Log);

        FHttpRequestPtr Request = Http.CreateRequest();
        Request->SetVerb(Case.Verb);
        Request->SetURL("https://g-1.modapi.io/v1/games/1/mods");
        Request->SetHeader("Authorization", "Bearer t");
        if (Case.bBodyToFile)
        {
            Request->SetResponseBodyFile("/tmp/unused.zip", true);
        }
        std::optional<int32> Heard;
        Request->OnProcessRequestComplete() = [&](FHttpRequestPtr Done, FHttpResponsePtr Response, bool bConnected) {
            EXPECT_EQ(Done, Request);
            Heard = bConnected && Response ? Response->GetResponseCode() : 0;
        };
        ASSERT_TRUE(Request->ProcessRequest());

        float Waited = 0.0f;
        for (int Frame = 0; Frame < 100000 && !Heard; ++Frame)
        {
            Canned.Pump();
            if (!Heard)
            {
                Timers.Tick(0.05f);
                Waited += 0.05f;
            }
        }
        ASSERT_TRUE(Heard.has_value());
        EXPECT_EQ(*Heard, Case.FinalStatus);
        EXPECT_EQ(Canned.Sent.size(), Case.Sends);
        EXPECT_NEAR(Waited, Case.Waited, 0.051f * static_cast<float>(Case.Sends));
        if (Case.Answers.front().Status == 429)
        {
            EXPECT_TRUE(Log.Has("LogTemp", ELogVerbosity::Warning, Case.Answers.front().RetryAfter == "3600" ? "mod.io asks to wait 60 s"
                : "mod.io asks to wait " + (Case.Answers.front().RetryAfter.empty() ? std::string("1") : Case.Answers.front().RetryAfter) + " s"));
        }
        for (const FHttpRequestPtr& Sent : Canned.Sent)
        {
            EXPECT_EQ(Sent->GetVerb(), Case.Verb);
            EXPECT_EQ(Sent->GetURL(), "https://g-1.modapi.io/v1/games/1/mods");
            EXPECT_EQ(Sent->GetHeader("Authorization"), "Bearer t");
        }
    }
}
