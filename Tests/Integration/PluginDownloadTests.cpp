// A shared source plug-in downloaded from the sandbox over the real HTTP adapter, extracted with
// the real ZIP adapter and installed into a temporary project, also while the sandbox misbehaves:
// rate limits, broken connections, ranges that start elsewhere and archives that are not what
// mod.io describes. Time passes through the module's tick only, so a 1 s retry-after costs a few frames.

#include "Module/MaptornModule.h"
#include "Support/ProjectSnapshot.h"
#include "Support/SandboxFixture.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <thread>

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

    void Tick(const std::function<bool()>& Done)
    {
        TickUntil(Done, [this] { Module.Tick(1.0f / 60.0f); });
    }

    FSourceModInfo Fetch(const std::string& ModId)
    {
        std::optional<FSourceModInfo> Record;
        Client().FetchSourceMod(ModId, [&](bool bFound, FSourceModInfo Info, std::string) { Record = bFound ? Info : FSourceModInfo{}; });
        Tick([&] { return Record.has_value(); });
        Client().LastSourceModList.Mods = {*Record};
        return *Record;
    }

    void DownloadAndWait(const FSourceModInfo& Record)
    {
        Client().QueueDownload(Record);
        Tick([&] { return !Client().ActiveDownload && Client().DownloadQueue.empty(); });
    }

    // Installs the mod; true when it ended installed.
    bool Install(const std::string& ModId)
    {
        DownloadAndWait(Fetch(ModId));
        return Client().FinishedDownloads.erase(ModId) == 1;
    }

    std::vector<Sandbox::FRecordedRequest> FileRequests() const
    {
        std::vector<Sandbox::FRecordedRequest> Found;
        for (const Sandbox::FRecordedRequest& Request : Sandbox.RequestLog())
        {
            if (Request.Path.starts_with("/sandbox/files/"))
            {
                Found.push_back(Request);
            }
        }
        return Found;
    }

    bool Logged(const std::string& Start) const
    {
        return std::any_of(Fakes.Log.Lines.begin(), Fakes.Log.Lines.end(), [&](const FLogLine& Line) { return Line.Message.starts_with(Start); });
    }

    size_t CatalogueRequests() const
    {
        const std::vector<Sandbox::FRecordedRequest> Log = Sandbox.RequestLog();
        return static_cast<size_t>(std::count_if(Log.begin(), Log.end(), [](const Sandbox::FRecordedRequest& Request) {
            return Request.Path == "/v1/games/1/mods";
        }));
    }

    fs::path Plugin(const std::string& Name) const { return Temp.Path() / "Project/Plugins" / Name; }

    FMaptornModule Module{Platform, FMaptornConfig{}};
};

Sandbox::FFault FilesFault(Sandbox::EFaultKind Kind, int Count)
{
    Sandbox::FFault Fault{"/sandbox/files/", "GET", Count, Kind, 200, 0};
    Fault.CutAfterBytes = 200;
    Fault.RangeShift = 100;
    return Fault;
}
}

TEST_F(PluginDownload, AnExistingPluginIsReplacedWhole)
{
    fs::create_directories(Plugin("UGC1005") / "Content");
    WriteTextFile(Plugin("UGC1005") / "Content/OldOnly.txt", "from before");
    DownloadAndWait(Fetch("1005"));
    EXPECT_TRUE(fs::exists(Plugin("UGC1005") / "UGC1005.uplugin"));
    EXPECT_FALSE(fs::exists(Plugin("UGC1005") / "Content/OldOnly.txt"));
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

// Installed in ranges, then again with faults that pass: the same bytes each time.
TEST_F(PluginDownload, ASourcePluginIsInstalledAndPassingFaultsAreRiddenOut)
{
    ASSERT_TRUE(Install("1006"));
    EXPECT_TRUE(fs::exists(Plugin("UGC1006") / "Content/definition.json"));
    EXPECT_EQ(Client().LastSourceModList.Mods[0].InstallState, static_cast<uint8>(ESourceModInstallState::InstalledRestartRequired));
    EXPECT_FALSE(fs::exists(Temp.Path() / "Project/Saved/Downloads/UGC1006/UGC1006")) << "the unpacked copy is moved away";
    EXPECT_TRUE(Fakes.Log.Has("LogTemp", ELogVerbosity::Log, "[MOD] Mod UGC1006 successfully downloaded"));
    ASSERT_EQ(FileRequests().size(), 1u);
    EXPECT_EQ(FileRequests()[0].Headers.at("range"), "bytes=0-511999999");
    EXPECT_EQ(FileRequests()[0].Status, 206);
    const FProjectSnapshot Clean = SnapshotTree(Plugin("UGC1006"));

    Sandbox::FFault RateLimited = FilesFault(Sandbox::EFaultKind::Status, 1);
    RateLimited.Status = 429;
    struct FCase
    {
        const char* What;
        Sandbox::FFault Fault;
        std::vector<std::string> Ranges; // asked for, in order
    };
    const std::vector<FCase> Cases = {
        {"a chunk answered 429 once", RateLimited, {"bytes=0-511999999", "bytes=0-511999999"}},
        {"a chunk cut once", FilesFault(Sandbox::EFaultKind::CloseAfter, 1), {"bytes=0-511999999", "bytes=200-511999999"}},
        {"a chunk cut three times", FilesFault(Sandbox::EFaultKind::CloseAfter, 3),
            {"bytes=0-511999999", "bytes=200-511999999", "bytes=400-511999999", "bytes=600-511999999"}},
    };
    for (const FCase& Case : Cases)
    {
        SCOPED_TRACE(Case.What);
        fs::remove_all(Plugin("UGC1006"));
        Sandbox.ClearRequestLog();
        Sandbox.InjectFault(Case.Fault);
        ASSERT_TRUE(Install("1006"));
        EXPECT_EQ(SnapshotTree(Plugin("UGC1006")), Clean);
        std::vector<std::string> Ranges;
        for (const Sandbox::FRecordedRequest& Request : FileRequests())
        {
            Ranges.push_back(Request.Headers.count("range") ? Request.Headers.at("range") : "");
        }
        EXPECT_EQ(Ranges, Case.Ranges);
    }
    EXPECT_TRUE(Fakes.Log.Has("LogTemp", ELogVerbosity::Warning, "mod.io asks to wait 1 s"));
}

// The project's own copy stays, and the row offers the download again.
TEST_F(PluginDownload, AFailedOrUntrustedDownloadLeavesThePluginAsItWas)
{
    fs::create_directories(Plugin("UGC1007"));
    WriteTextFile(Plugin("UGC1007") / "UGC1007.uplugin", "my work");
    FPluginInfo Existing;
    Existing.Name = "UGC1007";
    Fakes.Engine.Plugins.push_back(Existing);
    const FProjectSnapshot Before = SnapshotTree(Plugin(""));
    const std::string Md5 = Fetch("1007").FileMd5;
    ASSERT_EQ(Md5.size(), 32u);

    Sandbox::FFault Tampered{"/v1/games/1/mods", "GET", 1, Sandbox::EFaultKind::WrongFilehash};
    Sandbox::FFault ServerError = FilesFault(Sandbox::EFaultKind::Status, 1);
    ServerError.Status = 500;
    struct FCase
    {
        const char* What;
        Sandbox::FFault Fault;
        size_t FileRequests;
        std::string Why;
    };
    const std::vector<FCase> Cases = {
        {"cut on every try", FilesFault(Sandbox::EFaultKind::CloseAfter, 4), 4, "the server closed the connection after 200 of "},
        {"closed mid-body on every try", FilesFault(Sandbox::EFaultKind::CloseMidBody, 4), 4, ""},
        {"truncated on every try", FilesFault(Sandbox::EFaultKind::TruncateBody, 4), 4, ""},
        {"a server error", ServerError, 1, ""},
        {"a range that starts elsewhere", FilesFault(Sandbox::EFaultKind::ShiftRange, 1), 1,
            "the server answered another range than byte 0 onwards"},
        {"a file whose bytes are not mod.io's checksum", Tampered, 1,
            "its archive is not the file mod.io describes (MD5 00000000000000000000000000000000 expected, " + Md5 + " received)"},
    };
    for (const FCase& Case : Cases)
    {
        SCOPED_TRACE(Case.What);
        Sandbox.ClearRequestLog();
        Sandbox.InjectFault(Case.Fault);
        EXPECT_FALSE(Install("1007"));
        EXPECT_EQ(SnapshotTree(Plugin("")), Before);
        EXPECT_EQ(FileRequests().size(), Case.FileRequests);
        EXPECT_TRUE(Logged("[MOD] Failed to download mod UGC1007: " + Case.Why)) << Case.Why;
        EXPECT_EQ(Client().LastSourceModList.Mods[0].InstallState, static_cast<uint8>(ESourceModInstallState::RequiresUpdate));
    }
}

TEST_F(PluginDownload, ACatalogueQueryAnswered429WaitsItsRetryAfterOnTheTickThenSucceeds)
{
    Sandbox::FFault RateLimited{"/v1/games/1/mods", "GET", 1, Sandbox::EFaultKind::Status, 429};
    RateLimited.RetryAfterSeconds = 2;
    Sandbox.InjectFault(RateLimited);
    Client().QuerySourceMods();
    TickUntil([&] { return Fakes.Log.Has("LogTemp", ELogVerbosity::Warning, "mod.io asks to wait 2 s"); });

    // No frame time passes: nothing more is sent, however long the host waits.
    for (int Frame = 0; Frame < 50; ++Frame)
    {
        Tasks.PumpGameThread();
        Module.Tick(0.0f);
        std::this_thread::sleep_for(std::chrono::milliseconds(4));
    }
    Module.Tick(1.9f);
    EXPECT_EQ(CatalogueRequests(), 1u);
    Module.Tick(0.2f);
    TickUntil([&] { return !Client().bSourceQueryBusy; });
    EXPECT_TRUE(Client().LastSourceQueryError.empty()) << Client().LastSourceQueryError;
    EXPECT_FALSE(Client().LastSourceModList.Mods.empty());
    EXPECT_EQ(CatalogueRequests(), 2u);
}
