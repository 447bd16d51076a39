// Times FModioMultipartUpload::SendFormData adding a mod file on the sandbox (the form-data body
// written to Saved/modio_upload.tmp and streamed from there as it grows) against `curl -F` posting the same
// file to the same endpoint, and reports the peak resident memory of this process, which is the
// client's: the sandbox runs as its own process.
//
// Usage: maptorn-upload-bench [--size-mib N]   (or MAPTORN_BENCH_SIZE_MIB; 1024 by default)

#include "BenchCores.h"
#include "BenchFiles.h"
#include "BenchPlatform.h"
#include "Process/SandboxProcess.h"

#include "Common/FileHelper.h"
#include "Common/Paths.h"
#include "Transfer/ModioMultipartUpload.h"

#include <chrono>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <vector>

using namespace Maptorn;
using namespace Maptorn::Bench;
using Maptorn::Sandbox::FSandboxProcess;
using Maptorn::Sandbox::RunCommand;
using Maptorn::Sandbox::ShellQuote;

namespace
{
// The service's own time for a gigabyte varies by a tenth from one round to the next, and the
// two clients sit within a few hundredths of each other: fifteen rounds keep the medians apart
// from that noise.
constexpr int Runs = 15;
constexpr double TransferTimeoutSeconds = 600.0;
constexpr double TargetRatio = 0.95;
constexpr double RssLimitMiB = 64.0;
const std::string FileName = "UGCBench.zip";

using FClock = std::chrono::steady_clock;

struct FTimings
{
    std::vector<double> Ours, Curl;
};

double Seconds(FClock::time_point From, FClock::time_point To)
{
    return std::chrono::duration<double>(To - From).count();
}

// Every upload stores another copy on the sandbox; dropping the copies keeps gigabytes from
// piling up on disk and in the page cache while the later runs are timed.
void DropStoredCopies(const std::string& SandboxDir)
{
    for (const FileSystem::FDirectoryEntry& Entry : FileSystem::ListDirectory(Paths::Combine(SandboxDir, "blobs")))
    {
        if (Paths::GetCleanFilename(Entry.Path).starts_with("modfile-"))
        {
            FileSystem::DeleteFile(Entry.Path);
        }
    }
}

// From SendFormData until the service's answer, body file included; negative when refused.
double TimeOurUpload(FBenchPlatform& Bench, const FSandboxProcess& Sandbox, const std::string& ModId, const std::string& Folder)
{
    auto Upload = std::make_shared<FModioMultipartUpload>(Bench.Platform, Sandbox.BaseUrl(), 1);
    Upload->ModId = ModId;
    Upload->AuthToken = Sandbox.Token();
    Upload->FileName = FileName;
    Upload->FileFolder = Folder;
    Upload->Version = "1";
    Upload->Changelog = "x";
    Upload->Platform = "windows";
    std::optional<bool> bSucceeded;
    FClock::time_point Answered;
    Upload->OnFinished = [&](bool bOk)
    {
        Answered = FClock::now();
        bSucceeded = bOk;
    };
    const FClock::time_point Start = FClock::now();
    Upload->SendFormData(true);
    const bool bAccepted = Bench.TickUntil([&] { return bSucceeded.has_value(); }, TransferTimeoutSeconds) && *bSucceeded;
    // The uploader leaves its body behind until the next upload; nothing reads it again here.
    FileSystem::DeleteFile(Upload->FormDataBodyPath());
    return bAccepted ? Seconds(Start, Answered) : -1.0;
}

double TimeCurlUpload(const FSandboxProcess& Sandbox, const std::string& ModId, const std::string& ZipPath)
{
    std::string Status;
    double Seconds = 0.0;
    const bool bRan = RunCommand(Sandbox.CurlFormUploadCommand(ModId, ZipPath, "/dev/null"), Status, &Seconds);
    return bRan && Status == "201" ? Seconds : -1.0;
}

bool Compare(const FBenchFolder& Folder, const FSandboxProcess& Sandbox, const std::string& ModId, FTimings& Out)
{
    const std::string FilesDir = Paths::Combine(Folder.Path(), "Files");
    const std::string SandboxDir = Paths::Combine(Folder.Path(), "Sandbox");
    FBenchPlatform Bench(Paths::Combine(Folder.Path(), "Project"));
    for (int Run = 0; Run < Runs; ++Run)
    {
        double Our = -1.0;
        double OurCpu = 0.0, CurlCpu = 0.0;
        TakeTurns(
            Run,
            [&]
            {
                const double Before = OwnCpuSeconds();
                Our = TimeOurUpload(Bench, Sandbox, ModId, FilesDir);
                OurCpu = OwnCpuSeconds() - Before;
                DropStoredCopies(SandboxDir);
            },
            [&]
            {
                const double Before = ChildrenCpuSeconds();
                Out.Curl.push_back(TimeCurlUpload(Sandbox, ModId, Paths::Combine(FilesDir, FileName)));
                CurlCpu = ChildrenCpuSeconds() - Before;
                DropStoredCopies(SandboxDir);
            });
        if (Our < 0 || Out.Curl.back() < 0)
        {
            Failure("upload", std::string(Our < 0 ? "our upload" : "curl's upload") + " was not accepted; the sandbox's last lines:\n" +
                 Sandbox.LogTail(10));
            return false;
        }
        Out.Ours.push_back(Our);
        std::printf("run %d: maptorn %.3f s (cpu %.2f s), curl -F %.3f s (cpu %.2f s)\n", Run + 1, Our, OurCpu, Out.Curl.back(), CurlCpu);
    }
    return true;
}
}

int main(int ArgCount, char** Args)
{
    const uint64 Size = TransferSizeBytes(ArgCount, Args);
    if (Size == 0)
    {
        return 2;
    }
    FBenchFolder Folder("maptorn-upload-bench");
    const std::string ZipPath = Paths::Combine(Folder.Path(), "Files", FileName);
    if (Folder.Path().empty() || !FileSystem::CreateDirectoryTree(Paths::GetPath(ZipPath)) ||
        !WriteStoredZip(ZipPath, "UGCBench/Content/Payload.bin", Size))
    {
        return Failure("upload", "cannot write " + ZipPath);
    }
    const uint64 ZipSize = static_cast<uint64>(FileSystem::FileSize(ZipPath));
    const FCoreSplit Cores;
    FSandboxProcess Sandbox;
    std::string Error, ModId;
    Cores.ServiceSide();
    const bool bStarted =
        Sandbox.StartWithModder(Paths::Combine(Folder.Path(), "Sandbox"), Paths::Combine(Folder.Path(), "sandbox.log"), ModId, Error);
    Cores.ClientSide();
    if (!bStarted)
    {
        return Failure("upload", Error);
    }
    std::printf("upload: %.1f MiB archive to %s (%s)\n", static_cast<double>(ZipSize) / (1 << 20), Sandbox.ModFilesUrl(ModId).c_str(),
                Cores.Describe().c_str());

    FTimings Timings;
    if (!Compare(Folder, Sandbox, ModId, Timings))
    {
        return 1;
    }
    // curl runs as a child, so the peak is this process's own: the uploader's.
    const double PeakRss = PeakRssMiB();
    const double Ours = Median(Timings.Ours);
    const double Curl = Median(Timings.Curl);
    const double Ratio = Curl / Ours;
    std::printf("upload: maptorn %.2f s (%.0f MB/s), curl -F %.2f s (%.0f MB/s), ratio %.2f (target %.2f), peak RSS %.1f MiB (limit %.0f): %s\n",
                Ours, MegabytesPerSecond(ZipSize, Ours), Curl, MegabytesPerSecond(ZipSize, Curl), Ratio, TargetRatio, PeakRss, RssLimitMiB,
                Verdict(Ratio, TargetRatio, PeakRss, RssLimitMiB));
    return 0;
}
