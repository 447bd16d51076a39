// The catalogue query, the own-mod refresh and dependencies of the mod.io client, over the real
// HTTP adapter against the sandbox service on loopback.

#include "Modio/ModioInterface.h"
#include "ModioService/SandboxZip.h"
#include "Support/DefaultLogoBytes.h"
#include "Support/SandboxFixture.h"

#include <httplib.h>
#include <nlohmann/json.hpp>
#include <gtest/gtest.h>

#include <filesystem>

using namespace Maptorn;
using namespace Maptorn::Testing;
namespace fs = std::filesystem;

namespace
{
class SourceCatalogue : public FSandboxTest
{
protected:
    SourceCatalogue()
    {
        Client = std::make_unique<FModioInterface>(Platform, ModioConfig());
        Client->SourceQuery.PageLimit = 20;
        Client->OnSourceModListUpdated.Add([this](bool bOk, const FSourceModList&) { Answers.push_back(bOk); });
    }

    bool Query()
    {
        const std::size_t Before = Answers.size();
        Client->QuerySourceMods();
        TickUntil([&] { return Answers.size() > Before; }, [this] { Client->TickRequests(1.0f / 60.0f); });
        return Answers.back();
    }

    Sandbox::FRecordedRequest LastRequestTo(const std::string& Path) const
    {
        const std::vector<Sandbox::FRecordedRequest> Log = Sandbox.RequestLog();
        for (auto It = Log.rbegin(); It != Log.rend(); ++It)
        {
            if (It->Path == Path)
            {
                return *It;
            }
        }
        ADD_FAILURE() << "no request to " << Path;
        return {};
    }

    // The query string the service received last, after the api key.
    std::string LastCatalogueQuery() const
    {
        const std::string Query = LastRequestTo("/v1/games/1/mods").Query;
        return Query.substr(std::min(Query.find("&tags="), Query.size()));
    }

    bool LogMentions(const std::string& Secret) const
    {
        return std::any_of(Fakes.Log.Lines.begin(), Fakes.Log.Lines.end(), [&](const FLogLine& Line) { return Line.Message.find(Secret) != std::string::npos; });
    }

    std::unique_ptr<FModioInterface> Client;
    std::vector<bool> Answers;
};
}

TEST_F(SourceCatalogue, EachSortOrderReachesTheServiceInTheFixedUrlOrder)
{
    FPluginInfo Local;
    Local.Name = "UGC1005";
    Fakes.Engine.Plugins.push_back(Local);
    const std::vector<std::string> Expected = {"&tags=Mod&id-in=1005", "&tags=Mod&_sort=-downloads_today",
        "&tags=Mod&_sort=-subscribers_total", "&tags=Mod&_sort=-date_live", "&tags=Mod&_sort=-date_updated",
        "&tags=Mod&_sort=-ratings_weighted_aggregate", "&tags=Mod&_sort=-downloads_total", "&tags=Mod&_sort=name", "&tags=Mod&_sort=-name"};
    for (uint32 Sort = 0; Sort < Expected.size(); ++Sort)
    {
        Client->SourceQuery.SortType = static_cast<ESourceModQueryType>(Sort);
        ASSERT_TRUE(Query()) << Sort;
        EXPECT_EQ(LastCatalogueQuery(), Expected[Sort] + "&_offset=0&_limit=20") << Sort;
    }
    EXPECT_EQ(Client->LastSourceModList.Mods.size(), 20u) << "a full first page";
}

TEST_F(SourceCatalogue, TheQueryCarriesTheCatalogueHeadersAndNoLogin)
{
    Fakes.Session.Token = "secret-token";
    ASSERT_TRUE(Query());
    const Sandbox::FRecordedRequest Request = LastRequestTo("/v1/games/1/mods");
    EXPECT_EQ(Request.Headers.at("accept"), "application/json");
    EXPECT_EQ(Request.Headers.at("user-agent"), "Kelvor Client");
    EXPECT_EQ(Request.Headers.at("x-modio-platform"), "source");
    EXPECT_EQ(Request.Headers.count("authorization"), 0u);
}

TEST_F(SourceCatalogue, SearchesOfUpTo32CharactersAndPagingWithAPositiveLimitAreSent)
{
    Client->SourceQuery.SearchText = std::string(32, 'k');
    ASSERT_TRUE(Query());
    EXPECT_NE(LastCatalogueQuery().find("&name-lk=%2A" + std::string(32, 'k') + "%2A"), std::string::npos);
    EXPECT_TRUE(Client->LastSourceModList.Mods.empty());

    Client->SourceQuery.SearchText = std::string(33, 'k');
    Client->SourceQuery.PageLimit = 0;
    ASSERT_TRUE(Query());
    EXPECT_EQ(LastCatalogueQuery(), "&tags=Mod&_sort=-downloads_today");
    EXPECT_EQ(Client->LastSourceModList.Mods.size(), static_cast<std::size_t>(Client->LastSourceModList.TotalResults)) << "the service's own page size";
}

TEST_F(SourceCatalogue, TheSecondPageIsPageTwoOfTwo)
{
    Client->SourceQuery.PageOffset = 20;
    ASSERT_TRUE(Query());
    const FSourceModList& Page = Client->LastSourceModList;
    ASSERT_GT(Page.TotalResults, 20);
    ASSERT_LE(Page.TotalResults, 40);
    EXPECT_EQ(Page.Mods.size(), static_cast<std::size_t>(Page.TotalResults - 20));
    EXPECT_EQ(Page.CurrentPage, 2);
    EXPECT_EQ(Page.TotalPages, 2);
}

TEST_F(SourceCatalogue, AQueryIsIgnoredWhileOneIsInFlight)
{
    Client->QuerySourceMods();
    Client->QuerySourceMods();
    TickUntil([&] { return !Answers.empty() && !Client->bSourceQueryBusy; });
    for (int Frame = 0; Frame < 20; ++Frame)
    {
        Tasks.PumpGameThread();
    }
    EXPECT_EQ(Answers.size(), 1u);
}

TEST_F(SourceCatalogue, FaultsEndInAFailedAnswerThatKeepsTheRowsAndClearsTheFlag)
{
    ASSERT_TRUE(Query());
    const std::size_t Rows = Client->LastSourceModList.Mods.size();
    for (const Sandbox::EFaultKind Kind : {Sandbox::EFaultKind::Status, Sandbox::EFaultKind::CloseMidBody, Sandbox::EFaultKind::TruncateBody})
    {
        // Broken reads are tried three times more.
        Sandbox.InjectFault({"/v1/games/1/mods", "GET", Kind == Sandbox::EFaultKind::Status ? 1 : 4, Kind, 500, 0});
        EXPECT_FALSE(Query()) << static_cast<int>(Kind);
        EXPECT_FALSE(Client->bSourceQueryBusy);
        EXPECT_EQ(Client->LastSourceModList.Mods.size(), Rows);
    }
    Sandbox.InjectFault({"/v1/games/1/mods", "GET", 1, Sandbox::EFaultKind::Stall, 200, 300});
    EXPECT_TRUE(Query()) << "a slow answer is still an answer";
}

TEST_F(SourceCatalogue, LogosAreCachedAsThumbnailsAndTheWindowIsTold)
{
    std::vector<std::string> Arrived;
    Client->OnSourceModImageCreated.Add([&](const FSourceModInfo& Info) { Arrived.push_back(Info.PluginName); });
    ASSERT_TRUE(Query());
    TickUntil([&] { return Arrived.size() == Client->LastSourceModList.Mods.size(); });
    for (const FSourceModInfo& Info : Client->LastSourceModList.Mods)
    {
        EXPECT_EQ(Info.ThumbnailPath, Temp.Dir() + "Project/Saved/ModThumbnails/" + Info.PluginName + ".png");
        EXPECT_TRUE(fs::exists(Info.ThumbnailPath));
    }
}

TEST_F(SourceCatalogue, OnlyOwnModsWithALocalPluginAreOfferedForUpload)
{
    Fakes.Session.Token = Sandbox.IssueTokenFor("modder@example.com");
    FPluginInfo Local;
    Local.Name = "UGC1001";
    Fakes.Engine.Plugins.push_back(Local);
    Fakes.Definitions.Add("/UGC1001/definition", EModType::Map);
    bool bUpdated = false;
    Client->OnUploadListUpdated.Add([&] { bUpdated = true; });

    Client->RefreshOwnMods();
    TickUntil([&] { return bUpdated; });

    ASSERT_EQ(Client->OwnMods.size(), 1u);
    EXPECT_EQ(Client->OwnMods[0].PluginName, "UGC1001");
    EXPECT_EQ(Client->OwnModVersions.size(), 1u);
    const Sandbox::FRecordedRequest Request = LastRequestTo("/v1/me/mods");
    EXPECT_EQ(Request.Query, "game_id=1");
    EXPECT_FALSE(LogMentions(Fakes.Session.Token));
    EXPECT_FALSE(LogMentions(ApiKey));
}

TEST_F(SourceCatalogue, DependenciesAreReadAndAddingOneNeedsTheSession)
{
    std::optional<std::vector<FModDependency>> Dependencies;
    Client->FetchDependencies("1006", [&](bool bOk, std::vector<FModDependency> List) { Dependencies = bOk ? List : std::vector<FModDependency>{}; });
    TickUntil([&] { return Dependencies.has_value(); });
    ASSERT_EQ(Dependencies->size(), 1u);
    EXPECT_EQ(Dependencies->at(0).ModId, "1005");

    FMaptornPlatform NoSession = Platform;
    NoSession.ModioSession = nullptr;
    FModioInterface Offline(NoSession, ModioConfig());
    std::optional<bool> bAdded;
    Offline.AddDependency("1001", "1005", [&](bool bOk) { bAdded = bOk; });
    EXPECT_EQ(bAdded, false);
    EXPECT_TRUE(Fakes.Log.Has("LogTemp", ELogVerbosity::Log, "Failed to get the modio subsystem"));

    Fakes.Session.Token = Sandbox.IssueTokenFor("modder@example.com");
    bAdded.reset();
    Client->AddDependency("1001", "1005", [&](bool bOk) { bAdded = bOk; });
    TickUntil([&] { return bAdded.has_value(); });
    EXPECT_EQ(bAdded, true);
}

TEST_F(SourceCatalogue, ALowerCaseModTagMakesAContentModAndAModWithoutFileHasNoVersion)
{
    const std::string Token = Sandbox.IssueTokenFor("modder@example.com");
    httplib::Client Service(Sandbox.GetBaseUrl());
    const httplib::MultipartFormDataItems Form = {{"logo", DefaultLogoBytes(), "logo.jpg", "image/jpeg"}, {"name", "Fresh Props", "", ""},
        {"summary", "No file yet.", "", ""}, {"tags[]", "mod", "", ""}};
    const httplib::Result Added = Service.Post("/v1/games/1/mods", {{"Authorization", "Bearer " + Token}}, Form);
    ASSERT_TRUE(Added && Added->status == 201) << (Added ? Added->body : "no answer");
    const std::string Id = std::to_string(nlohmann::json::parse(Added->body)["id"].get<int64>());

    Fakes.Session.Token = Token;
    FPluginInfo Local;
    Local.Name = "UGC" + Id;
    Fakes.Engine.Plugins.push_back(Local);
    bool bUpdated = false;
    Client->OnUploadListUpdated.Add([&] { bUpdated = true; });
    Client->RefreshOwnMods();
    TickUntil([&] { return bUpdated; });

    const auto Fresh = std::find_if(Client->OwnMods.begin(), Client->OwnMods.end(), [&](const FSourceModInfo& Info) { return Info.PluginName == "UGC" + Id; });
    ASSERT_NE(Fresh, Client->OwnMods.end());
    EXPECT_EQ(Fresh->ModType, EModType::Mod);
    EXPECT_EQ(Fresh->Version, "");
    EXPECT_EQ(Fresh->FileSize, 0);
    EXPECT_EQ(Fresh->BinaryUrl, "");
    EXPECT_EQ(Fresh->InstallState, static_cast<uint8>(ESourceModInstallState::RequiresUpdate)) << "plug-in here, no definition";
}
