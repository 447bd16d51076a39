// The local mod.io service started in-process on a free port and spoken to over HTTP, the way the
// workshop's client speaks to mod.io: paths, status codes, error refs, JSON shapes and bytes.

#include "ModioService/ModioSandbox.h"
#include "Common/Md5.h"
#include "ModioService/SandboxZip.h"
#include "Support/DefaultLogoBytes.h"
#include "Support/SandboxAccounts.h"
#include "Support/TempDir.h"

#include <gtest/gtest.h>
#include <httplib.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <set>
#include <string>
#include <tuple>
#include <vector>

using namespace Maptorn;
using namespace Maptorn::Testing;
using namespace Maptorn::Sandbox;
using nlohmann::json;

namespace
{
const std::string Mods = "/v1/games/1/mods";
const std::string CartographerEmail = "cartographer@example.com";

FSandboxOptions QuietSeeded()
{
    FSandboxOptions Options;
    Options.bSeed = true;
    Options.bQuiet = true;
    return Options;
}

json BodyOf(const httplib::Result& Result)
{
    return Result ? json::parse(Result->body, nullptr, false) : json();
}

int RefOf(const httplib::Result& Result)
{
    const json Body = BodyOf(Result);
    return Body.contains("error") ? Body["error"].value("error_ref", -1) : -1;
}

std::set<int64> IdsOf(const json& Page)
{
    std::set<int64> Ids;
    for (const json& Mod : Page["data"])
    {
        Ids.insert(Mod.contains("mod_id") ? Mod["mod_id"].get<int64>() : Mod["id"].get<int64>());
    }
    return Ids;
}

httplib::Headers BearerFor(const std::string& Token)
{
    return { { "Authorization", "Bearer " + Token } };
}

// A real ZIP archive's bytes.
std::string ZipBytes(const std::vector<FZipEntry>& Entries)
{
    Testing::FTempDir Temp;
    const std::string Path = (Temp.Path() / "archive.zip").string();
    EXPECT_TRUE(WriteZip(Path, Entries));
    return Testing::ReadTextFile(Path);
}

class ModioSandboxTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        std::string Error;
        ASSERT_TRUE(Sandbox.Start(Error)) << Error;
        Http = std::make_unique<httplib::Client>("127.0.0.1", Sandbox.GetPort());
    }

    static std::string Keyed(const std::string& Path)
    {
        return Path + (Path.find('?') == std::string::npos ? "?" : "&") + "api_key=" + std::string(SandboxApiKey);
    }

    json GetList(const std::string& Query, const httplib::Headers& Headers = {})
    {
        const httplib::Result Result = Http->Get(Keyed(Mods + "?" + Query), Headers);
        EXPECT_TRUE(Result && Result->status == 200) << (Result ? Result->body : "no answer");
        return BodyOf(Result);
    }

    httplib::Result AddModfile(const std::string& Token, int64 ModId, httplib::MultipartFormDataItems Items)
    {
        return Http->Post(Mods + "/" + std::to_string(ModId) + "/files", BearerFor(Token), Items);
    }

    FModioSandbox Sandbox{ QuietSeeded() };
    std::unique_ptr<httplib::Client> Http;
};

// ---- E-mail authentication and credentials ----

TEST_F(ModioSandboxTest, SecurityCodeIsUsedOnceUnknownOrExpired)
{
    Http->Post(Keyed("/v1/oauth/emailrequest"), httplib::Params{ { "email", ModderEmail } });
    const std::string Code = Sandbox.LastCodeFor(ModderEmail);
    const auto Exchange = [&](const std::string& Entered) {
        return Http->Post(Keyed("/v1/oauth/emailexchange"), httplib::Params{ { "security_code", Entered } });
    };
    EXPECT_EQ(Exchange(Code)->status, 200);
    EXPECT_EQ(RefOf(Exchange(Code)), 11011);
    EXPECT_EQ(RefOf(Exchange("ZZZZZ")), 11014);
    EXPECT_EQ(Exchange("ZZZZZ")->status, 401);

    Http->Post(Keyed("/v1/oauth/emailrequest"), httplib::Params{ { "email", ModderEmail } });
    Sandbox.AdvanceClock(15 * 60 + 1);
    EXPECT_EQ(RefOf(Exchange(Sandbox.LastCodeFor(ModderEmail))), 11012);
}

// What mod.io refuses, including what a lenient service would let through, each with mod.io's
// status and ref; a status or an error ref of 0 is not checked.
TEST_F(ModioSandboxTest, RefusedRequestsAnswerModiosStatusAndErrorRef)
{
    struct FCase
    {
        std::string Name;
        httplib::Result Result;
        int Status;
        int Ref;
    };
    const std::string Token = Sandbox.IssueTokenFor(ModderEmail);
    std::vector<FCase> Cases;
    Cases.push_back({ "invalid e-mail", Http->Post(Keyed("/v1/oauth/emailrequest"), httplib::Params{ { "email", "not an address" } }), 422, 13009 });
    Cases.push_back({ "no api key", Http->Get(Mods), 0, 11000 });
    Cases.push_back({ "malformed api key", Http->Get(Mods + "?api_key=short"), 0, 11001 });
    Cases.push_back({ "wrong api key", Http->Get(Mods + "?api_key=ffffffffffffffffffffffffffffffff"), 401, 11002 });
    Cases.push_back({ "write without a token", Http->Post(Keyed(Mods), httplib::MultipartFormDataItems{ { "name", "No Token", "", "" } }), 401, 0 });
    Cases.push_back({ "me without a token", Http->Get(Keyed("/v1/me")), 0, 11059 });
    Cases.push_back({ "unknown path", Http->Get(Keyed("/v1/nothing-here")), 0, 14000 });
    Cases.push_back({ "unknown game", Http->Get(Keyed("/v1/games/2/mods")), 0, 14001 });
    Cases.push_back({ "unknown mod", Http->Get(Keyed(Mods + "/999999")), 0, 15022 });
    Cases.push_back({ "status-not", Http->Get(Keyed(Mods + "?status-not=3")), 403, 15025 });
    Cases.push_back({ "visible-lk", Http->Get(Keyed(Mods + "?visible-lk=1")), 403, 15025 });
    Cases.push_back({ "status-max on my mods", Http->Get("/v1/me/mods?status-max=1", BearerFor(Token)), 403, 15025 });
    Cases.push_back({ "unknown filter", Http->Get(Keyed(Mods + "?colour=red")), 422, 13009 });
    for (const char* Sort : { "-popular", "subscribers", "rating", "downloads", "colour" })
    {
        Cases.push_back({ std::string("sort ") + Sort, Http->Get(Keyed(Mods + "?_sort=" + Sort)), 422, 13009 });
    }
    Cases.push_back({ "api_key in the body", Http->Post("/v1/oauth/emailrequest", "email=modder%40example.com&api_key=" + std::string(SandboxApiKey),
                                                        "application/x-www-form-urlencoded"), 401, 11000 });
    Cases.push_back({ "DELETE on /v1/me", Http->Delete("/v1/me", BearerFor(Token)), 405, 0 });
    Cases.push_back({ "PUT on the mod list", Http->Put(Keyed(Mods), "", "application/x-www-form-urlencoded"), 405, 0 });
    for (const FCase& Case : Cases)
    {
        SCOPED_TRACE(Case.Name);
        ASSERT_TRUE(Case.Result);
        EXPECT_TRUE(Case.Status == 0 || Case.Result->status == Case.Status) << Case.Result->status << " " << Case.Result->body;
        EXPECT_TRUE(Case.Ref == 0 || RefOf(Case.Result) == Case.Ref) << RefOf(Case.Result);
    }
    EXPECT_TRUE(BodyOf(Cases[0].Result)["error"]["errors"].contains("email"));
    EXPECT_TRUE(BodyOf(Cases[12].Result)["error"]["errors"].contains("colour"));
    EXPECT_EQ(Http->Get(Keyed(Mods))->status, 200);
    EXPECT_EQ(Http->Get(Mods, BearerFor(Token))->status, 200);
    EXPECT_EQ(GetList("status=1&visible-in=1&_sort=-downloads_today")["result_count"], GetList("")["result_count"]);
}

// ---- Listing ----

TEST_F(ModioSandboxTest, SortsByNameStatsAndDatesBothWays)
{
    const std::vector<std::pair<std::string, std::string>> Cases = { { "name", "/name" },
        { "-name", "/name" }, { "-downloads_total", "/stats/downloads_total" }, { "-downloads_today", "/stats/downloads_today" },
        { "subscribers_total", "/stats/subscribers_total" }, { "-ratings_weighted_aggregate", "/stats/ratings_weighted_aggregate" },
        { "date_live", "/date_live" }, { "-date_updated", "/date_updated" } };
    for (const auto& [Sort, Field] : Cases)
    {
        SCOPED_TRACE(Sort);
        std::vector<json> Values;
        const json Page = GetList("_sort=" + Sort);
        for (const json& Mod : Page["data"])
        {
            Values.push_back(Mod[json::json_pointer(Field)]);
        }
        ASSERT_GT(Values.size(), 30u);
        EXPECT_TRUE(Sort.starts_with("-") ? std::is_sorted(Values.rbegin(), Values.rend())
                                          : std::is_sorted(Values.begin(), Values.end()));
    }
}


// ---- Adding and editing mods ----

TEST_F(ModioSandboxTest, AddModChecksLogoAndSummary)
{
    const std::string Token = Sandbox.IssueTokenFor(ModderEmail);
    const httplib::Result Result =
        Http->Post(Mods, BearerFor(Token),
                   httplib::MultipartFormDataItems{ { "logo", "not an image", "logo.png", "image/png" },
                                                    { "name", "Bad", "", "" },
                                                    { "summary", std::string(251, 's'), "", "" } });
    EXPECT_EQ(Result->status, 422);
    EXPECT_EQ(RefOf(Result), 13009);
    EXPECT_TRUE(BodyOf(Result)["error"]["errors"].contains("logo"));
    EXPECT_TRUE(BodyOf(Result)["error"]["errors"].contains("summary"));
}

// ---- Mod files and downloads ----

TEST_F(ModioSandboxTest, ModfileMustBeAZipMatchingItsHash)
{
    const std::string Token = Sandbox.IssueTokenFor(ModderEmail);
    const std::string Zip = ZipBytes({ { "a.txt", "a" } });
    const httplib::Result WrongHash =
        AddModfile(Token, 1001, { { "filedata", Zip, "a.zip", "" }, { "filehash", FMd5::OfText("other"), "", "" } });
    EXPECT_EQ(WrongHash->status, 422);
    EXPECT_TRUE(BodyOf(WrongHash)["error"]["errors"].contains("filehash"));
    const httplib::Result NotZip = AddModfile(Token, 1001, { { "filedata", "plain text", "a.zip", "" } });
    EXPECT_EQ(NotZip->status, 422);
    EXPECT_EQ(AddModfile(Sandbox.IssueTokenFor(CartographerEmail), 1001, { { "filedata", Zip, "a.zip", "" } })->status, 403);
}

// ---- Multipart upload sessions ----

class ModioSandboxMultipart : public ModioSandboxTest
{
protected:
    void SetUp() override
    {
        ModioSandboxTest::SetUp();
        Token = Sandbox.IssueTokenFor(ModderEmail);
        const httplib::Result Created =
            Http->Post(Sessions, BearerFor(Token), httplib::Params{ { "filename", "harbour.zip" }, { "nonce", "n1" } });
        ASSERT_EQ(Created->status, 200) << Created->body;
        EXPECT_EQ(BodyOf(Created)["status"], 0);
        UploadId = BodyOf(Created)["upload_id"];
    }

    httplib::Result PutPart(const std::string& Range, const std::string& Bytes)
    {
        httplib::Headers Headers = BearerFor(Token);
        if (!Range.empty())
        {
            Headers.emplace("Content-Range", Range);
        }
        return Http->Put(Sessions + "?upload_id=" + UploadId, Headers, Bytes, "application/octet-stream");
    }

    httplib::Result Complete() { return Http->Post(Sessions + "/complete?upload_id=" + UploadId, BearerFor(Token), "", ""); }

    const std::string Sessions = Mods + "/1001/files/multipart";
    std::string Token;
    std::string UploadId;
};

TEST_F(ModioSandboxMultipart, SessionsAreOpenedForZipArchivesOnly)
{
    EXPECT_EQ(RefOf(Http->Post(Sessions, BearerFor(Token), httplib::Params{ { "filename", "harbour.rar" } })), 13009);
}

TEST_F(ModioSandboxMultipart, ContentRangeErrorsNameWhatIsWrong)
{
    const std::string Ten = "0123456789";
    EXPECT_EQ(RefOf(PutPart("", Ten)), 29008);
    EXPECT_EQ(RefOf(PutPart("items 0-9/10", Ten)), 29009);
    EXPECT_EQ(RefOf(PutPart("0-9/10", Ten)), 29009);  // the legacy form without a unit needs legacy mode
    EXPECT_EQ(RefOf(PutPart("bytes 0-x/10", Ten)), 29011);
    EXPECT_EQ(RefOf(PutPart("bytes 0-9", Ten)), 29012);
    EXPECT_EQ(RefOf(PutPart("bytes 0-9/10", "01234")), 29013);
    EXPECT_EQ(RefOf(PutPart("bytes 9-3/10", Ten)), 29014);
    EXPECT_EQ(RefOf(PutPart("bytes 0-9/100", Ten)), 29026);
    EXPECT_EQ(PutPart("bytes 0-9/100", Ten)->status, 400);
    ASSERT_EQ(PutPart("bytes 0-9/10", Ten)->status, 200);
    EXPECT_EQ(RefOf(PutPart("bytes 0-9/10", Ten)), 29015);
}

TEST_F(ModioSandboxMultipart, CompletingNeedsEveryPartAndDeletingEndsTheSession)
{
    EXPECT_EQ(RefOf(Complete()), 13009);
    EXPECT_EQ(Http->Delete(Sessions + "?upload_id=" + UploadId, BearerFor(Token))->status, 204);
    EXPECT_EQ(Http->Get(Sessions + "?upload_id=" + UploadId, BearerFor(Token))->status, 404);
}

// ---- Dependencies ----

TEST_F(ModioSandboxTest, OwnerAddsDependenciesUpToFiveAtATime)
{
    const std::string Token = Sandbox.IssueTokenFor(CartographerEmail);
    const std::string Path = Mods + "/1008/dependencies";
    const httplib::Result Added =
        Http->Post(Path, BearerFor(Token), httplib::Params{ { "dependencies[]", "1006" }, { "dependencies[]", "1007" } });
    ASSERT_EQ(Added->status, 201) << Added->body;
    EXPECT_EQ(IdsOf(BodyOf(Http->Get(Keyed(Path)))), (std::set<int64>{ 1006, 1007 }));

    const json Recursive = BodyOf(Http->Get(Keyed(Path + "?recursive=true")));
    EXPECT_EQ(IdsOf(Recursive), (std::set<int64>{ 1005, 1006, 1007 }));
    for (const json& Dependency : Recursive["data"])
    {
        EXPECT_EQ(Dependency["dependency_depth"], Dependency["mod_id"] == 1005 ? 1 : 0);
    }

    httplib::Params Six;
    for (int Id = 1010; Id < 1016; ++Id)
    {
        Six.emplace("dependencies[]", std::to_string(Id));
    }
    EXPECT_EQ(Http->Post(Path, BearerFor(Token), Six)->status, 422);
    EXPECT_EQ(
        Http->Post(Path, BearerFor(Sandbox.IssueTokenFor(ModderEmail)), httplib::Params{ { "dependencies[]", "1005" } })->status,
        403);
}

// ---- Request log ----

TEST_F(ModioSandboxTest, RequestLogRecordsEachRequestWithSecretsMasked)
{
    Sandbox.ClearRequestLog();
    const std::string Body = "email=modder%40example.com";
    Http->Post(Keyed("/v1/oauth/emailrequest"), Body, "application/x-www-form-urlencoded");
    const std::string Token = Sandbox.IssueTokenFor(ModderEmail);
    Http->Get("/v1/me?x=1", BearerFor(Token));

    const std::vector<FRecordedRequest> Log = Sandbox.RequestLog();
    ASSERT_EQ(Log.size(), 2u);
    EXPECT_EQ(Log[0].Method, "POST");
    EXPECT_EQ(Log[0].Path, "/v1/oauth/emailrequest");
    EXPECT_EQ(Log[0].Headers.at("content-type"), "application/x-www-form-urlencoded");
    EXPECT_EQ(Log[0].BodySize, Body.size());
    EXPECT_EQ(Log[0].Status, 200);
    EXPECT_TRUE(Log[0].Query.starts_with("api_key=0123"));
    EXPECT_EQ(Log[0].Query.find(SandboxApiKey), std::string::npos);
    EXPECT_EQ(Log[1].Query, "x=1");
    EXPECT_TRUE(Log[1].Headers.at("authorization").starts_with("Bearer "));
    EXPECT_EQ(Log[1].Headers.at("authorization").find(Token), std::string::npos);
}

// ---- State kept in a data folder ----

TEST(ModioSandboxDataDir, ModsFilesAndTokensSurviveARestart)
{
    Testing::FTempDir Temp;
    FSandboxOptions Options = QuietSeeded();
    Options.DataDir = Temp.Path().string();
    std::string Token;
    std::string Download;
    const std::string Zip = ZipBytes({ { "kept.txt", "kept" } });
    {
        FModioSandbox First(Options);
        std::string Error;
        ASSERT_TRUE(First.Start(Error)) << Error;
        httplib::Client Http("127.0.0.1", First.GetPort());
        Token = First.IssueTokenFor(ModderEmail);
        const httplib::Result Added =
            Http.Post(Mods + "/1002/files", BearerFor(Token),
                      httplib::MultipartFormDataItems{ { "filedata", Zip, "kept.zip", "application/zip" } });
        ASSERT_EQ(Added->status, 201);
        const std::string Url = BodyOf(Added)["download"]["binary_url"];
        Download = Url.substr(First.GetBaseUrl().size());
    }
    FModioSandbox Second(Options);
    std::string Error;
    ASSERT_TRUE(Second.Start(Error)) << Error;
    httplib::Client Http("127.0.0.1", Second.GetPort());
    EXPECT_EQ(BodyOf(Http.Get("/v1/me", BearerFor(Token)))["username"], "Modder");
    EXPECT_EQ(Http.Get(Download)->body, Zip);
    EXPECT_EQ(Second.SeededMods().size(), 37u);
}
}
