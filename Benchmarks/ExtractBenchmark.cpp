// Times FZipArchive::ExtractAll against `unzip -q` on the same archive: 10,000 small files and
// three large ones, the shape of a shared source plug-in with its cooked content. Peak memory is
// this process's, which is the extractor's: unzip runs as a child.
//
// Usage: maptorn-extract-bench

#include "BenchFiles.h"

#include "Platform/ZipArchive.h"

#include <sys/wait.h>
#include <unistd.h>
#include <zip.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <random>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace
{
constexpr int SmallFileCount = 10000;
constexpr int LargeFileCount = 3;
constexpr std::size_t LargeFileSize = 50u << 20;
constexpr int Runs = 5;
constexpr double TargetRatio = 1.5;
constexpr double RssLimitMiB = 64.0;

// Words in a skewed random order: deflates to roughly a third, like cooked text and meshes do.
std::string CompressibleBytes(std::size_t Size, unsigned Seed)
{
    static const char* const Words[] = { "Actor", "Mesh", "Vertex", "0.000000", "Material", "Texture2D", "Keep", "Frozen",
                                         "Level", "Blueprint", "1024", "true", "false", "Normal", "Tangent", "UV0" };
    std::mt19937 Random(Seed);
    std::geometric_distribution<int> Pick(0.2);
    std::string Bytes;
    Bytes.reserve(Size + 16);
    while (Bytes.size() < Size)
    {
        Bytes += Words[std::min(Pick(Random), 15)];
        Bytes += static_cast<char>(Random() & 0xFF);  // one raw byte per word keeps it from being trivial
    }
    Bytes.resize(Size);
    return Bytes;
}

bool BuildArchive(const fs::path& Path)
{
    std::vector<std::string> Contents;
    Contents.reserve(SmallFileCount + LargeFileCount);
    for (int Number = 0; Number < SmallFileCount; ++Number)
    {
        Contents.push_back(CompressibleBytes(512 + static_cast<std::size_t>(Number * 7919) % 1024, Number));
    }
    for (int Number = 0; Number < LargeFileCount; ++Number)
    {
        Contents.push_back(CompressibleBytes(LargeFileSize, 100000 + Number));
    }
    int Error = 0;
    zip_t* Archive = zip_open(Path.c_str(), ZIP_CREATE | ZIP_TRUNCATE, &Error);
    if (!Archive)
    {
        return false;
    }
    for (std::size_t Number = 0; Number < Contents.size(); ++Number)
    {
        const std::string Name = Number < SmallFileCount
            ? "UGC1005/Content/Set" + std::to_string(Number % 100) + "/Asset" + std::to_string(Number) + ".uasset"
            : "UGC1005/Content/Maps/Large" + std::to_string(Number - SmallFileCount) + ".umap";
        zip_source_t* Source = zip_source_buffer(Archive, Contents[Number].data(), Contents[Number].size(), 0);
        if (!Source || zip_file_add(Archive, Name.c_str(), Source, ZIP_FL_ENC_UTF_8) < 0)
        {
            zip_source_free(Source);
            zip_discard(Archive);
            return false;
        }
    }
    return zip_close(Archive) == 0;  // Contents outlive the close, which is when libzip reads them
}

// Builds the archive in a child process: its contents are held in memory while libzip writes
// them, and that peak must not be counted as the extractor's.
bool BuildArchiveInChild(const fs::path& Path)
{
    const pid_t Child = fork();
    if (Child == 0)
    {
        _exit(BuildArchive(Path) ? 0 : 1);
    }
    int Status = 0;
    return Child > 0 && waitpid(Child, &Status, 0) == Child && WIFEXITED(Status) && WEXITSTATUS(Status) == 0;
}

double TimeSeconds(const std::function<bool()>& Work)
{
    const auto Start = std::chrono::steady_clock::now();
    if (!Work())
    {
        return -1.0;
    }
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - Start).count();
}
}

int main()
{
    using namespace Maptorn::Bench;
    FBenchFolder Folder("maptorn-extract-bench");
    const fs::path Root = Folder.Path();
    const fs::path ArchivePath = Root / "UGC1005.zip";
    std::printf("building %s ...\n", ArchivePath.c_str());
    if (Folder.Path().empty() || !BuildArchiveInChild(ArchivePath))
    {
        return Failure("extract", "could not build the archive");
    }
    std::error_code Error;
    std::printf("archive: %d small files, %d x %zu MiB, %.1f MiB on disk\n", SmallFileCount, LargeFileCount, LargeFileSize >> 20,
                static_cast<double>(fs::file_size(ArchivePath, Error)) / (1 << 20));

    // Round 0 is not counted: it warms the file system, which may still be busy with what was
    // deleted before the benchmark started. Every round extracts into folders of its own, kept
    // until the end, so no round pays for deleting an earlier one's ten thousand files.
    std::vector<double> OursTimes, UnzipTimes;
    for (int Run = 0; Run <= Runs; ++Run)
    {
        const fs::path Ours = Root / ("maptorn-" + std::to_string(Run));
        const fs::path Theirs = Root / ("unzip-" + std::to_string(Run));
        std::string Message;
        const std::string Command = "unzip -q -o '" + ArchivePath.string() + "' -d '" + Theirs.string() + "'";
        double OurTime = -1.0, UnzipTime = -1.0;
        TakeTurns(
            Run,
            [&] { OurTime = TimeSeconds([&] { return Maptorn::FZipArchive().ExtractAll(ArchivePath.string(), Ours.string(), Message); }); },
            [&] { UnzipTime = TimeSeconds([&] { return std::system(Command.c_str()) == 0; }); });
        if (OurTime < 0 || UnzipTime < 0)
        {
            return Failure("extract", OurTime < 0 ? "our extraction failed: " + Message : "unzip failed");
        }
        if (Run == 0)
        {
            std::printf("warm-up: maptorn %.3f s, unzip %.3f s (not counted)\n", OurTime, UnzipTime);
            continue;
        }
        OursTimes.push_back(OurTime);
        UnzipTimes.push_back(UnzipTime);
        std::printf("run %d: maptorn %.3f s, unzip %.3f s\n", Run, OurTime, UnzipTime);
    }
    const double PeakRss = PeakRssMiB();
    const double Ours = Median(OursTimes);
    const double Theirs = Median(UnzipTimes);
    const double Ratio = Theirs / Ours;
    std::printf("extract: maptorn %.3f s, unzip -q %.3f s, ratio %.2f (target %.2f), peak RSS %.1f MiB (limit %.0f): %s\n", Ours, Theirs,
                Ratio, TargetRatio, PeakRss, RssLimitMiB, Verdict(Ratio, TargetRatio, PeakRss, RssLimitMiB));
    return 0;
}
