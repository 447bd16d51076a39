#include "Modio/ModioInterface.h"
#include "Modio/ModioRequests.h"
#include "Modio/SourceModReader.h"
#include "Support/FakePlatform.h"
#include "Support/TempDir.h"

#include <gtest/gtest.h>

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
    EXPECT_EQ(Info.Version, 3);
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
        "modfile": {"version": 1e300, "filesize": -1e300, "download": "nope"}})");
    EXPECT_EQ(Info.PluginName, "UGC77");
    EXPECT_EQ(Info.Name, "5");
    EXPECT_TRUE(Info.Tags.empty());
    EXPECT_EQ(Info.Version, std::numeric_limits<int32>::max());
    EXPECT_EQ(Info.FileSize, std::numeric_limits<int64>::min());
    EXPECT_EQ(Info.BinaryUrl, "");
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
        "http://h/v1/games/7/mods?api_key=KEY&tags=Mod&id-in=12,9&name-lk=*neon*&_offset=40&_limit=20");

    Query.SortType = ESourceModQueryType::Popular;
    Query.FilterTags = {"Map", "Ignored"};
    Query.SearchText.clear();
    Query.PageLimit = 0;
    EXPECT_EQ(ModioRequests::CatalogueUrl("http://h", 7, "KEY", Query, {"12"}), "http://h/v1/games/7/mods?api_key=KEY&tags=Map&_sort=-popular");
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
