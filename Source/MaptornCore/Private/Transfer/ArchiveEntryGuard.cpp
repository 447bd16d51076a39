#include "Transfer/ArchiveEntryGuard.h"

#include <algorithm>
#include <cctype>
#include <cstdint>

namespace Maptorn::ArchiveEntryGuard
{
namespace
{
// The st_mode type bits, spelled out because the core also builds where <sys/stat.h> has none.
constexpr uint32 ModeTypeMask = 0170000;
constexpr uint32 ModeSymbolicLink = 0120000;
constexpr uint32 ModeRegularFile = 0100000;
constexpr uint32 ModeDirectory = 0040000;

std::string Refusal(const std::string& ArchivePath, const std::string& What)
{
    return "Refused archive '" + ArchivePath + "': " + What;
}

void AddParentDirectories(const std::string& RelativePath, std::set<std::string>& Directories)
{
    for (std::size_t Slash = RelativePath.find('/'); Slash != std::string::npos; Slash = RelativePath.find('/', Slash + 1))
    {
        Directories.insert(RelativePath.substr(0, Slash));
    }
}
}

// A NUL inside a stored name could cut the name short when it reaches the OS.
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

std::string CheckEntryKind(std::optional<uint32> UnixMode)
{
    if (!UnixMode)
    {
        return {};
    }
    const uint32 Type = *UnixMode & ModeTypeMask;
    if (Type == ModeSymbolicLink)
    {
        return "is a symbolic link";
    }
    if (Type != 0 && Type != ModeRegularFile && Type != ModeDirectory)
    {
        return "is neither a file nor a folder";
    }
    return {};
}

std::string CheckEntrySizes(std::optional<uint64> Size, std::optional<uint64> CompressedSize)
{
    if (!Size || !CompressedSize)
    {
        return "does not declare its size";
    }
    if (*Size > MaxEntrySize)
    {
        return "declares " + std::to_string(*Size) + " bytes, over the limit of " + std::to_string(MaxEntrySize >> 30) + " GiB per entry";
    }
    const bool bRatioTooHigh = *CompressedSize < UINT64_MAX / MaxCompressionRatio && *Size > *CompressedSize * MaxCompressionRatio;
    if (*Size > RatioCheckedAbove && bRatioTooHigh)
    {
        return "declares " + std::to_string(*Size) + " bytes from " + std::to_string(*CompressedSize) + " compressed, over the limit of "
            + std::to_string(MaxCompressionRatio) + ":1";
    }
    return {};
}

std::string CheckEntryEncoding(bool bEncrypted, uint32 Method, bool bMethodReadable)
{
    if (bEncrypted)
    {
        return "is encrypted";
    }
    if (!bMethodReadable)
    {
        return "uses compression method " + std::to_string(Method) + ", which cannot be read";
    }
    return {};
}

std::string CheckEntryCount(const std::string& ArchivePath, uint64 Count)
{
    if (Count > MaxEntryCount)
    {
        return Refusal(ArchivePath, "it holds " + std::to_string(Count) + " entries, over the limit of " + std::to_string(MaxEntryCount));
    }
    return {};
}

bool PlanEntry(const std::string& ArchivePath, uint64 Index, const FEntryFacts& Facts, FExtractionPlan& Plan, std::string& OutError)
{
    std::string RelativePath;
    bool bIsDirectory = false;
    std::string Reason = CheckEntryName(Facts.Name, RelativePath, bIsDirectory);
    if (Reason.empty())
    {
        Reason = CheckEntryKind(Facts.UnixMode);
    }
    if (Reason.empty())
    {
        Reason = CheckEntrySizes(Facts.Size, Facts.CompressedSize);
    }
    if (Reason.empty())
    {
        Reason = CheckEntryEncoding(Facts.bEncrypted, Facts.Method, Facts.bMethodReadable);
    }
    if (!Reason.empty())
    {
        OutError = Refusal(ArchivePath, "entry '" + std::string(Facts.Name) + "' " + Reason);
        return false;
    }
    AddParentDirectories(RelativePath, Plan.Directories);
    if (bIsDirectory)
    {
        if (!RelativePath.empty())
        {
            Plan.Directories.insert(RelativePath);
        }
        return true;
    }
    Plan.TotalSize += *Facts.Size;
    Plan.Files.push_back({ Index, std::string(Facts.Name), std::move(RelativePath), *Facts.Size });
    return true;
}

bool FinishPlan(const std::string& ArchivePath, const FExtractionPlan& Plan, std::string& OutError)
{
    if (Plan.TotalSize > MaxTotalSize)
    {
        OutError = Refusal(ArchivePath, "its entries declare " + std::to_string(Plan.TotalSize) + " bytes in total, over the limit of "
            + std::to_string(MaxTotalSize >> 30) + " GiB");
        return false;
    }
    for (const FPlannedFile& File : Plan.Files)
    {
        if (Plan.Directories.contains(File.RelativePath))
        {
            OutError = Refusal(ArchivePath, "entry '" + File.Name + "' is both a file and a folder");
            return false;
        }
    }
    return true;
}
}
