#include "Platform/ZipArchive.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <memory>
#include <set>
#include <string_view>
#include <system_error>
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

struct FPlannedFile
{
    zip_uint64_t Index = 0;
    std::string Name;          // as the archive spells it, for messages
    std::string RelativePath;  // "/" separated, no "." or empty segments
    uint64 Size = 0;
};

struct FExtractionPlan
{
    std::vector<FPlannedFile> Files;
    std::set<std::string> Directories;  // every folder to create, parents sort before children
    uint64 TotalSize = 0;
};

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

// Empty when the name is safe; RelativePath then holds it with "\" read as "/" and without "."
// or empty segments. libzip already turns a NUL inside a stored name into a space, so a name can
// never be cut short behind our back; the NUL check guards against that changing.
std::string CheckEntryName(std::string_view Name, std::string& OutRelativePath, bool& bOutIsDirectory)
{
    if (Name.empty())
    {
        return "has an empty name";
    }
    if (Name.find('\0') != std::string_view::npos)
    {
        return "contains a NUL character";
    }
    std::string Normalised(Name);
    std::replace(Normalised.begin(), Normalised.end(), '\\', '/');
    const bool bHasDrive = Normalised.size() >= 2 && std::isalpha(static_cast<unsigned char>(Normalised[0])) && Normalised[1] == ':';
    if (Normalised.front() == '/' || bHasDrive)
    {
        return "is an absolute path";
    }
    bOutIsDirectory = Normalised.back() == '/';
    OutRelativePath.clear();
    std::string_view Rest = Normalised;
    std::string_view LastSegment;
    while (!Rest.empty())
    {
        const std::size_t Slash = Rest.find('/');
        LastSegment = Rest.substr(0, Slash);
        Rest = Slash == std::string_view::npos ? std::string_view() : Rest.substr(Slash + 1);
        if (LastSegment == "..")
        {
            return "climbs out of the destination with '..'";
        }
        if (LastSegment.empty() || LastSegment == ".")
        {
            continue;
        }
        OutRelativePath.append(OutRelativePath.empty() ? "" : "/").append(LastSegment);
    }
    if (!bOutIsDirectory && (LastSegment == "." || OutRelativePath.empty()))
    {
        return "has no file name";
    }
    return {};
}

// Unix archivers keep st_mode in the high 16 bits; a link would be written as a file holding its
// target, which is harmless, but an archive that carries one was not made by a plug-in upload.
std::string CheckEntryKind(zip_t* Archive, zip_uint64_t Index)
{
    zip_uint8_t OpSys = 0;
    zip_uint32_t Attributes = 0;
    if (zip_file_get_external_attributes(Archive, Index, 0, &OpSys, &Attributes) != 0 || OpSys != ZIP_OPSYS_UNIX)
    {
        return {};
    }
    const mode_t Type = static_cast<mode_t>(Attributes >> 16) & S_IFMT;
    if (Type == S_IFLNK)
    {
        return "is a symbolic link";
    }
    if (Type != 0 && Type != S_IFREG && Type != S_IFDIR)
    {
        return "is neither a file nor a folder";
    }
    return {};
}

std::string CheckEntrySizes(const zip_stat_t& Stat)
{
    if ((Stat.valid & ZIP_STAT_SIZE) == 0 || (Stat.valid & ZIP_STAT_COMP_SIZE) == 0)
    {
        return "does not declare its size";
    }
    if (Stat.size > FZipArchive::MaxEntrySize)
    {
        return "declares " + std::to_string(Stat.size) + " bytes, over the limit of " + std::to_string(FZipArchive::MaxEntrySize >> 30) + " GiB per entry";
    }
    const uint64 Ratio = FZipArchive::MaxCompressionRatio;
    const bool bRatioTooHigh = Stat.comp_size < UINT64_MAX / Ratio && Stat.size > Stat.comp_size * Ratio;
    if (Stat.size > FZipArchive::RatioCheckedAbove && bRatioTooHigh)
    {
        return "declares " + std::to_string(Stat.size) + " bytes from " + std::to_string(Stat.comp_size)
            + " compressed, over the limit of " + std::to_string(Ratio) + ":1";
    }
    if ((Stat.valid & ZIP_STAT_ENCRYPTION_METHOD) != 0 && Stat.encryption_method != ZIP_EM_NONE)
    {
        return "is encrypted";
    }
    if ((Stat.valid & ZIP_STAT_COMP_METHOD) != 0 && !zip_compression_method_supported(Stat.comp_method, 0))
    {
        return "uses compression method " + std::to_string(Stat.comp_method) + ", which cannot be read";
    }
    return {};
}

void AddParentDirectories(const std::string& RelativePath, std::set<std::string>& Directories)
{
    for (std::size_t Slash = RelativePath.find('/'); Slash != std::string::npos; Slash = RelativePath.find('/', Slash + 1))
    {
        Directories.insert(RelativePath.substr(0, Slash));
    }
}

// Reads the whole central directory and refuses the archive at its first unsafe entry.
bool PlanExtraction(zip_t* Archive, const std::string& ArchivePath, FExtractionPlan& OutPlan, std::string& OutError)
{
    const zip_int64_t Count = zip_get_num_entries(Archive, 0);
    if (Count < 0 || static_cast<uint64>(Count) > FZipArchive::MaxEntryCount)
    {
        OutError = "Refused archive '" + ArchivePath + "': it holds " + std::to_string(Count) + " entries, over the limit of "
            + std::to_string(FZipArchive::MaxEntryCount);
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
        std::string RelativePath;
        bool bIsDirectory = false;
        std::string Reason = CheckEntryName(Stat.name, RelativePath, bIsDirectory);
        if (Reason.empty())
        {
            Reason = CheckEntryKind(Archive, Index);
        }
        if (Reason.empty())
        {
            Reason = CheckEntrySizes(Stat);
        }
        if (!Reason.empty())
        {
            OutError = "Refused archive '" + ArchivePath + "': entry '" + Stat.name + "' " + Reason;
            return false;
        }
        AddParentDirectories(RelativePath, OutPlan.Directories);
        if (bIsDirectory)
        {
            if (!RelativePath.empty())
            {
                OutPlan.Directories.insert(RelativePath);
            }
            continue;
        }
        OutPlan.TotalSize += Stat.size;
        OutPlan.Files.push_back({ Index, Stat.name, std::move(RelativePath), Stat.size });
    }
    if (OutPlan.TotalSize > FZipArchive::MaxTotalSize)
    {
        OutError = "Refused archive '" + ArchivePath + "': its entries declare " + std::to_string(OutPlan.TotalSize)
            + " bytes in total, over the limit of " + std::to_string(FZipArchive::MaxTotalSize >> 30) + " GiB";
        return false;
    }
    for (const FPlannedFile& File : OutPlan.Files)
    {
        if (OutPlan.Directories.contains(File.RelativePath))
        {
            OutError = "Refused archive '" + ArchivePath + "': entry '" + File.Name + "' is both a file and a folder";
            return false;
        }
    }
    return true;
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
bool ExtractFile(zip_t* Archive, const FPlannedFile& File, const std::string& Root, std::vector<char>& Buffer, std::string& OutError)
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
    FExtractionPlan Plan;
    const std::string Root = WithoutTrailingSlashes(DestinationDir);
    if (!PlanExtraction(Archive.get(), ArchivePath, Plan, OutError) || !CreateDirectories(Root, Plan.Directories, OutError))
    {
        return false;
    }
    // In archive order, so the archive is read front to back. Extracting with one handle per
    // thread was measured no faster on two cores: creating the files, not inflating, is the cost.
    std::vector<char> Buffer(ReadChunkSize);
    for (const FPlannedFile& File : Plan.Files)
    {
        if (!ExtractFile(Archive.get(), File, Root, Buffer, OutError))
        {
            return false;
        }
    }
    return true;
}
}
