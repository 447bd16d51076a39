// The local mod.io service started in-process on a free port and spoken to over HTTP, the way the
// workshop's client speaks to mod.io: paths, status codes, error refs, JSON shapes and bytes.

#include "ModioService/ModioSandbox.h"
#include "Common/Md5.h"
#include "ModioService/SandboxZip.h"
#include "Support/TempDir.h"

#include <gtest/gtest.h>
#include <httplib.h>
#include <nlohmann/json.hpp>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

using namespace Maptorn;
using namespace Maptorn::Sandbox;
using nlohmann::json;

namespace
{
const std::string ApiKey = FSandboxOptions().ApiKey;
const std::string Mods = "/v1/games/1/mods";
const std::string ModderEmail = "modder@example.com";
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

// What arrives on a raw connection: the head, and the body bytes until the server closes.
struct FRawAnswer
{
    std::string Head;
    std::string Body;
    size_t ContentLength = 0;
};

FRawAnswer RawGet(int Port, const std::string& Target)
{
    const int Socket = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in Address{};
    Address.sin_family = AF_INET;
    Address.sin_port = htons(static_cast<uint16_t>(Port));
    Address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    EXPECT_EQ(::connect(Socket, reinterpret_cast<sockaddr*>(&Address), sizeof(Address)), 0);
    const std::string Request = "GET " + Target + " HTTP/1.1\r\nHost: 127.0.0.1\r\nConnection: close\r\n\r\n";
    EXPECT_EQ(::send(Socket, Request.data(), Request.size(), 0), static_cast<ssize_t>(Request.size()));
    std::string Received;
    char Chunk[4096];
    for (ssize_t Count = 0; (Count = ::recv(Socket, Chunk, sizeof(Chunk), 0)) > 0;)
    {
        Received.append(Chunk, static_cast<size_t>(Count));
    }
    ::close(Socket);
    FRawAnswer Answer;
    const size_t HeadEnd = Received.find("\r\n\r\n");
    Answer.Head = Received.substr(0, HeadEnd);
    Answer.Body = HeadEnd == std::string::npos ? std::string() : Received.substr(HeadEnd + 4);
    const size_t Length = Answer.Head.find("Content-Length: ");
    Answer.ContentLength = Length == std::string::npos ? 0 : std::stoul(Answer.Head.substr(Length + 16));
    return Answer;
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
        return Path + (Path.find('?') == std::string::npos ? "?" : "&") + "api_key=" + ApiKey;
    }

    json GetList(const std::string& Query, const httplib::Headers& Headers = {})
    {
        const httplib::Result Result = Http->Get(Keyed(Mods + "?" + Query), Headers);
        EXPECT_TRUE(Result && Result->status == 200) << (Result ? Result->body : "no answer");
        return BodyOf(Result);
    }

    httplib::Result AddMod(const std::string& Token, const std::string& Name, const std::vector<std::string>& Tags)
    {
        httplib::MultipartFormDataItems Items = { { "logo", TinyPng(), "logo.png", "image/png" },
                                                  { "name", Name, "", "" },
                                                  { "summary", "A mod added by the tests.", "", "" } };
        for (const std::string& Tag : Tags)
        {
            Items.push_back({ "tags[]", Tag, "", "" });
        }
        return Http->Post(Mods, BearerFor(Token), Items);
    }

    httplib::Result AddModfile(const std::string& Token, int64 ModId, httplib::MultipartFormDataItems Items)
    {
        return Http->Post(Mods + "/" + std::to_string(ModId) + "/files", BearerFor(Token), Items);
    }

    FModioSandbox Sandbox{ QuietSeeded() };
    std::unique_ptr<httplib::Client> Http;
};

// ---- E-mail authentication and credentials ----

TEST_F(ModioSandboxTest, EmailCodeRoundTripGivesATokenForMe)
{
    const httplib::Result Requested = Http->Post(Keyed("/v1/oauth/emailrequest"), httplib::Params{ { "email", ModderEmail } });
    ASSERT_TRUE(Requested);
    EXPECT_EQ(Requested->status, 200);
    EXPECT_EQ(BodyOf(Requested)["code"], 201);
    EXPECT_NE(BodyOf(Requested)["message"].get<std::string>().find("(" + ModderEmail + ")"), std::string::npos);

    const std::string Code = Sandbox.LastCodeFor(ModderEmail);
    ASSERT_EQ(Code.size(), 5u);
    EXPECT_TRUE(std::all_of(Code.begin(), Code.end(), [](char C) { return std::isupper(C) || std::isdigit(C); }));
    EXPECT_EQ(BodyOf(Http->Get("/sandbox/last-code?email=" + ModderEmail))["code"], Code);

    const httplib::Result Exchanged = Http->Post(Keyed("/v1/oauth/emailexchange"), httplib::Params{ { "security_code", Code } });
    ASSERT_TRUE(Exchanged);
    EXPECT_EQ(Exchanged->status, 200);
    const std::string Token = BodyOf(Exchanged)["access_token"];
    EXPECT_GT(BodyOf(Exchanged)["date_expires"].get<int64>(), 0);

    const json Me = BodyOf(Http->Get("/v1/me", BearerFor(Token)));
    EXPECT_EQ(Me["id"], 1);
    EXPECT_EQ(Me["username"], "Modder");
}

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

TEST_F(ModioSandboxTest, InvalidEmailIsAValidationError)
{
    const httplib::Result Result = Http->Post(Keyed("/v1/oauth/emailrequest"), httplib::Params{ { "email", "not an address" } });
    EXPECT_EQ(Result->status, 422);
    EXPECT_EQ(RefOf(Result), 13009);
    EXPECT_TRUE(BodyOf(Result)["error"]["errors"].contains("email"));
}

TEST_F(ModioSandboxTest, ExpiredTokenIsRefusedWithRef11005)
{
    const std::string Token = Sandbox.IssueTokenFor(ModderEmail);
    EXPECT_EQ(Http->Get("/v1/me", BearerFor(Token))->status, 200);
    Sandbox.ExpireToken(Token);
    const httplib::Result Result = Http->Get("/v1/me", BearerFor(Token));
    EXPECT_EQ(Result->status, 401);
    EXPECT_EQ(RefOf(Result), 11005);
    EXPECT_FALSE(BodyOf(Result)["error"].contains("errors"));
}

TEST_F(ModioSandboxTest, ReadsNeedTheRightApiKeyOrAToken)
{
    EXPECT_EQ(RefOf(Http->Get(Mods)), 11000);
    EXPECT_EQ(RefOf(Http->Get(Mods + "?api_key=short")), 11001);
    EXPECT_EQ(RefOf(Http->Get(Mods + "?api_key=ffffffffffffffffffffffffffffffff")), 11002);
    EXPECT_EQ(Http->Get(Mods + "?api_key=ffffffffffffffffffffffffffffffff")->status, 401);
    EXPECT_EQ(Http->Get(Keyed(Mods))->status, 200);
    EXPECT_EQ(Http->Get(Mods, BearerFor(Sandbox.IssueTokenFor(ModderEmail)))->status, 200);
}

TEST_F(ModioSandboxTest, WritesNeedABearerToken)
{
    const httplib::Result Result = Http->Post(Keyed(Mods), httplib::MultipartFormDataItems{ { "name", "No Token", "", "" } });
    EXPECT_EQ(Result->status, 401);
    EXPECT_EQ(RefOf(Http->Get(Keyed("/v1/me"))), 11059);
}

TEST_F(ModioSandboxTest, UnknownPathsAndGamesAreNotFound)
{
    EXPECT_EQ(RefOf(Http->Get(Keyed("/v1/nothing-here"))), 14000);
    EXPECT_EQ(RefOf(Http->Get(Keyed("/v1/games/2/mods"))), 14001);
    EXPECT_EQ(RefOf(Http->Get(Keyed(Mods + "/999999"))), 15022);
}

TEST_F(ModioSandboxTest, ABusyPortIsReportedByStart)
{
    FSandboxOptions Options = QuietSeeded();
    Options.Port = Sandbox.GetPort();
    FModioSandbox Second(Options);
    std::string Error;
    EXPECT_FALSE(Second.Start(Error));
    EXPECT_NE(Error.find(std::to_string(Options.Port)), std::string::npos) << Error;
    EXPECT_TRUE(Sandbox.GetBaseUrl().ends_with(":" + std::to_string(Options.Port)));
}

// ---- Listing: filters, sort, paging, platforms ----

TEST_F(ModioSandboxTest, TagsFilterKeepsModsWithAllTagsIgnoringCase)
{
    std::set<int64> Expected;
    for (const FSeededMod& Mod : Sandbox.SeededMods())
    {
        const bool bMod = std::count(Mod.Tags.begin(), Mod.Tags.end(), "Mod") > 0;
        const bool bProps = std::count(Mod.Tags.begin(), Mod.Tags.end(), "Props") > 0;
        if (bMod && bProps)
        {
            Expected.insert(Mod.Id);
        }
    }
    ASSERT_GE(Expected.size(), 3u);
    EXPECT_EQ(IdsOf(GetList("tags=mod,PROPS")), Expected);
}

TEST_F(ModioSandboxTest, NameLikeMatchesWildcardsIgnoringCase)
{
    EXPECT_EQ(IdsOf(GetList("name-lk=*NEON*")), (std::set<int64>{ 1002 }));
    EXPECT_EQ(IdsOf(GetList("name-lk=*kit")), (std::set<int64>{ 1005, 1006, 1007 }));
    EXPECT_EQ(GetList("name-not-lk=*kit")["result_total"], GetList("")["result_total"].get<int64>() - 3);
}

TEST_F(ModioSandboxTest, IdInListsExactlyThoseMods)
{
    EXPECT_EQ(IdsOf(GetList("id-in=1001,1003,1032")), (std::set<int64>{ 1001, 1003, 1032 }));
    EXPECT_EQ(IdsOf(GetList("id-min=1030&id-max=1032")), (std::set<int64>{ 1030, 1031, 1032 }));
    EXPECT_EQ(RefOf(Http->Get(Keyed(Mods + "?id-in=1001,abc"))), 13009);
}

TEST_F(ModioSandboxTest, HiddenModsStayOutOfTheCatalogue)
{
    EXPECT_EQ(IdsOf(GetList("")).count(1004), 0u);
    EXPECT_EQ(GetList("id=1004")["result_total"], 0);
}

TEST_F(ModioSandboxTest, MyModsIncludeHiddenOnesAndHonourStatusNot)
{
    const std::string Token = Sandbox.IssueTokenFor(ModderEmail);
    EXPECT_EQ(IdsOf(BodyOf(Http->Get("/v1/me/mods?game_id=1", BearerFor(Token)))), (std::set<int64>{ 1001, 1002, 1003, 1004 }));
    EXPECT_EQ(Http->Delete(Mods + "/1003", BearerFor(Token))->status, 204);
    const json Mine = BodyOf(Http->Get("/v1/me/mods?status-not=3", BearerFor(Token)));
    EXPECT_EQ(IdsOf(Mine), (std::set<int64>{ 1001, 1002, 1004 }));
    EXPECT_EQ(Sandbox.OwnerModIdFor(ModderEmail), 1001);
}

TEST_F(ModioSandboxTest, SortsByNameBothWays)
{
    const auto Names = [](const json& Page)
    {
        std::vector<std::string> Result;
        for (const json& Mod : Page["data"])
        {
            Result.push_back(Mod["name"]);
        }
        return Result;
    };
    std::vector<std::string> Ascending = Names(GetList("_sort=name"));
    ASSERT_GT(Ascending.size(), 30u);
    EXPECT_TRUE(std::is_sorted(Ascending.begin(), Ascending.end()));
    std::vector<std::string> Descending = Names(GetList("_sort=-name"));
    std::reverse(Descending.begin(), Descending.end());
    EXPECT_EQ(Descending, Ascending);
}

TEST_F(ModioSandboxTest, SortsByStatsAndDates)
{
    for (const auto& [Sort, Field] : std::vector<std::pair<std::string, std::string>>{
             { "-downloads", "downloads_total" }, { "-popular", "downloads_today" }, { "subscribers", "subscribers_total" } })
    {
        std::vector<int64> Values;
        const json Page = GetList("_sort=" + Sort);
        for (const json& Mod : Page["data"])
        {
            Values.push_back(Mod["stats"][Field]);
        }
        SCOPED_TRACE(Sort);
        EXPECT_TRUE(Sort.starts_with("-") ? std::is_sorted(Values.rbegin(), Values.rend())
                                          : std::is_sorted(Values.begin(), Values.end()));
    }
    std::vector<int64> Added;
    const json ByDate = GetList("_sort=date_added");
    for (const json& Mod : ByDate["data"])
    {
        Added.push_back(Mod["date_added"]);
    }
    EXPECT_TRUE(std::is_sorted(Added.begin(), Added.end()));
    EXPECT_EQ(RefOf(Http->Get(Keyed(Mods + "?_sort=colour"))), 13009);
}

TEST_F(ModioSandboxTest, PagingWithLimitTwentyGivesTwoPagesOfTaggedMods)
{
    const json First = GetList("tags=Mod&_limit=20");
    const json Second = GetList("tags=Mod&_limit=20&_offset=20");
    EXPECT_EQ(First["result_count"], 20);
    EXPECT_EQ(First["result_offset"], 0);
    EXPECT_EQ(First["result_limit"], 20);
    EXPECT_EQ(First["result_total"], 28);
    EXPECT_EQ(Second["result_count"], 8);
    EXPECT_EQ(Second["result_offset"], 20);
    std::set<int64> All = IdsOf(First);
    const std::set<int64> Rest = IdsOf(Second);
    All.insert(Rest.begin(), Rest.end());
    EXPECT_EQ(All.size(), 28u);
}

TEST_F(ModioSandboxTest, LimitAboveOneHundredIsClampedToOneHundred)
{
    EXPECT_EQ(GetList("_limit=500")["result_limit"], 100);
    EXPECT_EQ(GetList("")["result_limit"], 100);
    EXPECT_EQ(RefOf(Http->Get(Keyed(Mods + "?_limit=0"))), 13009);
}

TEST_F(ModioSandboxTest, SourcePlatformListsOnlyModsLiveOnSource)
{
    const json Source = GetList("", { { "X-Modio-Platform", "SOURCE" } });
    std::set<int64> SourcePlugins;
    for (const FSeededMod& Mod : Sandbox.SeededMods())
    {
        if (Mod.bSourcePlugin)
        {
            SourcePlugins.insert(Mod.Id);
        }
    }
    EXPECT_TRUE(SourcePlugins.count(1005) && SourcePlugins.count(1006) && SourcePlugins.count(1007));
    EXPECT_EQ(IdsOf(Source), SourcePlugins);
    for (const json& Mod : Source["data"])
    {
        EXPECT_EQ(Mod["modfile"]["platforms"][0]["platform"], "source");
    }
    // Unknown platforms count as windows, where every public seeded mod is live.
    EXPECT_EQ(GetList("", { { "X-Modio-Platform", "amiga" } })["result_total"], GetList("")["result_total"]);
}

// ---- Adding and editing mods ----

TEST_F(ModioSandboxTest, AddModWithLogoThenEditIt)
{
    const std::string Token = Sandbox.IssueTokenFor(ModderEmail);
    const httplib::Result Added = AddMod(Token, "Test Harbour", { "Map", "Night" });
    ASSERT_TRUE(Added);
    ASSERT_EQ(Added->status, 201) << Added->body;
    const json Mod = BodyOf(Added);
    const int64 Id = Mod["id"];
    EXPECT_GE(Id, 2001);
    EXPECT_TRUE(Added->get_header_value("Location").ends_with("/v1/games/1/mods/" + std::to_string(Id)));
    EXPECT_EQ(Mod["submitted_by"]["username"], "Modder");
    EXPECT_EQ(Mod["name_id"], "test-harbour");
    EXPECT_EQ(Mod["tags"].size(), 2u);
    EXPECT_TRUE(Mod["modfile"].is_null());

    const std::string LogoUrl = Mod["logo"]["thumb_320x180"];
    const httplib::Result Logo = Http->Get(LogoUrl.substr(Sandbox.GetBaseUrl().size()));
    EXPECT_EQ(Logo->body, TinyPng());

    const httplib::Result Edited = Http->Post(Mods + "/" + std::to_string(Id), BearerFor(Token),
                                              httplib::Params{ { "name", "Test Harbour II" }, { "tags[]", "Mod" } });
    ASSERT_EQ(Edited->status, 200) << Edited->body;
    EXPECT_EQ(BodyOf(Edited)["name"], "Test Harbour II");
    EXPECT_EQ(BodyOf(Edited)["tags"].size(), 1u);
    EXPECT_EQ(BodyOf(Edited)["tags"][0]["name"], "Mod");

    const httplib::Result Stranger =
        Http->Post(Mods + "/" + std::to_string(Id), BearerFor(Sandbox.IssueTokenFor(CartographerEmail)),
                   httplib::Params{ { "name", "Taken Over" } });
    EXPECT_EQ(Stranger->status, 403);
}

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

TEST_F(ModioSandboxTest, AddModAsUrlencodedIsAnUnsupportedMediaType)
{
    const httplib::Result Result =
        Http->Post(Mods, BearerFor(Sandbox.IssueTokenFor(ModderEmail)), httplib::Params{ { "name", "Form" } });
    EXPECT_EQ(Result->status, 415);
}

// ---- Mod files and downloads ----

TEST_F(ModioSandboxTest, AddedModfileGoesLiveAndDownloadsWholeOrInRanges)
{
    const std::string Token = Sandbox.IssueTokenFor(ModderEmail);
    const std::string Zip = ZipBytes({ { "Harbour/ReadMe.txt", std::string(3000, 'h') } });
    const httplib::Result Added = AddModfile(Token, 1001,
                                             { { "filedata", Zip, "harbour.zip", "application/zip" },
                                               { "version", "1.2", "", "" },
                                               { "filehash", FMd5::OfText(Zip), "", "" },
                                               { "platforms[]", "windows", "", "" },
                                               { "platforms[]", "source", "", "" } });
    ASSERT_EQ(Added->status, 201) << Added->body;
    const json Modfile = BodyOf(Added);
    EXPECT_EQ(Modfile["filesize"], Zip.size());
    EXPECT_EQ(Modfile["filehash"]["md5"], FMd5::OfText(Zip));
    EXPECT_EQ(BodyOf(Http->Get(Keyed(Mods + "/1001")))["modfile"]["id"], Modfile["id"]);

    const std::string Download = Modfile["download"]["binary_url"].get<std::string>().substr(Sandbox.GetBaseUrl().size());
    const httplib::Result Whole = Http->Get(Download);
    EXPECT_EQ(Whole->status, 200);
    EXPECT_EQ(Whole->body, Zip);

    const httplib::Result Part = Http->Get(Download, { { "Range", "bytes=5-14" } });
    EXPECT_EQ(Part->status, 206);
    EXPECT_EQ(Part->get_header_value("Content-Range"), "bytes 5-14/" + std::to_string(Zip.size()));
    EXPECT_EQ(Part->body, Zip.substr(5, 10));

    const httplib::Result Tail = Http->Get(Download, { { "Range", "bytes=100-" } });
    EXPECT_EQ(Tail->status, 206);
    EXPECT_EQ(Tail->body, Zip.substr(100));

    const httplib::Result Beyond = Http->Get(Download, { { "Range", "bytes=" + std::to_string(Zip.size()) + "-" } });
    EXPECT_EQ(Beyond->status, 416);
    EXPECT_EQ(Beyond->get_header_value("Content-Range"), "bytes */" + std::to_string(Zip.size()));
}

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

TEST_F(ModioSandboxTest, SeededSourcePluginIsARealArchiveWithItsHash)
{
    const json Mod = BodyOf(Http->Get(Keyed(Mods + "/1005"), { { "X-Modio-Platform", "source" } }));
    const std::string Url = Mod["modfile"]["download"]["binary_url"];
    const httplib::Result Archive = Http->Get(Url.substr(Sandbox.GetBaseUrl().size()));
    ASSERT_EQ(Archive->status, 200);
    EXPECT_EQ(Archive->body.size(), Mod["modfile"]["filesize"].get<size_t>());
    EXPECT_EQ(FMd5::OfText(Archive->body), Mod["modfile"]["filehash"]["md5"]);
    EXPECT_NE(Archive->body.find("UGC1005/UGC1005.uplugin"), std::string::npos);
    EXPECT_NE(Archive->body.find("UGC1005/Content/definition.json"), std::string::npos);
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

TEST_F(ModioSandboxMultipart, PartsOfFiftyMiBAreJoinedInOrderIntoTheModfile)
{
    constexpr size_t PartSize = 52428800;
    std::string Whole = ZipBytes({ { "Big/ReadMe.txt", "big" } });
    Whole.resize(PartSize + 1000, 'x');
    const std::string Total = std::to_string(Whole.size());
    // The last part first: the session orders parts by their place in the file.
    const httplib::Result Last =
        PutPart("bytes 52428800-" + std::to_string(Whole.size() - 1) + "/" + Total, Whole.substr(PartSize));
    ASSERT_EQ(Last->status, 200) << Last->body;
    EXPECT_EQ(BodyOf(Last)["part_number"], 2);
    EXPECT_EQ(BodyOf(Last)["part_size"], 1000);
    ASSERT_EQ(PutPart("bytes 0-52428799/" + Total, Whole.substr(0, PartSize))->status, 200);

    const json Parts = BodyOf(Http->Get(Sessions + "?upload_id=" + UploadId, BearerFor(Token)));
    EXPECT_EQ(Parts["result_total"], 2);
    EXPECT_EQ(Parts["data"][0]["part_number"], 1);

    const httplib::Result Completed = Complete();
    EXPECT_EQ(Completed->status, 200);
    EXPECT_EQ(BodyOf(Completed)["status"], 3);

    const httplib::Result Added =
        AddModfile(Token, 1001, { { "upload_id", UploadId, "", "" }, { "filehash", FMd5::OfText(Whole), "", "" } });
    ASSERT_EQ(Added->status, 201) << Added->body;
    EXPECT_EQ(BodyOf(Added)["filename"], "harbour.zip");
    const std::string Url = BodyOf(Added)["download"]["binary_url"];
    const httplib::Result Download =
        Http->Get(Url.substr(Sandbox.GetBaseUrl().size()), { { "Range", "bytes=52428790-52428809" } });
    EXPECT_EQ(Download->body, Whole.substr(52428790, 20));
}

TEST_F(ModioSandboxMultipart, SameNonceFindsTheSameSession)
{
    const httplib::Result Again =
        Http->Post(Sessions, BearerFor(Token), httplib::Params{ { "filename", "harbour.zip" }, { "nonce", "n1" } });
    EXPECT_EQ(BodyOf(Again)["upload_id"], UploadId);
    EXPECT_EQ(RefOf(Http->Post(Sessions, BearerFor(Token), httplib::Params{ { "filename", "harbour.rar" } })), 13009);
}

TEST_F(ModioSandboxMultipart, ContentRangeErrorsNameWhatIsWrong)
{
    const std::string Ten = "0123456789";
    EXPECT_EQ(RefOf(PutPart("", Ten)), 29008);
    EXPECT_EQ(RefOf(PutPart("items 0-9/10", Ten)), 29009);
    EXPECT_EQ(RefOf(PutPart("bytes 0-x/10", Ten)), 29011);
    EXPECT_EQ(RefOf(PutPart("bytes 0-9", Ten)), 29012);
    EXPECT_EQ(RefOf(PutPart("bytes 0-9/10", "01234")), 29013);
    EXPECT_EQ(RefOf(PutPart("bytes 9-3/10", Ten)), 29014);
    EXPECT_EQ(RefOf(PutPart("bytes 0-9/100", Ten)), 29026);
    EXPECT_EQ(PutPart("bytes 0-9/100", Ten)->status, 400);
    ASSERT_EQ(PutPart("bytes 0-9/10", Ten)->status, 200);
    EXPECT_EQ(RefOf(PutPart("bytes 0-9/10", Ten)), 29015);
}

TEST_F(ModioSandboxMultipart, LegacyRangeWithoutUnitNeedsLegacyModeWhichCompletesWith201)
{
    const std::string Zip = ZipBytes({ { "a.txt", "legacy" } });
    const std::string Legacy = "0-" + std::to_string(Zip.size()) + "/" + std::to_string(Zip.size());
    EXPECT_EQ(RefOf(PutPart(Legacy, Zip)), 29009);
    Sandbox.SetAcceptLegacyContentRange(true);
    ASSERT_EQ(PutPart(Legacy, Zip)->status, 200);
    const httplib::Result Completed = Complete();
    EXPECT_EQ(Completed->status, 201);
    EXPECT_EQ(BodyOf(Completed)["status"], 3);
}

TEST_F(ModioSandboxMultipart, CompletingNeedsEveryPartAndDeletingEndsTheSession)
{
    EXPECT_EQ(RefOf(Complete()), 13009);
    EXPECT_EQ(Http->Delete(Sessions + "?upload_id=" + UploadId, BearerFor(Token))->status, 204);
    EXPECT_EQ(Http->Get(Sessions + "?upload_id=" + UploadId, BearerFor(Token))->status, 404);
}

// ---- Dependencies ----

TEST_F(ModioSandboxTest, SeededCrateKitDependsOnLampKit)
{
    const json Dependencies = BodyOf(Http->Get(Keyed(Mods + "/1006/dependencies?recursive=false")));
    ASSERT_EQ(Dependencies["result_total"], 1);
    EXPECT_EQ(Dependencies["data"][0]["mod_id"], 1005);
    EXPECT_EQ(Dependencies["data"][0]["name"], "Lamp Kit");
    EXPECT_EQ(Dependencies["data"][0]["dependency_depth"], 0);
    EXPECT_TRUE(BodyOf(Http->Get(Keyed(Mods + "/1006")))["dependencies"].get<bool>());
}

TEST_F(ModioSandboxTest, OwnerAddsDependenciesUpToFiveAtATime)
{
    const std::string Token = Sandbox.IssueTokenFor(CartographerEmail);
    const std::string Path = Mods + "/1008/dependencies";
    const httplib::Result Added =
        Http->Post(Path, BearerFor(Token), httplib::Params{ { "dependencies[]", "1006" }, { "dependencies[]", "1007" } });
    ASSERT_EQ(Added->status, 201) << Added->body;
    EXPECT_EQ(BodyOf(Added)["code"], 201);
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

// ---- Fault injection ----

TEST_F(ModioSandboxTest, StatusFaultAnswersTheNextMatchingRequestsWithAModioError)
{
    Sandbox.InjectFault({ Mods, "GET", 2, EFaultKind::Status, 503, 0 });
    EXPECT_EQ(Http->Post(Keyed("/v1/oauth/emailrequest"), httplib::Params{ { "email", ModderEmail } })->status, 200);
    for (int Attempt = 0; Attempt < 2; ++Attempt)
    {
        const httplib::Result Faulted = Http->Get(Keyed(Mods));
        EXPECT_EQ(Faulted->status, 503);
        EXPECT_EQ(BodyOf(Faulted)["error"]["code"], 503);
        EXPECT_EQ(RefOf(Faulted), 10000);
    }
    EXPECT_EQ(Http->Get(Keyed(Mods))->status, 200);
}

TEST_F(ModioSandboxTest, CloseMidBodyFaultSendsHalfTheAnnouncedBody)
{
    Sandbox.InjectFault({ Mods, "", 1, EFaultKind::CloseMidBody, 0, 0 });
    EXPECT_FALSE(Http->Get(Keyed(Mods)));
    Sandbox.InjectFault({ Mods, "", 1, EFaultKind::CloseMidBody, 0, 0 });
    const FRawAnswer Raw = RawGet(Sandbox.GetPort(), Keyed(Mods));
    EXPECT_TRUE(Raw.Head.starts_with("HTTP/1.1 200"));
    ASSERT_GT(Raw.ContentLength, 100u);
    EXPECT_EQ(Raw.Body.size(), Raw.ContentLength / 2);
}

TEST_F(ModioSandboxTest, TruncateFaultSendsAllButTheLastByte)
{
    Sandbox.InjectFault({ Mods, "", 1, EFaultKind::TruncateBody, 0, 0 });
    EXPECT_FALSE(Http->Get(Keyed(Mods)));
    Sandbox.InjectFault({ "/sandbox/files/", "GET", 1, EFaultKind::TruncateBody, 0, 0 });
    const FRawAnswer Raw = RawGet(Sandbox.GetPort(), "/sandbox/files/4005/lamp-kit.zip");
    ASSERT_GT(Raw.ContentLength, 0u);
    EXPECT_EQ(Raw.Body.size(), Raw.ContentLength - 1);
}

TEST_F(ModioSandboxTest, StallFaultDelaysAnAnswerThatStillArrives)
{
    Sandbox.InjectFault({ "/v1/me", "GET", 1, EFaultKind::Stall, 0, 300 });
    Sandbox.ClearRequestLog();
    const httplib::Result Result = Http->Get("/v1/me", BearerFor(Sandbox.IssueTokenFor(ModderEmail)));
    ASSERT_TRUE(Result);
    EXPECT_EQ(Result->status, 200);
    const std::vector<FRecordedRequest> Log = Sandbox.RequestLog();
    ASSERT_EQ(Log.size(), 1u);
    EXPECT_EQ(Log[0].Path, "/v1/me");
    EXPECT_EQ(Log[0].Status, 200);
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
    EXPECT_EQ(Log[0].Query.find(ApiKey), std::string::npos);
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
