// A shared source plug-in installed from the sandbox while it misbehaves: rate limits, broken
// connections, ranges that start elsewhere and archives that are not what mod.io describes.
// Time passes through the module's tick only, so a 1 s retry-after costs a few frames.

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
class DownloadRecovery : public FSandboxTest
{
protected:
    DownloadRecovery() { Module.ModioClient = std::make_unique<FModioInterface>(Platform, ModioConfig()); }

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

    // Installs the mod; true when it ended installed.
    bool Install(const std::string& ModId)
    {
        Client().QueueDownload(Fetch(ModId));
        Tick([&] { return !Client().ActiveDownload; });
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

TEST_F(DownloadRecovery, PassingFaultsAreRiddenOutAndInstallTheSameBytes)
{
    ASSERT_TRUE(Install("1006"));
    const FProjectSnapshot Clean = SnapshotTree(Plugin("UGC1006"));
    ASSERT_FALSE(Clean.empty());

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

TEST_F(DownloadRecovery, AnArchiveThatCannotBeTrustedLeavesThePluginAsItWas)
{
    fs::create_directories(Plugin("UGC1007"));
    WriteTextFile(Plugin("UGC1007") / "UGC1007.uplugin", "my work");
    const FProjectSnapshot Before = SnapshotTree(Plugin(""));
    const std::string Md5 = Fetch("1007").FileMd5;
    ASSERT_EQ(Md5.size(), 32u);

    Sandbox::FFault Tampered{"/v1/games/1/mods", "GET", 1, Sandbox::EFaultKind::WrongFilehash};
    struct FCase
    {
        const char* What;
        Sandbox::FFault Fault;
        size_t FileRequests;
        std::string Why;
    };
    const std::vector<FCase> Cases = {
        {"cut on every try", FilesFault(Sandbox::EFaultKind::CloseAfter, 4), 4, "the server closed the connection after 200 of "},
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
        EXPECT_EQ(Client().LastSourceModList.Mods[0].InstallState, static_cast<uint8>(ESourceModInstallState::NotInstalled));
    }
}

TEST_F(DownloadRecovery, ACatalogueQueryAnswered429WaitsItsRetryAfterOnTheTickThenSucceeds)
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
