#include "Common/StringUtil.h"
#include "Modio/ModioInterface.h"
#include "Modio/ModioRequests.h"
#include "Modio/SourceModReader.h"
#include "Support/CannedHttp.h"
#include "Support/FakePlatform.h"
#include "Support/TempDir.h"

#include <gtest/gtest.h>

#include <optional>

using namespace Maptorn;
using namespace Maptorn::Testing;
using FJson = nlohmann::json;

namespace
{
class SourceModRecords : public ::testing::Test
{
protected:
    SourceModRecords()
        : Client(Fakes.Platform, FMaptornConfig{})
    {
        Fakes.Engine.Project = Temp.Dir();
        Fakes.Engine.BaseDir = Temp.Dir();
    }

    FSourceModInfo Read(const std::string& Json) { return ReadSourceModInfo(Fakes.Platform, Client, FJson::parse(Json)); }

    void InstallPlugin(const std::string& ModId, int32 DefinitionVersion)
    {
        FPluginInfo Plugin;
        Plugin.Name = "UGC" + ModId;
        Fakes.Engine.Plugins.push_back(Plugin);
        Fakes.Definitions.Add("/UGC" + ModId + "/definition", EModType::Mod)->Version = DefinitionVersion;
    }

    FTempDir Temp;
    FFakePlatform Fakes;
    FModioInterface Client;
};

const char* FullMod = R"({"id": 1001, "name": "Neon Props", "summary": "Signs", "profile_url": "https://mod.io/g/k/m/neon",
    "submitted_by": {"username": "Modder"}, "logo": {"thumb_320x180": "https://x/logo_320.png"},
    "tags": [{"name": "mod"}, {"name": "Props"}], "platforms": [{"platform": "windows"}, {"platform": "oculus"}],
    "modfile": {"version": "3", "filesize": 123456, "download": {"binary_url": "https://x/file.zip"}}})";
}

TEST_F(SourceModRecords, EveryFieldIsReadFromItsKey)
{
    const FSourceModInfo Info = Read(FullMod);
    EXPECT_EQ(Info.PluginName, "UGC1001");
    EXPECT_EQ(Info.Name, "Neon Props");
    EXPECT_EQ(Info.Summary, "Signs");
    EXPECT_EQ(Info.Author, "Modder");
    EXPECT_EQ(Info.ModType, EModType::Mod) << "tags compare ignoring case";
    EXPECT_EQ(Info.Tags, (std::vector<std::string>{"mod", "Props"}));
    EXPECT_EQ(Info.LogoUrl, "https://x/logo_320.png");
    EXPECT_EQ(Info.Version, "3");
    EXPECT_EQ(Info.FileSize, 123456);
    EXPECT_TRUE(Info.bWindows);
    EXPECT_TRUE(Info.bOculus);
    EXPECT_EQ(Info.ProfileUrl, "https://mod.io/g/k/m/neon");
    EXPECT_EQ(Info.BinaryUrl, "https://x/file.zip");
    EXPECT_EQ(Info.InstallState, static_cast<uint8>(ESourceModInstallState::NotInstalled));
}

TEST_F(SourceModRecords, AMapTagWinsOverModAndGameMode)
{
    EXPECT_EQ(Read(R"({"id": 1, "tags": [{"name": "GameMode"}, {"name": "Mod"}, {"name": "MAP"}]})").ModType, EModType::Map);
    EXPECT_EQ(Read(R"({"id": 1, "tags": [{"name": "gamemode"}, {"name": "Mod"}]})").ModType, EModType::Mod);
    EXPECT_EQ(Read(R"({"id": 1, "tags": [{"name": "gamemode"}]})").ModType, EModType::GameMode);
}

TEST_F(SourceModRecords, WrongTypesAndHugeNumbersNeverFailARecord)
{
    const FSourceModInfo Info = Read(R"({"id": "77", "name": 5, "tags": "Map", "logo": [1], "submitted_by": null, "platforms": {"x": 1},
        "modfile": {"version": [1], "filesize": -1e300, "download": "nope"}})");
    EXPECT_EQ(Info.PluginName, "UGC77");
    EXPECT_EQ(Info.Name, "5");
    EXPECT_TRUE(Info.Tags.empty());
    EXPECT_EQ(Info.Version, "");
    EXPECT_EQ(Info.FileSize, std::numeric_limits<int64>::min());
    EXPECT_EQ(Info.BinaryUrl, "");
}

TEST_F(SourceModRecords, VersionsStayTextAndOnlyPlainNumbersCountAsStampedVersions)
{
    EXPECT_EQ(Read(R"({"id": 1, "modfile": {"version": "1.2.3"}})").Version, "1.2.3");
    EXPECT_EQ(Read(R"({"id": 1, "modfile": {"version": 12}})").Version, "12");
    const std::vector<std::pair<std::string, int32>> Numbers = {{"12", 12}, {"1.2.3", 0}, {"", 0}, {"v3", 0}, {"99999999999", 2147483647}};
    for (const auto& [Text, Number] : Numbers)
    {
        EXPECT_EQ(VersionNumber(Text), Number) << Text;
    }
}

// A server's id becomes a folder name and a URL segment: only plain positive decimals are ids.
TEST_F(SourceModRecords, IdsThatAreNotPlainNumbersNeverBecomeRecords)
{
    const std::vector<std::pair<std::string, bool>> Ids = {{"7", true}, {"4711", true}, {"9223372036854775807", true},
        {"0", false}, {"007", false}, {"1/../../x", false}, {"..", false}, {" 7", false}, {"7 ", false}, {"-7", false},
        {"1.5", false}, {"1e3", false}, {"", false}, {"9223372036854775808", false}};
    for (const auto& [Id, bPlain] : Ids)
    {
        SCOPED_TRACE(Id);
        EXPECT_EQ(IsPlainModId(Id), bPlain);
        EXPECT_EQ(Read(FJson{{"id", Id}}.dump()).PluginName, bPlain ? "UGC" + Id : "");
    }
    FSourceModList List;
    ASSERT_TRUE(ReadSourceModList(Fakes.Platform, Client,
        R"({"result_count": 3, "result_offset": 0, "result_limit": 20, "result_total": 3,
            "data": [{"id": "1/../../x"}, {"id": 7}, {"id": "007"}]})", List));
    ASSERT_EQ(List.Mods.size(), 1u);
    EXPECT_EQ(List.Mods[0].PluginName, "UGC7");
}

TEST_F(SourceModRecords, TheCachedLogoIsShownElseTheDefaultThumbnail)
{
    EXPECT_EQ(Read(FullMod).ThumbnailPath, Temp.Dir() + "Plugins/Maptorn/Resources/KelvorThumbnail.jpg");
    WriteTextFile(Temp.Path() / "Saved/ModThumbnails/UGC1001.png", "png");
    EXPECT_EQ(Read(FullMod).ThumbnailPath, Temp.Dir() + "Saved/ModThumbnails/UGC1001.png");
    WriteTextFile(Temp.Path() / "Saved/ModThumbnails/UGC1001.jpeg", "jpeg");
    EXPECT_EQ(Read(FullMod).ThumbnailPath, Temp.Dir() + "Saved/ModThumbnails/UGC1001.jpeg") << ".jpeg is tried before .png";
}

TEST_F(SourceModRecords, TheInstallStateFollowsDownloadsThenLocalPlugins)
{
    const auto State = [this] { return static_cast<ESourceModInstallState>(Read(FullMod).InstallState); };
    InstallPlugin("1001", 3);
    EXPECT_EQ(State(), ESourceModInstallState::Installed);
    Fakes.Definitions.Objects.begin()->second->Version = 2;
    EXPECT_EQ(State(), ESourceModInstallState::RequiresUpdate);

    Client.FinishedDownloads["1001"] = 3;
    EXPECT_EQ(State(), ESourceModInstallState::InstalledRestartRequired);

    FSourceModInfo Queued;
    Queued.PluginName = "ugc1001";
    Client.DownloadQueue.push_back(Queued);
    EXPECT_EQ(State(), ESourceModInstallState::DownloadPending);

    Client.ActiveDownload = std::make_unique<FPluginModDownload>(Fakes.Platform);
    Client.ActiveDownload->ModId = "1001";
    EXPECT_EQ(State(), ESourceModInstallState::Downloading);
}

TEST(SourceModPages, AnEmptyAnswerHasNoPagesAndALimitOfZeroIsPageOneOfOne)
{
    const FPageNumbers Empty = ComputePageNumbers(0, 0, 20, 0);
    EXPECT_EQ(Empty.CurrentPage, 0);
    EXPECT_EQ(Empty.TotalPages, 0);
    const FPageNumbers NoLimit = ComputePageNumbers(5, 0, 0, 25);
    EXPECT_EQ(NoLimit.CurrentPage, 1) << "a limit of 0 cannot page: page 1 of 1";
    EXPECT_EQ(NoLimit.TotalPages, 1);
}

TEST(SourceModPages, APageAnswerIsReadAndMalformedOnesAreRefused)
{
    FFakePlatform Fakes;
    FModioInterface Client(Fakes.Platform, FMaptornConfig{});
    FSourceModList List;
    ASSERT_TRUE(ReadSourceModList(Fakes.Platform, Client,
        R"({"data": [{"id": 1}, {"id": 2}], "result_count": 2, "result_offset": 20, "result_limit": 20, "result_total": 22})", List));
    EXPECT_EQ(List.Mods.size(), 2u);
    EXPECT_EQ(List.CurrentPage, 2);
    EXPECT_EQ(List.TotalPages, 2);
    EXPECT_EQ(List.TotalResults, 22);
    EXPECT_TRUE(Fakes.Log.Has("LogTemp", ELogVerbosity::Log, "Source Mod Page 2/2"));

    EXPECT_TRUE(ReadSourceModList(Fakes.Platform, Client, R"({"error": {"code": 500}})", List));
    EXPECT_TRUE(List.Mods.empty()) << "an answer without result_count is an empty page";
    EXPECT_TRUE(ReadSourceModList(Fakes.Platform, Client, R"({"result_count": 1e308, "result_limit": 1e308, "result_total": -1e308, "data": 7})", List));
    EXPECT_FALSE(ReadSourceModList(Fakes.Platform, Client, "{\"data\": [", List));
    EXPECT_FALSE(ReadSourceModList(Fakes.Platform, Client, "[1, 2]", List));
}

TEST(CatalogueUrl, PartsComeInTheirFixedOrder)
{
    FSourceModQuery Query;
    Query.SortType = ESourceModQueryType::Installed;
    Query.SearchText = "neon";
    Query.PageOffset = 40;
    Query.PageLimit = 20;
    EXPECT_EQ(ModioRequests::CatalogueUrl("http://h", 7, "KEY", Query, {"12", "9"}),
        "http://h/v1/games/7/mods?api_key=KEY&tags=Mod&id-in=12%2C9&name-lk=%2Aneon%2A&_offset=40&_limit=20");

    Query.SortType = ESourceModQueryType::Popular;
    Query.FilterTags = {"Map", "Ignored"};
    Query.SearchText.clear();
    Query.PageLimit = 0;
    EXPECT_EQ(ModioRequests::CatalogueUrl("http://h", 7, "KEY", Query, {"12"}), "http://h/v1/games/7/mods?api_key=KEY&tags=Map&_sort=-downloads_today");

    // Every value is encoded: a search cannot add parameters, a tag cannot end the query.
    Query.FilterTags = {"Map&x=1"};
    Query.SearchText = "a b&_limit=1";
    EXPECT_EQ(ModioRequests::CatalogueUrl("http://h", 7, "KEY", Query, {}),
        "http://h/v1/games/7/mods?api_key=KEY&tags=Map%26x%3D1&_sort=-downloads_today&name-lk=%2Aa%20b%26_limit%3D1%2A");
}

TEST(SourceModQuery, WithoutHttpTheQueryReportsFailureAndIsNotLeftBusy)
{
    FFakePlatform Fakes;
    FModioInterface Client(Fakes.Platform, FMaptornConfig{});
    Client.LastSourceModList.Mods.resize(3);
    int Failures = 0;
    Client.OnSourceModListUpdated.Add([&](bool bOk, const FSourceModList& List) {
        Failures += bOk ? 0 : 1;
        EXPECT_EQ(List.Mods.size(), 3u) << "the old rows stay";
    });
    Client.QuerySourceMods();
    EXPECT_EQ(Failures, 1);
    EXPECT_FALSE(Client.bSourceQueryBusy);
}

// Before an install: the answer must be about the mod asked for, whatever a server puts in it.
TEST(SourceModFetch, OnlyTheModAskedForIsReturnedAndEveryRefusalSaysWhy)
{
    struct FCase
    {
        std::string Name;
        std::string ModId;
        FCannedHttp::FAnswer Answer;
        std::string Found;        // plug-in name returned, empty when refused
        std::string Why;          // part of the reason given
    };
    const std::vector<FCase> Cases = {
        {"the mod asked for", "909", {true, 200, R"({"result_count": 2, "data": [{"id": 906}, {"id": 909}]})"}, "UGC909", ""},
        {"another mod only", "909", {true, 200, R"({"result_count": 1, "data": [{"id": 906}]})"}, "", "another mod (UGC906)"},
        {"no such mod", "909", {true, 200, R"({"result_count": 0, "data": []})"}, "", "no shared source plug-in with id 909"},
        {"an error answer", "909", {true, 403, R"({"error": {"code": 403, "error_ref": 15025, "message": "Not for you."}})"}, "",
            "Not for you. (HTTP 403, error_ref 15025)"},
        {"no answer", "909", {false, 0, ""}, "", "could not be reached"},
        {"a path for an id", "1/../x", {}, "", "not a mod id"},
        {"a leading zero", "0909", {}, "", "not a mod id"}};
    for (const FCase& Case : Cases)
    {
        SCOPED_TRACE(Case.Name);
        FFakePlatform Fakes;
        FCannedHttp Http;
        FMaptornPlatform Platform{Fakes.Log, Fakes.Dialogs, Fakes.Engine, Fakes.Definitions, Fakes.Processes, Fakes.Tasks, Http, Fakes.Archive, &Fakes.Session};
        FModioInterface Client(Platform, FMaptornConfig{"", "https://h", 7, "KEY"});
        Http.Answers.push_back(Case.Answer);
        std::optional<std::string> Found;
        std::string Why;
        Client.FetchSourceMod(Case.ModId, [&](bool bFound, FSourceModInfo Info, std::string Reason) {
            Found = bFound ? Info.PluginName : std::string();
            Why = Reason;
        });
        Http.Pump();
        for (int Retry = 0; Retry < 4 && !Found; ++Retry)
        {
            Client.TickRequests(1.0f);
            Http.Pump();
        }
        ASSERT_TRUE(Found.has_value());
        EXPECT_EQ(*Found, Case.Found);
        EXPECT_NE(Why.find(Case.Why), std::string::npos) << Why;
        if (Case.Why == "not a mod id")
        {
            EXPECT_TRUE(Http.Sent.empty()) << "nothing is asked with a bad id";
        }
        else
        {
            ASSERT_EQ(Http.Sent.size(), Case.Answer.bConnected ? 1u : 4u) << "a read without answer is asked three times more";
            EXPECT_EQ(Http.Sent[0]->GetURL(), "https://h/v1/games/7/mods?api_key=KEY&id=" + Case.ModId);
        }
    }
}
