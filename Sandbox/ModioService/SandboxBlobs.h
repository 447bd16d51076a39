#pragma once

#include <string>
#include <string_view>

namespace Maptorn::Sandbox
{
// Where the service keeps bytes: logos, mod files, upload parts, and request bodies while they
// arrive. Under the data folder when there is one, else a temporary folder removed at the end.
class FBlobFolder
{
public:
    FBlobFolder() = default;
    ~FBlobFolder();
    FBlobFolder(const FBlobFolder&) = delete;
    FBlobFolder& operator=(const FBlobFolder&) = delete;

    bool Open(const std::string& DataDir, std::string& OutError);
    bool IsOpen() const { return !Root.empty(); }

    std::string PathOf(const std::string& Blob) const;
    // A fresh path for a body being received; the caller removes or adopts it.
    std::string NewIncomingPath() const;
    // Moves a received file into the folder; the blob's name, or empty on failure.
    std::string Adopt(const std::string& IncomingPath, const std::string& Prefix) const;
    std::string Write(const std::string& Prefix, std::string_view Bytes) const;
    void Remove(const std::string& Blob) const;
    // The data folder's state file, or empty when state is not kept.
    std::string StatePath() const;

private:
    std::string NewBlobName(const std::string& Prefix) const;

    std::string Root;
    std::string DataDir;
    bool bOwnsRoot = false;
};
}
