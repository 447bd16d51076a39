#include "Support/ProjectSnapshot.h"

#include "Support/TempDir.h"

namespace fs = std::filesystem;

namespace Maptorn::Testing
{
FProjectSnapshot SnapshotTree(const fs::path& Root)
{
    FProjectSnapshot Snapshot;
    std::error_code Error;
    for (fs::recursive_directory_iterator It(Root, Error), End; !Error && It != End; It.increment(Error))
    {
        const std::string Relative = fs::relative(It->path(), Root).generic_string();
        Snapshot[Relative] = It->is_directory() ? std::string("<dir>") : ReadTextFile(It->path());
    }
    return Snapshot;
}
}
