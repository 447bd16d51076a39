// Times FPluginModDownload fetching a mod file from the sandbox on loopback (its ranged requests
// streamed to Saved/Downloads) against `curl -s -o` on the same URL, and reports the peak
// resident memory of this process, which is the client's: the sandbox runs as its own process.
//
// Usage: maptorn-download-bench [--size-mib N]   (or MAPTORN_BENCH_SIZE_MIB; 1024 by default)

#include "BenchCores.h"
#include "BenchFiles.h"
#include "BenchPlatform.h"
#include "Process/SandboxProcess.h"

#include "Common/FileHelper.h"
#include "Common/Paths.h"
#include "Transfer/PluginModDownload.h"


#include <chrono>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

using namespace Maptorn;
using namespace Maptorn::Bench;
using Maptorn::Sandbox::FSandboxProcess;
using Maptorn::Sandbox::RunCommand;
using Maptorn::Sandbox::ShellQuote;

namespace
{
// Writing a gigabyte into the page cache takes a tenth more or less from one round to the next,
// for curl as for us; the median of nine rounds holds still where five did not.
constexpr int Runs = 9;
constexpr double TransferTimeoutSeconds = 600.0;
constexpr double TargetRatio = 1.0;
constexpr double RssLimitMiB = 64.0;
const std::string ModName = "UGCBench";

struct FPublishedArchive
{
    std::string ModId;
    std::string Url;
    int64 Size = 0;
};

struct FTimings
{
    std::vector<double> Ours, Curl;
};

// One download by the workshop's own downloader: from DownloadMod until it hands the archive
// to extraction. Seconds, or a negative value when it did not finish whole.
double TimeOurDownload(FBenchPlatform& Bench, const std::string& Url, const std::string& ModId, int64 ExpectedSize)
{
    auto Download = std::make_shared<FPluginModDownload>(Bench.Platform);
    const auto Start = std::chrono::steady_clock::now();
    Download->DownloadMod(Url, ModName, 1, ModId);
    const bool bLeftDownloading = Bench.TickUntil([&] { return Download->GetState() != EPluginDownloadState::Downloading; },
                                                  TransferTimeoutSeconds);
    const double Seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - Start).count();
    const bool bWhole = bLeftDownloading && Download->GetState() == EPluginDownloadState::Extracting &&
                        FileSystem::FileSize(Download->ArchivePath()) == ExpectedSize;
    // Extraction is refused at once; the download ends as failed, and its archive goes.
    Bench.TickUntil(
        [&]
        {
            Download->Update();
            return Download->GetState() != EPluginDownloadState::Extracting;
        },
        TransferTimeoutSeconds);
    FileSystem::DeleteFile(Download->ArchivePath());
    return bWhole ? Seconds : -1.0;
}

double TimeCurlDownload(const std::string& Url, const std::string& OutputPath, int64 ExpectedSize)
{
    std::string Ignored;
    double Seconds = 0.0;
    const bool bRan = RunCommand("curl -s -o " + ShellQuote(OutputPath) + " " + ShellQuote(Url), Ignored, &Seconds);
    const bool bWhole = bRan && FileSystem::FileSize(OutputPath) == ExpectedSize;
    FileSystem::DeleteFile(OutputPath);
    return bWhole ? Seconds : -1.0;
}

// Writes the archive, starts the sandbox on its own core, logs the modder in and publishes the
// archive there.
bool Prepare(const FBenchFolder& Folder, uint64 Size, const FCoreSplit& Cores, FSandboxProcess& Sandbox, FPublishedArchive& Out,
             std::string& OutError)
{
    const std::string ZipPath = Paths::Combine(Folder.Path(), ModName + ".zip");
    if (!WriteStoredZip(ZipPath, ModName + "/Content/Payload.bin", Size))
    {
        OutError = "cannot write " + ZipPath;
        return false;
    }
    Out.Size = FileSystem::FileSize(ZipPath);
    Cores.ServiceSide();
    const bool bStarted =
        Sandbox.StartWithModder(Paths::Combine(Folder.Path(), "Sandbox"), Paths::Combine(Folder.Path(), "sandbox.log"), Out.ModId, OutError);
    Cores.ClientSide();
    return bStarted && Sandbox.PublishArchive(Out.ModId, ZipPath, Paths::Combine(Folder.Path(), "modfile.json"), Out.Url, OutError);
}

bool Compare(const FBenchFolder& Folder, const FSandboxProcess& Sandbox, const FPublishedArchive& Archive, FTimings& Out)
{
    FBenchPlatform Bench(Paths::Combine(Folder.Path(), "Project"));
    for (int Run = 0; Run < Runs; ++Run)
    {
        double OurCpu = 0.0, CurlCpu = 0.0;
        TakeTurns(
            Run,
            [&]
            {
                const double Before = OwnCpuSeconds();
                Out.Ours.push_back(TimeOurDownload(Bench, Archive.Url, Archive.ModId, Archive.Size));
                OurCpu = OwnCpuSeconds() - Before;
            },
            [&]
            {
                const double Before = ChildrenCpuSeconds();
                Out.Curl.push_back(TimeCurlDownload(Archive.Url, Paths::Combine(Folder.Path(), "curl.zip"), Archive.Size));
                CurlCpu = ChildrenCpuSeconds() - Before;
            });
        if (Out.Ours.back() < 0 || Out.Curl.back() < 0)
        {
            Failure("download", std::string(Out.Ours.back() < 0 ? "our download" : "curl's download") + " did not arrive whole; the sandbox's last lines:\n" +
                 Sandbox.LogTail(10));
            return false;
        }
        std::printf("run %d: maptorn %.3f s (cpu %.2f s), curl -o %.3f s (cpu %.2f s)\n", Run + 1, Out.Ours.back(), OurCpu,
                    Out.Curl.back(), CurlCpu);
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
    FBenchFolder Folder("maptorn-download-bench");
    const FCoreSplit Cores;
    FSandboxProcess Sandbox;
    FPublishedArchive Archive;
    std::string Error;
    if (Folder.Path().empty() || !Prepare(Folder, Size, Cores, Sandbox, Archive, Error))
    {
        return Failure("download", Folder.Path().empty() ? "cannot make a temporary folder" : Error);
    }
    std::printf("download: %.1f MiB archive from %s (%s)\n", static_cast<double>(Archive.Size) / (1 << 20), Archive.Url.c_str(),
                Cores.Describe().c_str());

    FTimings Timings;
    if (!Compare(Folder, Sandbox, Archive, Timings))
    {
        return 1;
    }
    // curl runs as a child, so the peak is this process's own: the downloader's.
    const double PeakRss = PeakRssMiB();
    const double Ours = Median(Timings.Ours);
    const double Curl = Median(Timings.Curl);
    const double Ratio = Curl / Ours;
    const uint64 Bytes = static_cast<uint64>(Archive.Size);
    std::printf("download: maptorn %.2f s (%.0f MB/s), curl -o %.2f s (%.0f MB/s), ratio %.2f (target %.2f), peak RSS %.1f MiB "
                "(limit %.0f): %s\n",
                Ours, MegabytesPerSecond(Bytes, Ours), Curl, MegabytesPerSecond(Bytes, Curl), Ratio, TargetRatio, PeakRss, RssLimitMiB,
                Verdict(Ratio, TargetRatio, PeakRss, RssLimitMiB));
    return 0;
}
