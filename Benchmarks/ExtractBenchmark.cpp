// Times FZipArchive::ExtractAll against `unzip -q` on the same archive: 10,000 small files and
// three large ones, the shape of a shared source plug-in with its cooked content.
//
// Usage: ExtractBenchmark [--keep]   (--keep leaves the temporary folder behind)

#include "Platform/ZipArchive.h"

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
constexpr int Runs = 3;

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

double TimeSeconds(const std::function<bool()>& Work)
{
    const auto Start = std::chrono::steady_clock::now();
    if (!Work())
    {
        return -1.0;
    }
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - Start).count();
}

double Median(std::vector<double> Values)
{
    std::sort(Values.begin(), Values.end());
    return Values[Values.size() / 2];
}
}

int main(int ArgCount, char** Args)
{
    const bool bKeep = ArgCount > 1 && std::string(Args[1]) == "--keep";
    std::error_code Error;
    const fs::path Root = fs::temp_directory_path() / ("maptorn-extract-bench-" + std::to_string(std::random_device()()));
    fs::create_directories(Root, Error);
    const fs::path ArchivePath = Root / "UGC1005.zip";
    std::printf("building %s ...\n", ArchivePath.c_str());
    if (!BuildArchive(ArchivePath))
    {
        std::fprintf(stderr, "could not build the archive\n");
        return 1;
    }
    std::printf("archive: %d small files, %d x %zu MiB, %.1f MiB on disk\n", SmallFileCount, LargeFileCount, LargeFileSize >> 20,
                static_cast<double>(fs::file_size(ArchivePath, Error)) / (1 << 20));

    std::vector<double> OursTimes, UnzipTimes;
    for (int Run = 0; Run < Runs; ++Run)
    {
        const fs::path Ours = Root / ("maptorn-" + std::to_string(Run));
        const fs::path Theirs = Root / ("unzip-" + std::to_string(Run));
        std::string Message;
        OursTimes.push_back(TimeSeconds([&] { return Maptorn::FZipArchive().ExtractAll(ArchivePath.string(), Ours.string(), Message); }));
        const std::string Command = "unzip -q -o '" + ArchivePath.string() + "' -d '" + Theirs.string() + "'";
        UnzipTimes.push_back(TimeSeconds([&] { return std::system(Command.c_str()) == 0; }));
        if (OursTimes.back() < 0 || UnzipTimes.back() < 0)
        {
            std::fprintf(stderr, "extraction failed: %s\n", Message.c_str());
            return 1;
        }
        std::printf("run %d: maptorn %.3f s, unzip %.3f s\n", Run + 1, OursTimes.back(), UnzipTimes.back());
        fs::remove_all(Ours, Error);
        fs::remove_all(Theirs, Error);
    }
    const double Ours = Median(OursTimes);
    const double Theirs = Median(UnzipTimes);
    std::printf("extract: maptorn %.3f s, unzip %.3f s, ratio %.2f (>= 1.00 means at least as fast)\n", Ours, Theirs, Theirs / Ours);
    if (!bKeep)
    {
        fs::remove_all(Root, Error);
    }
    return 0;
}
