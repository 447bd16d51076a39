#pragma once

#include "Common/CoreTypes.h"

#include <string>

namespace Maptorn
{
// Stands for the ZIP library: extracts every entry of an archive into a folder, keeping the
// entries' relative paths. Blocking; called from a pool worker.
class MAPTORNCORE_API IMaptornArchive
{
public:
    virtual ~IMaptornArchive() = default;

    // False with a readable reason when the archive cannot be read or an entry would land
    // outside DestinationDir.
    virtual bool ExtractAll(const std::string& ArchivePath, const std::string& DestinationDir, std::string& OutError) = 0;
};
}
