#pragma once

#include "Common/CoreTypes.h"
#include "Platform/ArchivePort.h"
#include "Transfer/ArchiveEntryGuard.h"

#include <string>

namespace Maptorn
{
// Extracts downloaded shared source plug-ins with libzip. Every entry passes the guards both hosts
// share (Transfer/ArchiveEntryGuard.h) before the first byte is written, so a hostile archive is
// refused whole and leaves the destination untouched.
class FZipArchive final : public IMaptornArchive
{
public:
    // The limits every host enforces, kept here under their old names for callers of this class.
    static constexpr uint64 MaxEntrySize = ArchiveEntryGuard::MaxEntrySize;
    static constexpr uint64 MaxTotalSize = ArchiveEntryGuard::MaxTotalSize;
    static constexpr uint64 MaxCompressionRatio = ArchiveEntryGuard::MaxCompressionRatio;
    static constexpr uint64 RatioCheckedAbove = ArchiveEntryGuard::RatioCheckedAbove;
    static constexpr uint64 MaxEntryCount = ArchiveEntryGuard::MaxEntryCount;

    bool ExtractAll(const std::string& ArchivePath, const std::string& DestinationDir, std::string& OutError) override;
};
}
