// Times the whole install of a large source plug-in, as `maptorn install` does it after the
// catalogue lookup (ranged download to Saved/Downloads, extraction on a pool worker, the unpacked
// folder moved into Plugins/), against `curl -s -o` followed by `unzip -q` of the same archive from
// the same loopback sandbox. The archive has the shape of a real plug-in: three large files
// (200 MiB each) and 5,000 small ones. Ours checks the MD5 mod.io gives for the archive, as the
// tool does; curl and unzip check nothing. Peak memory: this process's for ours; curl's and unzip's
// own, measured by /usr/bin/time where it is installed.
//
// Usage: maptorn-install-bench [--size-mib N]   (or MAPTORN_BENCH_SIZE_MIB: the three large files
// share N MiB, and 500 small files, for a quick run)

#include "BenchFiles.h"
#include "BenchPlatform.h"
#include "Process/SandboxProcess.h"

#include "Common/FileHelper.h"
#include "Common/Md5.h"
#include "Common/Paths.h"
#include "Platform/ZipArchive.h"
#include "Transfer/PluginModDownload.h"

#include <zip.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
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
constexpr int Runs = 5;
constexpr double TimeoutSeconds = 900.0;
constexpr double TargetRatio = 1.3;
constexpr double RssLimitMiB = 64.0;
const std::string ModName = "UGCBench";
const std::string PluginName = "UGC4242";

struct FShape
{
    uint64 LargeFileBytes = 200ull << 20;
    int SmallFiles = 5000;
};

FShape ShapeFromArguments(int ArgCount, char** Args)
{
    FShape Shape;
    const char* Quick = std::getenv("MAPTORN_BENCH_SIZE_MIB");
    if ((Quick && *Quick) || ArgCount > 1)
    {
        Shape.LargeFileBytes = TransferSizeBytes(ArgCount, Args) / 3;
        Shape.SmallFiles = 500;
    }
    return Shape;
}

// Pseudo-random bytes for the large files (they do not compress, like cooked content) and short
// text for the small ones (they do, like sources and configs).
bool WriteLargeFile(const std::string& Path, uint64 Size, uint32 Seed)
{
    std::FILE* File = std::fopen(Path.c_str(), "wb");
    if (!File)
    {
        return false;
    }
    std::vector<uint32> Block(1 << 16);
    uint64 Written = 0;
    while (Written < Size)
    {
        for (uint32& Word : Block)
        {
            Seed = Seed * 1664525u + 1013904223u;
            Word = Seed;
        }
        const std::size_t Piece = static_cast<std::size_t>(std::min<uint64>(Size - Written, Block.size() * sizeof(uint32)));
        if (std::fwrite(Block.data(), 1, Piece, File) != Piece)
        {
            std::fclose(File);
            return false;
        }
        Written += Piece;
    }
    return std::fclose(File) == 0;
}

bool WritePluginArchive(const std::string& Folder, const FShape& Shape, const std::string& ZipPath)
{
    int ErrorCode = 0;
    zip_t* Archive = zip_open(ZipPath.c_str(), ZIP_CREATE | ZIP_TRUNCATE, &ErrorCode);
    if (!Archive)
    {
        return false;
    }
    bool bOk = true;
    for (int Index = 0; Index < 3 && bOk; ++Index)
    {
        const std::string Large = Paths::Combine(Folder, "large" + std::to_string(Index) + ".bin");
        bOk = WriteLargeFile(Large, Shape.LargeFileBytes, static_cast<uint32>(Index + 1));
        zip_source_t* Source = bOk ? zip_source_file(Archive, Large.c_str(), 0, -1) : nullptr;
        const std::string Name = PluginName + "/Content/Large" + std::to_string(Index) + ".uasset";
        const zip_int64_t Entry = Source ? zip_file_add(Archive, Name.c_str(), Source, ZIP_FL_ENC_UTF_8) : -1;
        bOk = Entry >= 0 && zip_set_file_compression(Archive, static_cast<zip_uint64_t>(Entry), ZIP_CM_STORE, 0) == 0;
    }
    // Kept alive until zip_close, which reads them.
    std::vector<std::string> Texts(static_cast<std::size_t>(Shape.SmallFiles));
    for (int Index = 0; Index < Shape.SmallFiles && bOk; ++Index)
    {
        std::string& Text = Texts[static_cast<std::size_t>(Index)];
        for (int Line = 0; Line < 40; ++Line)
        {
            Text += "// Source line " + std::to_string(Line) + " of file " + std::to_string(Index) + "\n";
        }
        zip_source_t* Source = zip_source_buffer(Archive, Text.data(), Text.size(), 0);
        const std::string Name = PluginName + "/Source/Module" + std::to_string(Index / 100) + "/File" + std::to_string(Index) + ".cpp";
        bOk = Source && zip_file_add(Archive, Name.c_str(), Source, ZIP_FL_ENC_UTF_8) >= 0;
    }
    const std::string Descriptor = "{\"FileVersion\": 3, \"FriendlyName\": \"Bench\"}";
    zip_source_t* Uplugin = bOk ? zip_source_buffer(Archive, Descriptor.data(), Descriptor.size(), 0) : nullptr;
    bOk = Uplugin && zip_file_add(Archive, (PluginName + "/" + PluginName + ".uplugin").c_str(), Uplugin, ZIP_FL_ENC_UTF_8) >= 0;
    if (!bOk)
    {
        zip_discard(Archive);
        return false;
    }
    const bool bClosed = zip_close(Archive) == 0;
    for (int Index = 0; Index < 3; ++Index)
    {
        FileSystem::DeleteFile(Paths::Combine(Folder, "large" + std::to_string(Index) + ".bin"));
    }
    return bClosed;
}

// The workshop's install, from the first request to the plug-in in Plugins/, the archive checked
// against the MD5 mod.io gives as `maptorn install` does; negative when it failed.
double TimeOurInstall(FBenchPlatform& Bench, FMaptornPlatform& Platform, const std::string& Url, const std::string& ModId,
    const std::string& Md5, const std::string& ProjectDir)
{
    const std::string Installed = Paths::Combine(ProjectDir, "Plugins", PluginName);
    FileSystem::DeleteDirectoryRecursively(Installed);
    auto Download = std::make_shared<FPluginModDownload>(Platform);
    Download->ExpectedMd5 = Md5;
    const auto Start = std::chrono::steady_clock::now();
    Download->DownloadMod(Url, ModName, 1, ModId);
    Bench.TickUntil(
        [&]
        {
            Download->Update();
            const EPluginDownloadState State = Download->GetState();
            return State == EPluginDownloadState::Complete || State == EPluginDownloadState::Failed;
        },
        TimeoutSeconds);
    const double Seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - Start).count();
    const bool bInstalled = Download->GetState() == EPluginDownloadState::Complete &&
        FileSystem::FileExists(Paths::Combine(Installed, PluginName + ".uplugin"));
    FileSystem::DeleteFile(Download->ArchivePath());
    FileSystem::DeleteDirectoryRecursively(Download->ExtractFolder());
    FileSystem::DeleteDirectoryRecursively(Installed);
    return bInstalled ? Seconds : -1.0;
}

// "/usr/bin/time -f %M -o <file> " when GNU time is there: the command's own peak (KiB) goes to the file.
std::string PeakMeter(const std::string& OutputFile)
{
    return FileSystem::FileExists("/usr/bin/time") ? "/usr/bin/time -f %M -o " + ShellQuote(OutputFile) + " " : std::string();
}

double ReadPeakMiB(const std::string& File)
{
    const std::optional<std::string> Text = FileHelper::LoadFileToString(File);
    return Text ? std::strtod(Text->c_str(), nullptr) / 1024.0 : -1.0;
}

double TimeCurlAndUnzip(const std::string& Url, const std::string& Folder, double& InOutPeakMiB)
{
    const std::string ZipPath = Paths::Combine(Folder, "curl.zip");
    const std::string Destination = Paths::Combine(Folder, "unzipped");
    const std::string CurlPeak = Paths::Combine(Folder, "curl.rss");
    const std::string UnzipPeak = Paths::Combine(Folder, "unzip.rss");
    FileSystem::DeleteDirectoryRecursively(Destination);
    std::string Ignored;
    double Seconds = 0.0;
    const bool bRan = RunCommand(PeakMeter(CurlPeak) + "curl -s -o " + ShellQuote(ZipPath) + " " + ShellQuote(Url) + " && " +
            PeakMeter(UnzipPeak) + "unzip -q -o " + ShellQuote(ZipPath) + " -d " + ShellQuote(Destination), Ignored, &Seconds);
    InOutPeakMiB = std::max({InOutPeakMiB, ReadPeakMiB(CurlPeak), ReadPeakMiB(UnzipPeak)});
    const bool bWhole = bRan && FileSystem::FileExists(Paths::Combine(Destination, PluginName, PluginName + ".uplugin"));
    FileSystem::DeleteFile(ZipPath);
    FileSystem::DeleteDirectoryRecursively(Destination);
    return bWhole ? Seconds : -1.0;
}

}

int main(int ArgCount, char** Args)
{
    const FShape Shape = ShapeFromArguments(ArgCount, Args);
    if (Shape.LargeFileBytes == 0)
    {
        return 2;
    }
    FBenchFolder Folder("maptorn-install-bench");
    if (Folder.Path().empty())
    {
        return Failure("install", "cannot make a temporary folder");
    }
    const std::string ZipPath = Paths::Combine(Folder.Path(), ModName + ".zip");
    if (!WritePluginArchive(Folder.Path(), Shape, ZipPath))
    {
        return Failure("install", "cannot write " + ZipPath);
    }
    const int64 ArchiveSize = FileSystem::FileSize(ZipPath);
    FSandboxProcess Sandbox;
    std::string Error;
    std::string ModId;
    std::string Url;
    if (!Sandbox.StartWithModder(Paths::Combine(Folder.Path(), "Sandbox"), Paths::Combine(Folder.Path(), "sandbox.log"), ModId, Error) ||
        !Sandbox.PublishArchive(ModId, ZipPath, Paths::Combine(Folder.Path(), "modfile.json"), Url, Error))
    {
        return Failure("install", Error);
    }
    const std::string Md5 = FMd5::OfFile(ZipPath);
    FileSystem::DeleteFile(ZipPath);
    std::printf("install: %.1f MiB archive (3 x %.1f MiB and %d small files) from %s\n", static_cast<double>(ArchiveSize) / (1 << 20),
        static_cast<double>(Shape.LargeFileBytes) / (1 << 20), Shape.SmallFiles, Url.c_str());

    const std::string ProjectDir = Paths::Combine(Folder.Path(), "Project");
    FBenchPlatform Bench(ProjectDir);
    FZipArchive Zip;
    FMaptornPlatform Platform{Bench.Log, Bench.Dialogs, Bench.Engine, Bench.Definitions, Bench.Processes, Bench.Tasks, Bench.Http, Zip, nullptr};
    std::vector<double> Ours, Theirs;
    double TheirPeak = -1.0;
    for (int Run = 0; Run < Runs; ++Run)
    {
        TakeTurns(
            Run, [&] { Ours.push_back(TimeOurInstall(Bench, Platform, Url, ModId, Md5, ProjectDir)); },
            [&] { Theirs.push_back(TimeCurlAndUnzip(Url, Folder.Path(), TheirPeak)); });
        if (Ours.back() < 0 || Theirs.back() < 0)
        {
            return Failure("install", std::string(Ours.back() < 0 ? "our install" : "curl and unzip") + " did not finish; the sandbox's last lines:\n" +
                Sandbox.LogTail(10));
        }
        std::printf("run %d: maptorn %.3f s, curl -o && unzip -q %.3f s\n", Run + 1, Ours.back(), Theirs.back());
    }
    const double PeakRss = PeakRssMiB();
    const double Ratio = Median(Theirs) / Median(Ours);
    std::printf("install: maptorn %.2f s, curl -o && unzip -q %.2f s, ratio %.2f (target %.2f), peak RSS %.1f MiB (limit %.0f), "
                "curl/unzip peak %.1f MiB (-1: /usr/bin/time missing): %s\n",
        Median(Ours), Median(Theirs), Ratio, TargetRatio, PeakRss, RssLimitMiB, TheirPeak,
        Verdict(Ratio, TargetRatio, PeakRss, RssLimitMiB));
    return 0;
}
