// Downloading a shared source plug-in from the sandbox over the real HTTP adapter, extracting it
// with the real ZIP adapter and installing it into a temporary project.

#include "Module/MaptornModule.h"
#include "Support/SandboxFixture.h"

#include <filesystem>

using namespace Maptorn;
using namespace Maptorn::Testing;
namespace fs = std::filesystem;

namespace
{
class PluginDownload : public FSandboxTest
{
protected:
    PluginDownload() { Module.ModioClient = std::make_unique<FModioInterface>(Platform, ModioConfig()); }

    FModioInterface& Client() { return *Module.ModioClient; }

    FSourceModInfo Fetch(const std::string& ModId)
    {
        std::optional<FSourceModInfo> Record;
        Client().FetchSourceMod(ModId, [&](bool bFound, FSourceModInfo Info, std::string) { Record = bFound ? Info : FSourceModInfo{}; });
        Tick([&] { return Record.has_value(); });
        Client().LastSourceModList.Mods = {*Record};
        return *Record;
    }

    void Tick(const std::function<bool()>& Done)
    {
        TickUntil(Done, [this] { Module.Tick(1.0f / 60.0f); });
    }

    void DownloadAndWait(const FSourceModInfo& Record)
    {
        Client().QueueDownload(Record);
        Tick([&] { return !Client().ActiveDownload && Client().DownloadQueue.empty(); });
    }

    fs::path Plugin(const std::string& Name) const { return Temp.Path() / "Project/Plugins" / Name; }

    FMaptornModule Module{Platform, FMaptornConfig{}};
};
}

TEST_F(PluginDownload, ASourcePluginIsDownloadedInRangesExtractedAndInstalled)
{
    const FSourceModInfo Record = Fetch("1006");
    ASSERT_FALSE(Record.BinaryUrl.empty());
    DownloadAndWait(Record);

    EXPECT_TRUE(fs::exists(Plugin("UGC1006") / "UGC1006.uplugin"));
    EXPECT_TRUE(fs::exists(Plugin("UGC1006") / "Content/definition.json"));
    EXPECT_EQ(Client().FinishedDownloads.count("1006"), 1u);
    EXPECT_EQ(Client().LastSourceModList.Mods[0].InstallState, static_cast<uint8>(ESourceModInstallState::InstalledRestartRequired));
    EXPECT_FALSE(fs::exists(Temp.Path() / "Project/Saved/Downloads/UGC1006/UGC1006")) << "the unpacked copy is moved away";
    EXPECT_TRUE(Fakes.Log.Has("LogTemp", ELogVerbosity::Log, "[MOD] Mod UGC1006 successfully downloaded"));

    bool bRanged = false;
    for (const Sandbox::FRecordedRequest& Request : Sandbox.RequestLog())
    {
        bRanged = bRanged || (Request.Headers.count("range") && Request.Headers.at("range") == "bytes=0-511999999" && Request.Status == 206);
    }
    EXPECT_TRUE(bRanged);
}

TEST_F(PluginDownload, AnExistingPluginIsReplacedWhole)
{
    fs::create_directories(Plugin("UGC1005") / "Content");
    WriteTextFile(Plugin("UGC1005") / "Content/OldOnly.txt", "from before");
    DownloadAndWait(Fetch("1005"));
    EXPECT_TRUE(fs::exists(Plugin("UGC1005") / "UGC1005.uplugin"));
    EXPECT_FALSE(fs::exists(Plugin("UGC1005") / "Content/OldOnly.txt"));
}

TEST_F(PluginDownload, AFailedDownloadLeavesTheWorkingPluginAndOffersTheDownloadAgain)
{
    fs::create_directories(Plugin("UGC1007"));
    WriteTextFile(Plugin("UGC1007") / "UGC1007.uplugin", "my work");
    FPluginInfo Existing;
    Existing.Name = "UGC1007";
    Fakes.Engine.Plugins.push_back(Existing);
    const FSourceModInfo Record = Fetch("1007");

    for (const Sandbox::EFaultKind Kind : {Sandbox::EFaultKind::CloseMidBody, Sandbox::EFaultKind::TruncateBody, Sandbox::EFaultKind::Status})
    {
        // A cut chunk is asked for three times more.
        Sandbox.InjectFault({"/sandbox/files", "", Kind == Sandbox::EFaultKind::Status ? 1 : 4, Kind, 500, 0});
        DownloadAndWait(Record);
        EXPECT_EQ(ReadTextFile(Plugin("UGC1007") / "UGC1007.uplugin"), "my work") << static_cast<int>(Kind);
        EXPECT_EQ(Client().FinishedDownloads.count("1007"), 0u);
        EXPECT_EQ(Client().LastSourceModList.Mods[0].InstallState, static_cast<uint8>(ESourceModInstallState::RequiresUpdate));
    }
}

TEST_F(PluginDownload, QueuedDownloadsRunOneAfterAnother)
{
    const FSourceModInfo First = Fetch("1005");
    const FSourceModInfo Second = Fetch("1006");
    Client().LastSourceModList.Mods = {First, Second};
    Client().QueueDownload(First);
    Client().QueueDownload(Second);
    EXPECT_EQ(Client().DownloadQueue.size(), 1u);
    EXPECT_EQ(Client().LastSourceModList.Mods[1].InstallState, static_cast<uint8>(ESourceModInstallState::DownloadPending));
    Tick([&] { return !Client().ActiveDownload && Client().DownloadQueue.empty(); });
    EXPECT_TRUE(fs::exists(Plugin("UGC1005") / "UGC1005.uplugin"));
    EXPECT_TRUE(fs::exists(Plugin("UGC1006") / "UGC1006.uplugin"));
}

TEST_F(PluginDownload, ACancelDuringExtractionWaitsForTheWorkerThenLeavesNothingAndThePluginAsItWas)
{
    fs::create_directories(Plugin("UGC1005"));
    WriteTextFile(Plugin("UGC1005") / "UGC1005.uplugin", "my work");
    const FSourceModInfo Record = Fetch("1005");
    Client().QueueDownload(Record);

    // Only the game thread's completions run, so the download stops in Extracting: the module's
    // tick, which would install, has not run yet when the cancel (the host's Ctrl-C) arrives.
    TickUntil([&] { return Client().ActiveDownload->GetState() == EPluginDownloadState::Extracting; });
    const std::shared_ptr<FPluginModDownload> Download = Client().ActiveDownload;
    Client().CancelDownloads();
    Tick([&] { return !Client().ActiveDownload; });

    EXPECT_EQ(Download->GetState(), EPluginDownloadState::Failed);
    EXPECT_FALSE(fs::exists(Download->ArchivePath()));
    EXPECT_FALSE(fs::exists(Download->ExtractFolder()));
    EXPECT_EQ(ReadTextFile(Plugin("UGC1005") / "UGC1005.uplugin"), "my work");
    EXPECT_EQ(Client().FinishedDownloads.count("1005"), 0u);
}
