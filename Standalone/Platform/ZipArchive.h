#pragma once

#include "Common/CoreTypes.h"
#include "Platform/ArchivePort.h"

#include <string>

namespace Maptorn
{
// Extracts downloaded shared source plug-ins with libzip. Every entry is checked before the first
// byte is written, so a hostile archive is refused whole and leaves the destination untouched.
class FZipArchive final : public IMaptornArchive
{
public:
    // Limits on what an archive may declare. Plug-ins are a few hundred MiB at most; anything far
    // beyond is a decompression bomb aimed at filling the user's disk.
    static constexpr uint64 MaxEntrySize = 4ull << 30;          // 4 GiB uncompressed, one entry
    static constexpr uint64 MaxTotalSize = 16ull << 30;         // 16 GiB uncompressed, all entries
    static constexpr uint64 MaxCompressionRatio = 1000;         // uncompressed : compressed
    static constexpr uint64 RatioCheckedAbove = 1ull << 20;     // small entries may compress as they like
    static constexpr uint64 MaxEntryCount = 200000;

    bool ExtractAll(const std::string& ArchivePath, const std::string& DestinationDir, std::string& OutError) override;
};
}
