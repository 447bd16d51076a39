#include "Platform/ZipArchive.h"

#include "Transfer/ArchiveEntryGuard.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <memory>
#include <set>
#include <system_error>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <zip.h>

namespace Maptorn
{
namespace
{
constexpr std::size_t ReadChunkSize = 1u << 20;

struct FZipCloser
{
    void operator()(zip_t* Archive) const { zip_discard(Archive); }
};
using FZipHandle = std::unique_ptr<zip_t, FZipCloser>;

std::string ZipErrorText(int Code)
{
    zip_error_t Error;
    zip_error_init_with_code(&Error, Code);
    std::string Text = zip_error_strerror(&Error);
    zip_error_fini(&Error);
    return Text;
}

FZipHandle OpenArchive(const std::string& ArchivePath, std::string& OutError)
{
    int Code = 0;
    zip_t* Archive = zip_open(ArchivePath.c_str(), ZIP_RDONLY, &Code);
    if (!Archive)
    {
        OutError = "Cannot open archive '" + ArchivePath + "': " + ZipErrorText(Code);
    }
    return FZipHandle(Archive);
}

// What libzip knows of one entry, for the guards every host shares. Unix archivers keep st_mode in
// the high 16 bits of the external attributes.
ArchiveEntryGuard::FEntryFacts EntryFacts(zip_t* Archive, zip_uint64_t Index, const zip_stat_t& Stat)
{
    ArchiveEntryGuard::FEntryFacts Facts;
    Facts.Name = Stat.name;
    zip_uint8_t OpSys = 0;
    zip_uint32_t Attributes = 0;
    if (zip_file_get_external_attributes(Archive, Index, 0, &OpSys, &Attributes) == 0 && OpSys == ZIP_OPSYS_UNIX)
    {
        Facts.UnixMode = Attributes >> 16;
    }
    if ((Stat.valid & ZIP_STAT_SIZE) != 0)
    {
        Facts.Size = Stat.size;
    }
    if ((Stat.valid & ZIP_STAT_COMP_SIZE) != 0)
    {
        Facts.CompressedSize = Stat.comp_size;
    }
    Facts.bEncrypted = (Stat.valid & ZIP_STAT_ENCRYPTION_METHOD) != 0 && Stat.encryption_method != ZIP_EM_NONE;
    if ((Stat.valid & ZIP_STAT_COMP_METHOD) != 0)
    {
        Facts.Method = static_cast<uint32>(Stat.comp_method);
        Facts.bMethodReadable = zip_compression_method_supported(Stat.comp_method, 0) != 0;
    }
    return Facts;
}

// Reads the whole central directory and refuses the archive at its first unsafe entry.
// libzip already turns a NUL inside a stored name into a space, so a name can never be cut short
// behind our back; the guards' NUL check covers that changing.
bool PlanExtraction(zip_t* Archive, const std::string& ArchivePath, ArchiveEntryGuard::FExtractionPlan& OutPlan, std::string& OutError)
{
    const zip_int64_t Count = zip_get_num_entries(Archive, 0);
    if (Count < 0)
    {
        OutError = "Cannot read the entries of '" + ArchivePath + "': " + zip_strerror(Archive);
        return false;
    }
    OutError = ArchiveEntryGuard::CheckEntryCount(ArchivePath, static_cast<uint64>(Count));
    if (!OutError.empty())
    {
        return false;
    }
    OutPlan.Files.reserve(static_cast<std::size_t>(Count));
    for (zip_uint64_t Index = 0; Index < static_cast<zip_uint64_t>(Count); ++Index)
    {
        zip_stat_t Stat;
        zip_stat_init(&Stat);
        if (zip_stat_index(Archive, Index, 0, &Stat) != 0 || (Stat.valid & ZIP_STAT_NAME) == 0)
        {
            OutError = "Cannot read entry " + std::to_string(Index) + " of '" + ArchivePath + "': " + zip_strerror(Archive);
            return false;
        }
        if (!ArchiveEntryGuard::PlanEntry(ArchivePath, Index, EntryFacts(Archive, Index, Stat), OutPlan, OutError))
        {
            return false;
        }
    }
    return ArchiveEntryGuard::FinishPlan(ArchivePath, OutPlan, OutError);
}

// Each folder once, parents first; one mkdir per folder, a stat only when it already exists.
bool CreateDirectories(const std::string& Root, const std::set<std::string>& Directories, std::string& OutError)
{
    std::error_code Error;
    std::filesystem::create_directories(Root, Error);
    if (Error || !std::filesystem::is_directory(Root, Error))
    {
        OutError = "Cannot create folder '" + Root + "'";
        return false;
    }
    for (const std::string& Directory : Directories)
    {
        const std::string Path = Root + "/" + Directory;
        struct stat Info;
        if (::mkdir(Path.c_str(), 0755) != 0 && (errno != EEXIST || ::stat(Path.c_str(), &Info) != 0 || !S_ISDIR(Info.st_mode)))
        {
            OutError = "Cannot create folder '" + Path + "': " + std::strerror(errno == 0 ? EEXIST : errno);
            return false;
        }
    }
    return true;
}

bool WriteAll(int Fd, const char* Bytes, std::size_t Size)
{
    while (Size > 0)
    {
        const ssize_t Written = ::write(Fd, Bytes, Size);
        if (Written < 0 && errno == EINTR)
        {
            continue;
        }
        if (Written <= 0)
        {
            return false;
        }
        Bytes += Written;
        Size -= static_cast<std::size_t>(Written);
    }
    return true;
}

// Replaces whatever has the name: a link left in the destination is removed, never followed.
int OpenForWriting(const std::string& Path)
{
    const int Flags = O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW;
    int Fd = ::open(Path.c_str(), Flags, 0644);
    if (Fd < 0 && errno == ELOOP && ::unlink(Path.c_str()) == 0)
    {
        Fd = ::open(Path.c_str(), Flags, 0644);
    }
    return Fd;
}

// Streams one entry to disk. A file that fails half-way is removed rather than left truncated.
bool ExtractFile(zip_t* Archive, const ArchiveEntryGuard::FPlannedFile& File, const std::string& Root, std::vector<char>& Buffer, std::string& OutError)
{
    const std::string Path = Root + "/" + File.RelativePath;
    zip_file_t* Entry = zip_fopen_index(Archive, File.Index, 0);
    if (!Entry)
    {
        OutError = "Cannot read entry '" + File.Name + "': " + zip_strerror(Archive);
        return false;
    }
    const int Fd = OpenForWriting(Path);
    if (Fd < 0)
    {
        OutError = "Cannot write '" + Path + "': " + std::strerror(errno);
        zip_fclose(Entry);
        return false;
    }
    uint64 Total = 0;
    for (;;)
    {
        const zip_int64_t Read = zip_fread(Entry, Buffer.data(), Buffer.size());
        if (Read < 0)
        {
            OutError = "Cannot read entry '" + File.Name + "': " + zip_file_strerror(Entry);
            break;
        }
        if (Read == 0)
        {
            break;
        }
        Total += static_cast<uint64>(Read);
        if (Total > File.Size || !WriteAll(Fd, Buffer.data(), static_cast<std::size_t>(Read)))
        {
            OutError = Total > File.Size ? "Entry '" + File.Name + "' holds more bytes than it declares"
                                         : "Cannot write '" + Path + "': " + std::strerror(errno);
            break;
        }
    }
    if (OutError.empty() && Total != File.Size)
    {
        OutError = "Entry '" + File.Name + "' holds " + std::to_string(Total) + " of its " + std::to_string(File.Size) + " bytes";
    }
    zip_fclose(Entry);
    if (::close(Fd) != 0 && OutError.empty())
    {
        OutError = "Cannot write '" + Path + "': " + std::strerror(errno);
    }
    if (!OutError.empty())
    {
        ::unlink(Path.c_str());
        return false;
    }
    return true;
}

// Entries this large are handed out first, biggest first, so the two workers end together: a
// large file left for last would keep one worker busy long after the other ran out of work.
constexpr uint64 LargeEntrySize = 1u << 20;

// The order entries are handed out in: large ones by size, then the rest in archive order.
std::vector<std::size_t> WorkOrder(const std::vector<ArchiveEntryGuard::FPlannedFile>& Files)
{
    std::vector<std::size_t> Order(Files.size());
    for (std::size_t Number = 0; Number < Files.size(); ++Number)
    {
        Order[Number] = Number;
    }
    std::stable_sort(Order.begin(), Order.end(), [&](std::size_t Left, std::size_t Right)
    {
        const uint64 LeftSize = Files[Left].Size >= LargeEntrySize ? Files[Left].Size : 0;
        const uint64 RightSize = Files[Right].Size >= LargeEntrySize ? Files[Right].Size : 0;
        return LeftSize > RightSize;
    });
    return Order;
}

// One worker: takes the next entry until none is left or a worker has failed. Each worker reads
// through its own handle, since a libzip archive is not to be shared between threads.
void ExtractShare(zip_t* Archive, const std::vector<ArchiveEntryGuard::FPlannedFile>& Files, const std::vector<std::size_t>& Order,
                  const std::string& Root, std::atomic<std::size_t>& Next, std::atomic<bool>& bFailed, std::string& OutError)
{
    std::vector<char> Buffer(ReadChunkSize);
    for (std::size_t Taken = Next++; Taken < Order.size() && !bFailed; Taken = Next++)
    {
        if (!ExtractFile(Archive, Files[Order[Taken]], Root, Buffer, OutError))
        {
            bFailed = true;
            return;
        }
    }
}

std::string WithoutTrailingSlashes(std::string Path)
{
    while (Path.size() > 1 && (Path.back() == '/' || Path.back() == '\\'))
    {
        Path.pop_back();
    }
    return Path;
}
}

bool FZipArchive::ExtractAll(const std::string& ArchivePath, const std::string& DestinationDir, std::string& OutError)
{
    OutError.clear();
    if (DestinationDir.empty())
    {
        OutError = "No destination folder given for '" + ArchivePath + "'";
        return false;
    }
    FZipHandle Archive = OpenArchive(ArchivePath, OutError);
    if (!Archive)
    {
        return false;
    }
    ArchiveEntryGuard::FExtractionPlan Plan;
    const std::string Root = WithoutTrailingSlashes(DestinationDir);
    if (!PlanExtraction(Archive.get(), ArchivePath, Plan, OutError) || !CreateDirectories(Root, Plan.Directories, OutError))
    {
        return false;
    }
    // Two workers share the entries: inflating the large files and creating the many small ones
    // overlap on two cores. A failure stops both, and its message is the one told.
    FZipHandle SecondArchive = OpenArchive(ArchivePath, OutError);
    if (!SecondArchive)
    {
        return false;
    }
    const std::vector<std::size_t> Order = WorkOrder(Plan.Files);
    std::atomic<std::size_t> Next = 0;
    std::atomic<bool> bFailed = false;
    std::string SecondError;
    std::thread Second([&] { ExtractShare(SecondArchive.get(), Plan.Files, Order, Root, Next, bFailed, SecondError); });
    ExtractShare(Archive.get(), Plan.Files, Order, Root, Next, bFailed, OutError);
    Second.join();
    if (OutError.empty())
    {
        OutError = SecondError;
    }
    return OutError.empty();
}
}
