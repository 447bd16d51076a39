#pragma once

#include "Common/CoreTypes.h"

#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

// The checks every host runs on a downloaded plug-in archive before it writes a byte: each
// entry's name, kind, sizes and encoding, then the archive as a whole. The hosts read the ZIP
// container with different libraries; what they refuse, and the reason they give, is decided here
// once, from plain values the container declares.
namespace Maptorn::ArchiveEntryGuard
{
// Limits on what an archive may declare. Plug-ins are a few hundred MiB at most; anything far
// beyond is a decompression bomb aimed at filling the user's disk.
inline constexpr uint64 MaxEntrySize = 4ull << 30;          // 4 GiB uncompressed, one entry
inline constexpr uint64 MaxTotalSize = 16ull << 30;         // 16 GiB uncompressed, all entries
inline constexpr uint64 MaxCompressionRatio = 1000;         // uncompressed : compressed
inline constexpr uint64 RatioCheckedAbove = 1ull << 20;     // small entries may compress as they like
inline constexpr uint64 MaxEntryCount = 200000;

// What the container says about one entry.
struct FEntryFacts
{
    std::string_view Name;                 // as stored, in UTF-8
    std::optional<uint32> UnixMode;        // st_mode, when a Unix archiver wrote the entry
    std::optional<uint64> Size;            // uncompressed, when declared
    std::optional<uint64> CompressedSize;  // when declared
    bool bEncrypted = false;
    uint32 Method = 0;                     // compression method number
    bool bMethodReadable = true;           // whether this host can decompress Method
};

struct FPlannedFile
{
    uint64 Index = 0;          // the entry's position in the archive
    std::string Name;          // as the archive spells it, for messages
    std::string RelativePath;  // "/" separated, no "." or empty segments
    uint64 Size = 0;
};

// Everything an accepted archive will create below the destination.
struct FExtractionPlan
{
    std::vector<FPlannedFile> Files;
    std::set<std::string> Directories;  // every folder to create, parents sort before children
    uint64 TotalSize = 0;
};

// Each returns the reason an entry is unsafe, empty when it is fine. The reason completes the
// sentence "entry '<name>' ...".

// RelativePath gets the name with "\" read as "/" and without "." or empty segments.
MAPTORNCORE_API std::string CheckEntryName(std::string_view Name, std::string& OutRelativePath, bool& bOutIsDirectory);
// A link would be written as a file holding its target, which is harmless, but an archive that
// carries one was not made by a plug-in upload.
MAPTORNCORE_API std::string CheckEntryKind(std::optional<uint32> UnixMode);
MAPTORNCORE_API std::string CheckEntrySizes(std::optional<uint64> Size, std::optional<uint64> CompressedSize);
MAPTORNCORE_API std::string CheckEntryEncoding(bool bEncrypted, uint32 Method, bool bMethodReadable);

// The whole refusal message, "Refused archive '<path>': ...", or empty.
MAPTORNCORE_API std::string CheckEntryCount(const std::string& ArchivePath, uint64 Count);

// Runs every check on one entry and adds it to Plan. False with the whole refusal message.
MAPTORNCORE_API bool PlanEntry(const std::string& ArchivePath, uint64 Index, const FEntryFacts& Facts, FExtractionPlan& Plan, std::string& OutError);

// The checks that need every entry: the total size, and no path both a file and a folder.
MAPTORNCORE_API bool FinishPlan(const std::string& ArchivePath, const FExtractionPlan& Plan, std::string& OutError);
}
