#pragma once

#include "Common/CoreTypes.h"

#include <atomic>
#include <functional>
#include <string>

namespace Maptorn
{
// Called as input bytes are read: bytes read so far, bytes of every file together.
using FModFileArchiveProgress = std::function<void(int64 BytesRead, int64 TotalBytes)>;

// Packs everything below RootDirectory into a deflated ZIP at ArchivePath (libzip). Entry names
// are relative to the root with "/" separators, in name order, each with its file's time, so the
// same folder always gives the same bytes. Setting bCancelled stops it between two reads; on any
// failure no archive is left and OutError says why.
bool WriteModFileArchive(const std::string& RootDirectory, const std::string& ArchivePath, const FModFileArchiveProgress& OnProgress,
    const std::atomic<bool>& bCancelled, std::string& OutError);
}
