#include "Module/MaptornModule.h"
#include "Support/FakePlatform.h"
#include "Support/TempDir.h"

#include <gtest/gtest.h>

using namespace Maptorn;
using namespace Maptorn::Testing;

namespace
{
class ModuleTick : public ::testing::Test
{
protected:
    ModuleTick()
        : WorkingDirectory(Temp.Path())
        , Module(Fakes.Platform, FMaptornConfig{})
    {
        Fakes.Engine.Project = Temp.Dir();
        Fakes.Engine.UserSettings = Temp.Dir() + "User/";
        Module.StartupModule();
        Client = Module.ModioClient.get();
    }
    ~ModuleTick() override { Module.ShutdownModule(); }

    FSourceModInfo CatalogueRecord(const std::string& Id)
    {
        FSourceModInfo Record;
        Record.PluginName = "UGC" + Id;
        Record.Version = "4";
        Record.InstallState = static_cast<uint8>(ESourceModInstallState::Downloading);
        return Record;
    }

    FTempDir Temp;
    FScopedWorkingDirectory WorkingDirectory;
    FFakePlatform Fakes;
    FMaptornModule Module;
    FModioInterface* Client = nullptr;
};
}

TEST_F(ModuleTick, WithoutAClientTheTickDoesNothing)
{
    Module.ModioClient.reset();
    const int Before = Fakes.Session.PumpCount;
    Module.Tick(1.0f);
    EXPECT_EQ(Fakes.Session.PumpCount, Before);
}

// Read only while an upload runs.
TEST_F(ModuleTick, UploadProgressIsAWholePercentAsAFraction)
{
    Fakes.Session.CurrentProgress = FModioModProgressInfo{1, EModioModProgressState::Uploading, 1236, 10000};
    Module.Tick(0.016f);
    EXPECT_FLOAT_EQ(Client->UploadProgress, 0.0f);

    Client->bIsUploading = true;
    Module.Tick(0.016f);
    EXPECT_FLOAT_EQ(Client->UploadProgress, 0.12f);
    EXPECT_FALSE(Client->bCompressing);

    Fakes.Session.CurrentProgress = FModioModProgressInfo{1, EModioModProgressState::Compressing, 995, 1000};
    Module.Tick(0.016f);
    EXPECT_FLOAT_EQ(Client->UploadProgress, 1.0f);
    EXPECT_TRUE(Client->bCompressing);
}

TEST_F(ModuleTick, TheOwnModCountdownRunsOnlyWhileLoggedInAndIdle)
{
    // A session that never comes up, so no verification moves the countdown.
    Fakes.Session.NextResult = {21769, "not initialised"};
    Module.Tick(0.0f);
    Fakes.Session.NextResult = {};
    Client->OwnModRefreshCountdown = 10.0f;
    Module.Tick(4.0f);
    EXPECT_FLOAT_EQ(Client->OwnModRefreshCountdown, 10.0f) << "logged out";

    Client->bIsLoggedIn = true;
    Client->bIsModioBusy = true;
    Module.Tick(4.0f);
    EXPECT_FLOAT_EQ(Client->OwnModRefreshCountdown, 10.0f) << "busy";

    Client->bIsModioBusy = false;
    Module.Tick(4.0f);
    EXPECT_FLOAT_EQ(Client->OwnModRefreshCountdown, 6.0f);
    Module.Tick(7.0f);
    EXPECT_FLOAT_EQ(Client->OwnModRefreshCountdown, 300.0f) << "refreshed and reset";
}

TEST_F(ModuleTick, AFinishedDownloadMarksItsRowForRestartAndStartsTheNextQueuedOne)
{
    Client->LastSourceModList.Mods = {CatalogueRecord("11"), CatalogueRecord("22")};
    Client->DownloadQueue.push_back(CatalogueRecord("22"));
    Client->DownloadsRemaining = 1;
    Client->ActiveDownload = std::make_unique<FPluginModDownload>(Fakes.Platform);
    Client->ActiveDownload->ModId = "11";
    Client->ActiveDownload->Version = 4;
    Client->ActiveDownload->State = EPluginDownloadState::Complete;
    int Notified = 0;
    Client->OnSourceModListUpdated.Add([&](bool bOk, const FSourceModList&) { Notified += bOk ? 1 : 0; });

    Module.Tick(0.016f);

    EXPECT_EQ(Client->LastSourceModList.Mods[0].InstallState, static_cast<uint8>(ESourceModInstallState::InstalledRestartRequired));
    EXPECT_EQ(Client->FinishedDownloads.at("11"), 4);
    EXPECT_EQ(Notified, 1);
    ASSERT_NE(Client->ActiveDownload, nullptr) << "the queued download started";
    EXPECT_EQ(Client->ActiveDownload->ModId, "22");
    EXPECT_TRUE(Client->DownloadQueue.empty());
    EXPECT_EQ(Client->DownloadsRemaining, 0);
}

TEST_F(ModuleTick, ADownloadFinishedWhileAnotherPageIsShownIsRememberedForItsRow)
{
    Client->LastSourceModList.Mods = {CatalogueRecord("22")};
    Client->ActiveDownload = std::make_unique<FPluginModDownload>(Fakes.Platform);
    Client->ActiveDownload->ModId = "11";
    Client->ActiveDownload->Version = 4;
    Client->ActiveDownload->State = EPluginDownloadState::Complete;

    Module.Tick(0.016f);

    EXPECT_EQ(Client->FinishedDownloads.at("11"), 4) << "the page that lists mod 11 later reads it as installed";
    EXPECT_EQ(Client->LastSourceModList.Mods[0].InstallState, CatalogueRecord("22").InstallState);
}

TEST_F(ModuleTick, AFailedDownloadOffersTheDownloadAgain)
{
    Client->LastSourceModList.Mods = {CatalogueRecord("11"), CatalogueRecord("12")};
    FPluginInfo Existing;
    Existing.Name = "UGC12";
    Fakes.Engine.Plugins.push_back(Existing);

    for (const char* Id : {"11", "12"})
    {
        Client->ActiveDownload = std::make_unique<FPluginModDownload>(Fakes.Platform);
        Client->ActiveDownload->ModId = Id;
        Client->ActiveDownload->State = EPluginDownloadState::Failed;
        Module.Tick(0.016f);
        EXPECT_EQ(Client->ActiveDownload, nullptr);
    }
    EXPECT_EQ(Client->LastSourceModList.Mods[0].InstallState, static_cast<uint8>(ESourceModInstallState::NotInstalled));
    EXPECT_EQ(Client->LastSourceModList.Mods[1].InstallState, static_cast<uint8>(ESourceModInstallState::RequiresUpdate))
        << "the plug-in that was there is still there";
    EXPECT_TRUE(Client->FinishedDownloads.empty());
}

