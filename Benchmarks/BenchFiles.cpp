#include "BenchFiles.h"

#include "Common/FileHelper.h"

#include <sys/resource.h>
#include <unistd.h>
#include <zlib.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <string_view>

namespace fs = std::filesystem;

namespace Maptorn::Bench
{
namespace
{
constexpr std::uint64_t DefaultSizeMiB = 1024;
// The form-data uploader announces its body length as a 32-bit number.
constexpr std::uint64_t MaxSizeMiB = 2000;
constexpr std::size_t WriteBufferSize = 1 << 20;
// 2024-01-01 00:00 in the MS-DOS form ZIP headers use.
constexpr std::uint16_t DosDate = ((2024 - 1980) << 9) | (1 << 5) | 1;
constexpr std::uint16_t DosTime = 0;

std::uint64_t ParseMiB(std::string_view Text, std::string_view Origin)
{
    char* End = nullptr;
    const std::string Copy(Text);
    const unsigned long long Value = std::strtoull(Copy.c_str(), &End, 10);
    if (Copy.empty() || *End != '\0' || Value == 0 || Value > MaxSizeMiB)
    {
        std::fprintf(stderr, "%.*s: '%s' is not a size in MiB from 1 to %llu\n", static_cast<int>(Origin.size()), Origin.data(),
                     Copy.c_str(), static_cast<unsigned long long>(MaxSizeMiB));
        return 0;
    }
    return Value << 20;
}

// Little-endian fields, as every number in a ZIP archive is stored.
void Put16(std::string& Out, std::uint32_t Value)
{
    Out += static_cast<char>(Value & 0xFF);
    Out += static_cast<char>((Value >> 8) & 0xFF);
}

void Put32(std::string& Out, std::uint32_t Value)
{
    Put16(Out, Value & 0xFFFF);
    Put16(Out, Value >> 16);
}

// The fields a local header and its central directory record share, from "version needed" on.
std::string CommonFields(std::uint32_t Crc, std::uint32_t Size, const std::string& Name)
{
    std::string Out;
    Put16(Out, 10);  // version needed: 1.0, a stored entry
    Put16(Out, 0);   // flags
    Put16(Out, 0);   // method: stored
    Put16(Out, DosTime);
    Put16(Out, DosDate);
    Put32(Out, Crc);
    Put32(Out, Size);  // compressed size
    Put32(Out, Size);  // uncompressed size
    Put16(Out, static_cast<std::uint32_t>(Name.size()));
    Put16(Out, 0);  // extra field length
    return Out;
}

std::string LocalHeader(std::uint32_t Crc, std::uint32_t Size, const std::string& Name)
{
    std::string Out;
    Put32(Out, 0x04034b50);
    return Out + CommonFields(Crc, Size, Name) + Name;
}

std::string CentralDirectory(std::uint32_t Crc, std::uint32_t Size, const std::string& Name)
{
    std::string Record;
    Put32(Record, 0x02014b50);
    Put16(Record, (3 << 8) | 30);  // made by: Unix, 3.0
    Record += CommonFields(Crc, Size, Name);
    Put16(Record, 0);                  // comment length
    Put16(Record, 0);                  // disk number
    Put16(Record, 0);                  // internal attributes
    Put32(Record, 0100644u << 16);     // external attributes: a regular file, rw-r--r--
    Put32(Record, 0);                  // the local header's offset
    Record += Name;

    std::string End;
    Put32(End, 0x06054b50);
    Put16(End, 0);  // this disk
    Put16(End, 0);  // the directory's disk
    Put16(End, 1);  // entries on this disk
    Put16(End, 1);  // entries in all
    Put32(End, static_cast<std::uint32_t>(Record.size()));
    Put32(End, static_cast<std::uint32_t>(LocalHeader(Crc, Size, Name).size() + Size));
    Put16(End, 0);  // comment length
    return Record + End;
}

struct FFileCloser
{
    void operator()(std::FILE* File) const { std::fclose(File); }
};
}

std::uint64_t TransferSizeBytes(int ArgCount, char** Args)
{
    for (int Index = 1; Index < ArgCount; ++Index)
    {
        const std::string_view Arg = Args[Index];
        if (Arg == "--size-mib" && Index + 1 < ArgCount)
        {
            return ParseMiB(Args[Index + 1], "--size-mib");
        }
        if (Arg.starts_with("--size-mib="))
        {
            return ParseMiB(Arg.substr(11), "--size-mib");
        }
        std::fprintf(stderr, "unknown argument %s (usage: [--size-mib N])\n", Args[Index]);
        return 0;
    }
    if (const char* FromEnvironment = std::getenv("MAPTORN_BENCH_SIZE_MIB"); FromEnvironment && *FromEnvironment)
    {
        return ParseMiB(FromEnvironment, "MAPTORN_BENCH_SIZE_MIB");
    }
    return DefaultSizeMiB << 20;
}

FBenchFolder::FBenchFolder(const std::string& Prefix)
{
    std::error_code Error;
    std::string Template = (fs::temp_directory_path(Error) / (Prefix + "-XXXXXX")).string();
    if (::mkdtemp(Template.data()))
    {
        Root = Template;
    }
}

FBenchFolder::~FBenchFolder()
{
    if (!Root.empty())
    {
        FileSystem::DeleteDirectoryRecursively(Root);
    }
}

bool WriteStoredZip(const std::string& ArchivePath, const std::string& EntryName, std::uint64_t EntrySize)
{
    if (EntrySize > (MaxSizeMiB << 20))
    {
        return false;
    }
    std::unique_ptr<std::FILE, FFileCloser> File(std::fopen(ArchivePath.c_str(), "wb"));
    if (!File)
    {
        return false;
    }
    const std::uint32_t Size = static_cast<std::uint32_t>(EntrySize);
    const std::string Placeholder = LocalHeader(0, Size, EntryName);
    bool bWritten = std::fwrite(Placeholder.data(), 1, Placeholder.size(), File.get()) == Placeholder.size();

    // xorshift64*: incompressible bytes at memory speed, the same every run.
    std::vector<unsigned char> Buffer(WriteBufferSize);
    std::uint64_t State = 0x9E3779B97F4A7C15ull;
    uLong Crc = crc32(0L, Z_NULL, 0);
    for (std::uint64_t Written = 0; bWritten && Written < EntrySize;)
    {
        for (std::size_t Offset = 0; Offset < Buffer.size(); Offset += sizeof(std::uint64_t))
        {
            State ^= State >> 12;
            State ^= State << 25;
            State ^= State >> 27;
            const std::uint64_t Word = State * 0x2545F4914F6CDD1Dull;
            std::memcpy(Buffer.data() + Offset, &Word, sizeof(Word));
        }
        const std::size_t Piece = static_cast<std::size_t>(std::min<std::uint64_t>(Buffer.size(), EntrySize - Written));
        Crc = crc32(Crc, Buffer.data(), static_cast<uInt>(Piece));
        bWritten = std::fwrite(Buffer.data(), 1, Piece, File.get()) == Piece;
        Written += Piece;
    }
    const std::string Directory = CentralDirectory(static_cast<std::uint32_t>(Crc), Size, EntryName);
    bWritten = bWritten && std::fwrite(Directory.data(), 1, Directory.size(), File.get()) == Directory.size();
    // The CRC is known only now: the local header gets it in place.
    const std::string Header = LocalHeader(static_cast<std::uint32_t>(Crc), Size, EntryName);
    bWritten = bWritten && std::fseek(File.get(), 0, SEEK_SET) == 0 &&
               std::fwrite(Header.data(), 1, Header.size(), File.get()) == Header.size();
    return std::fclose(File.release()) == 0 && bWritten;
}

double PeakRssMiB()
{
    rusage Usage{};
    getrusage(RUSAGE_SELF, &Usage);
    return static_cast<double>(Usage.ru_maxrss) / 1024.0;  // Linux reports KiB
}

namespace
{
double CpuSecondsOf(int Who)
{
    rusage Usage{};
    getrusage(Who, &Usage);
    const auto Seconds = [](const timeval& Time) { return static_cast<double>(Time.tv_sec) + static_cast<double>(Time.tv_usec) / 1e6; };
    return Seconds(Usage.ru_utime) + Seconds(Usage.ru_stime);
}
}

double OwnCpuSeconds()
{
    return CpuSecondsOf(RUSAGE_SELF);
}

double ChildrenCpuSeconds()
{
    return CpuSecondsOf(RUSAGE_CHILDREN);
}

void TakeTurns(int Run, const std::function<void()>& Ours, const std::function<void()>& Theirs)
{
    for (const bool bOurTurn : { Run % 2 == 0, Run % 2 != 0 })
    {
        sync();
        (bOurTurn ? Ours : Theirs)();
    }
}

double Median(std::vector<double> Values)
{
    if (Values.empty())
    {
        return 0.0;
    }
    std::sort(Values.begin(), Values.end());
    return Values[Values.size() / 2];
}

double MegabytesPerSecond(std::uint64_t Bytes, double Seconds)
{
    return Seconds > 0.0 ? static_cast<double>(Bytes) / 1e6 / Seconds : 0.0;
}

const char* Verdict(double Ratio, double TargetRatio, double PeakRssMiB, double RssLimitMiB)
{
    return Ratio >= TargetRatio && PeakRssMiB < RssLimitMiB ? "targets met" : "TARGET MISSED";
}

int Failure(const char* Benchmark, const std::string& Message)
{
    std::fprintf(stderr, "%s benchmark: %s\n", Benchmark, Message.c_str());
    return 1;
}
}
