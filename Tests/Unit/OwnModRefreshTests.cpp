#include "Modio/ModioInterface.h"
#include "Support/CannedHttp.h"
#include "Support/FakePlatform.h"

#include <gtest/gtest.h>

using namespace Maptorn;
using namespace Maptorn::Testing;

namespace
{
class OwnModRefresh : public ::testing::Test
{
protected:
    OwnModRefresh()
        : Client(Platform, FMaptornConfig{"", "https://g-7.modapi.io", 7, "KEY"})
    {
        Fakes.Session.Token = "tok";
        FPluginInfo Plugin;
        Plugin.Name = "UGC11";
        Fakes.Engine.Plugins.push_back(Plugin);
        Fakes.Definitions.Add("/UGC11/definition", EModType::Map)->Version = 4;
        Client.OnUploadListUpdated.Add([this] { ++Notified; });
    }

    void Refresh(FCannedHttp::FAnswer Answer)
    {
        Http.Answers.push_back(Answer);
        Client.RefreshOwnMods();
        Http.Pump();
        // A read with no answer is asked again a few times (the canned port then has none left).
        for (int Retry = 0; Retry < 4 && Client.bOwnModRefreshBusy; ++Retry)
        {
            Client.TickRequests(1.0f);
            Http.Pump();
        }
    }

    FFakePlatform Fakes;
    FCannedHttp Http;
    FMaptornPlatform Platform{Fakes.Log, Fakes.Dialogs, Fakes.Engine, Fakes.Definitions, Fakes.Processes, Fakes.Tasks, Http, Fakes.Archive, &Fakes.Session};
    FModioInterface Client;
    int Notified = 0;
};
}

TEST_F(OwnModRefresh, OnlyLiveModsWithALocalPluginAreListedWithTheirVersions)
{
    FPluginInfo Deleted;
    Deleted.Name = "UGC13";
    Fakes.Engine.Plugins.push_back(Deleted);
    Refresh({true, 200, R"({"data": [{"id": 11, "tags": [{"name": "Map"}], "modfile": {"version": "4"}}, {"id": 12, "name": "Elsewhere"},
        {"name": "no id"}, {"id": 13, "status": 3, "tags": [{"name": "Map"}]}]})"});
    ASSERT_EQ(Client.OwnMods.size(), 1u);
    EXPECT_EQ(Client.OwnMods[0].PluginName, "UGC11");
    EXPECT_EQ(Client.OwnMods[0].InstallState, static_cast<uint8>(ESourceModInstallState::Installed));
    EXPECT_EQ(Client.OwnModVersions, (std::map<std::string, int32>{{"11", 4}}));
    EXPECT_EQ(Notified, 1);
}

TEST_F(OwnModRefresh, AnUnparsableAnswerEmptiesTheVersionsButKeepsTheRows)
{
    Refresh({true, 200, R"({"data": [{"id": 11, "tags": [{"name": "Map"}]}]})"});
    Refresh({true, 200, "{\"data\": [ broken"});
    EXPECT_TRUE(Fakes.Log.Has("LogTemp", ELogVerbosity::Log, "Failed to deserialize Mod.io GetMods response"));
    EXPECT_TRUE(Client.OwnModVersions.empty());
    EXPECT_EQ(Client.OwnMods.size(), 1u);
    EXPECT_EQ(Notified, 1);
}

TEST_F(OwnModRefresh, NeitherAnErrorAnswerNorATransportFailureChangesTheList)
{
    Refresh({true, 200, R"({"data": [{"id": 11, "tags": [{"name": "Map"}], "modfile": {"version": "4"}}]})"});
    Refresh({false, 0, ""});
    EXPECT_EQ(Client.OwnMods.size(), 1u) << "no answer: lists untouched";
    EXPECT_FALSE(Client.bOwnModRefreshBusy);
    // An error body that happens to hold an empty "data" is still an error.
    Refresh({true, 401, R"({"data": [], "error": {"code": 401, "error_ref": 11005, "message": "expired"}})"});
    EXPECT_EQ(Client.OwnMods.size(), 1u);
    EXPECT_EQ(Client.OwnModVersions.size(), 1u);
    EXPECT_EQ(Notified, 1);
}

TEST_F(OwnModRefresh, WithoutTheSessionNothingIsSent)
{
    Platform.ModioSession = nullptr;
    Client.RefreshOwnMods();
    EXPECT_TRUE(Http.Sent.empty());
    EXPECT_FALSE(Client.bOwnModRefreshBusy);
}
