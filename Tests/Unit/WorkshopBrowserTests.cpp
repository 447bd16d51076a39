#include "Module/MaptornModule.h"
#include "Support/CannedHttp.h"
#include "Support/FakePlatform.h"
#include "Support/TempDir.h"
#include "Workshop/WorkshopController.h"

#include <gtest/gtest.h>

using namespace Maptorn;
using namespace Maptorn::Testing;

namespace
{
FSourceModInfo CatalogueMod(const std::string& Id, ESourceModInstallState State = ESourceModInstallState::NotInstalled)
{
    FSourceModInfo Mod;
    Mod.PluginName = "UGC" + Id;
    Mod.Name = "Plugin " + Id;
    Mod.InstallState = static_cast<uint8>(State);
    Mod.BinaryUrl = "https://files.example/" + Id + ".zip";
    Mod.ProfileUrl = "https://mod.io/m/" + Id;
    return Mod;
}

class WorkshopBrowser : public ::testing::Test
{
protected:
    WorkshopBrowser()
        : Module(Platform, FMaptornConfig{"", "https://g-7.modapi.io", 7, "KEY"})
    {
        Fakes.Engine.Project = Project.Dir();
        Module.ModioClient = std::make_unique<FModioInterface>(Platform, Module.GetConfig());
        Client = Module.ModioClient.get();
        Controller = std::make_unique<FWorkshopController>();
        Controller->ViewEvents.ScrollSourceModsToStart = [this] { ++Scrolled; };
    }

    void ShowPage(int32 Current, int32 Total)
    {
        Client->LastSourceModList.CurrentPage = Current;
        Client->LastSourceModList.TotalPages = Total;
        Client->LastSourceModList.TotalResults = Total * 20;
    }

    // Ends the running query with an error answer (one that is not asked again).
    void AnswerQuery()
    {
        Http.Answers.push_back({true, 500, ""});
        Http.Pump();
    }

    void AddProjectPlugin(const std::string& Name)
    {
        FPluginInfo Plugin;
        Plugin.Name = Name;
        Fakes.Engine.Plugins.push_back(Plugin);
    }

    FTempDir Project;
    FFakePlatform Fakes;
    FCannedHttp Http;
    FMaptornPlatform Platform{Fakes.Log, Fakes.Dialogs, Fakes.Engine, Fakes.Definitions, Fakes.Processes, Fakes.Tasks, Http, Fakes.Archive, &Fakes.Session};
    FMaptornModule Module;
    FModioInterface* Client = nullptr;
    std::unique_ptr<FWorkshopController> Controller;
    int Scrolled = 0;
};
}

TEST_F(WorkshopBrowser, PagingWaitsForTheRunningQuery)
{
    ShowPage(2, 3);
    Client->bSourceQueryBusy = true;
    EXPECT_FALSE(Controller->IsNextPageEnabled());
    EXPECT_FALSE(Controller->IsPreviousPageEnabled());
    EXPECT_FALSE(Controller->CanGatherSourceMods());
    Controller->OnNextModPageClicked();
    EXPECT_EQ(Client->SourceQuery.PageOffset, 0);
    EXPECT_TRUE(Http.Sent.empty());
}

TEST_F(WorkshopBrowser, SearchInAnotherLetterCaseDoesNotQueryAgain)
{
    Client->SourceQuery.PageOffset = 40;
    Controller->OnSourceModSearchChanged("Castle");
    ASSERT_EQ(Http.Sent.size(), 1u);
    EXPECT_EQ(Client->SourceQuery.SearchText, "Castle");
    EXPECT_EQ(Client->SourceQuery.PageOffset, 0);
    EXPECT_NE(Http.Sent[0]->GetURL().find("name-lk=%2ACastle%2A"), std::string::npos);
    AnswerQuery();

    Controller->OnSourceModSearchChanged("CASTLE");
    Controller->OnSourceModSearchChanged("castle");
    EXPECT_EQ(Http.Sent.size(), 1u);
    EXPECT_EQ(Client->SourceQuery.SearchText, "Castle");

    Controller->OnSourceModSearchChanged("Castles");
    EXPECT_EQ(Http.Sent.size(), 2u);
}

TEST_F(WorkshopBrowser, ASearchTypedWhileAQueryRunsIsSentWhenItAnswers)
{
    Controller->OnSourceModSearchChanged("Cas");
    ASSERT_EQ(Http.Sent.size(), 1u);
    Controller->OnSourceModSearchChanged("Castle");
    EXPECT_EQ(Http.Sent.size(), 1u);

    AnswerQuery();
    ASSERT_EQ(Http.Sent.size(), 2u);
    EXPECT_NE(Http.Sent[1]->GetURL().find("name-lk=%2ACastle%2A"), std::string::npos);
    AnswerQuery();
    EXPECT_EQ(Http.Sent.size(), 2u);
}

TEST_F(WorkshopBrowser, ChangingTheSortStartsAtTheFirstResult)
{
    Client->SourceQuery.PageOffset = 40;
    Controller->UpdatedFilters(std::nullopt);
    EXPECT_TRUE(Http.Sent.empty());

    Controller->UpdatedFilters(ESourceModQueryType::NameAscending);
    EXPECT_EQ(Client->SourceQuery.SortType, ESourceModQueryType::NameAscending);
    EXPECT_EQ(Client->SourceQuery.PageOffset, 0);
    ASSERT_EQ(Http.Sent.size(), 1u);
    EXPECT_NE(Http.Sent[0]->GetURL().find("&_sort=name"), std::string::npos);
    EXPECT_EQ(Scrolled, 1) << "a new query shows its rows from the top";
}

TEST_F(WorkshopBrowser, AnsweredPagesReplaceTheRowsAndFailedOnesKeepThem)
{
    int Rebuilt = 0;
    Controller->ViewEvents.SourceModRowsRebuilt = [&Rebuilt] { ++Rebuilt; };
    FSourceModList Page;
    Page.Mods = {CatalogueMod("1"), CatalogueMod("2")};
    Client->OnSourceModListUpdated.Broadcast(true, Page);
    ASSERT_EQ(Controller->GetSourceModRows().size(), 2u);
    EXPECT_EQ(Controller->GetSourceModRows()[1].GetModInfo().Name, "Plugin 2");

    Client->OnSourceModListUpdated.Broadcast(false, FSourceModList{});
    EXPECT_EQ(Controller->GetSourceModRows().size(), 2u);
    EXPECT_EQ(Rebuilt, 1);
}

TEST_F(WorkshopBrowser, ALogoArrivingRebuildsTheRowsFromTheClientsPage)
{
    Client->LastSourceModList.Mods = {CatalogueMod("1")};
    Client->LastSourceModList.Mods[0].ThumbnailPath = "/cache/UGC1.png";
    Client->OnSourceModImageCreated.Broadcast(Client->LastSourceModList.Mods[0]);
    ASSERT_EQ(Controller->GetSourceModRows().size(), 1u);
    EXPECT_EQ(Controller->GetSourceModRows()[0].GetModInfo().ThumbnailPath, "/cache/UGC1.png");
}

TEST_F(WorkshopBrowser, APluginAlreadyInTheProjectIsOnlyQueuedAfterYes)
{
    AddProjectPlugin("UGC5");
    const FSourceModInfo Mod = CatalogueMod("5", ESourceModInstallState::RequiresUpdate);
    Fakes.Dialogs.Answers = {EAppReturnType::No, EAppReturnType::Yes};

    Controller->OnDownloadSourceModClicked(Mod);
    ASSERT_EQ(Fakes.Dialogs.MessageBoxes.size(), 1u);
    EXPECT_EQ(Fakes.Dialogs.MessageBoxes[0].Type, EAppMsgType::YesNo);
    EXPECT_EQ(Fakes.Dialogs.MessageBoxes[0].Caption, "Kelvor Workshop Source Download");
    EXPECT_EQ(Fakes.Dialogs.MessageBoxes[0].Text,
        "You are downloading UGC5 this may be a plugin you're currently working on. This will OVERWRITE the files in your Plugin UGC5 "
        "with the ones from mod.io. Please create a backup first if you do not have one. \r\n \r\n Proceed with download?");
    EXPECT_FALSE(Client->ActiveDownload);

    Controller->OnDownloadSourceModClicked(Mod);
    EXPECT_EQ(Fakes.Dialogs.MessageBoxes.size(), 2u);
    // The download starts once mod.io has said the plug-in needs no other.
    Http.Answers.push_back({true, 200, R"({"data":[]})"});
    Http.Pump();
    EXPECT_TRUE(Client->ActiveDownload);
}

TEST_F(WorkshopBrowser, RowStatusWordsAndWhichRowsCanBeAdded)
{
    const std::pair<ESourceModInstallState, const char*> Expected[] = {
        {ESourceModInstallState::NotInstalled, "Status: Not Installed"},
        {ESourceModInstallState::Installed, "Status: Installed"},
        {ESourceModInstallState::RequiresUpdate, "Status: Requires Update"},
        {ESourceModInstallState::Downloading, "Status: Downloading"},
        {ESourceModInstallState::DownloadPending, "Status: Download Pending"},
        {ESourceModInstallState::InstalledRestartRequired, "Status: Installed, Editor Restart Required"},
    };
    for (const auto& [State, Text] : Expected)
    {
        const FWorkshopSourcePluginEntry Row(CatalogueMod("1", State), {}, nullptr);
        EXPECT_EQ(Row.GetStatusText(), Text);
        const bool bOffered = State == ESourceModInstallState::NotInstalled || State == ESourceModInstallState::RequiresUpdate;
        EXPECT_EQ(Row.IsButtonEnabled(), bOffered) << Text;
    }
}

TEST_F(WorkshopBrowser, AnUpdatedRecordChangesTheRowsStatusAndItsPageLink)
{
    FWorkshopSourcePluginEntry Row(CatalogueMod("2"), {}, nullptr);
    Row.UpdateModInfo(CatalogueMod("1", ESourceModInstallState::Installed));
    EXPECT_FALSE(Row.IsButtonEnabled());
    EXPECT_TRUE(Row.OnOpenModPageClicked());
    EXPECT_EQ(Fakes.Dialogs.OpenedUrls, std::vector<std::string>{"https://mod.io/m/1"});
}

TEST_F(WorkshopBrowser, DownloadLineNamesTheModTheBytesThePercentAndWhatRemains)
{
    EXPECT_EQ(Controller->GetModDownloadVisibility(), EVisibility::Hidden);
    EXPECT_EQ(Controller->GetDownloadProgressText(), "Finishing up...");
    EXPECT_EQ(Controller->GetDownloadProgress(), std::optional<float>(0.0f));

    auto Download = std::make_shared<FPluginModDownload>(Platform);
    Download->ModName = "UGC5";
    Download->ReceivedBytes = 1536;
    Download->TotalBytes = 3 * 1024 * 1024;
    Download->Progress = 0.29f;
    Client->ActiveDownload = Download;
    Client->DownloadQueue = {CatalogueMod("6"), CatalogueMod("7")};
    Client->DownloadsRemaining = 2;

    EXPECT_EQ(Controller->GetModDownloadVisibility(), EVisibility::Visible);
    EXPECT_EQ(Controller->GetDownloadProgress(), std::optional<float>(0.29f));
    EXPECT_EQ(Controller->GetDownloadProgressText(), "Downloading UGC5 - 1.50 KB/3.00 MB 29% - 3 Mods Remaining");

    Download->ModName.clear();
    Client->DownloadQueue.clear();
    Client->DownloadsRemaining = 0;
    EXPECT_EQ(Controller->GetDownloadProgressText(), "Downloading None - 1.50 KB/3.00 MB 29% - 1 Mods Remaining");
}
