#include "ModioService/SandboxBlobs.h"

#include "Common/FileHelper.h"
#include "Common/Paths.h"
#include "ModioService/SandboxRandom.h"

#include <filesystem>
#include <fstream>

namespace Maptorn::Sandbox
{
FBlobFolder::~FBlobFolder()
{
    if (bOwnsRoot)
    {
        FileSystem::DeleteDirectoryRecursively(Root);
    }
    else if (!Root.empty())
    {
        FileSystem::DeleteDirectoryRecursively(Paths::Combine(Root, "incoming"));
    }
}

bool FBlobFolder::Open(const std::string& InDataDir, std::string& OutError)
{
    DataDir = InDataDir;
    bOwnsRoot = DataDir.empty();
    if (bOwnsRoot)
    {
        std::error_code Error;
        const std::filesystem::path Temp = std::filesystem::temp_directory_path(Error);
        Root = Paths::Combine(Temp.generic_string(), "maptorn-sandbox-" + RandomText(12, "abcdefghijklmnopqrstuvwxyz0123456789"));
    }
    else
    {
        Root = DataDir;
    }
    // Bodies half received by an earlier run are of no use.
    FileSystem::DeleteDirectoryRecursively(Paths::Combine(Root, "incoming"));
    if (!FileSystem::CreateDirectoryTree(Paths::Combine(Root, "blobs")) ||
        !FileSystem::CreateDirectoryTree(Paths::Combine(Root, "incoming")))
    {
        OutError = "cannot create the sandbox's folders under " + Root;
        return false;
    }
    return true;
}

std::string FBlobFolder::PathOf(const std::string& Blob) const
{
    return Paths::Combine(Root, "blobs", Blob);
}

std::string FBlobFolder::NewIncomingPath() const
{
    return Paths::Combine(Root, "incoming", RandomText(20, "abcdefghijklmnopqrstuvwxyz0123456789"));
}

std::string FBlobFolder::NewBlobName(const std::string& Prefix) const
{
    return Prefix + "-" + RandomText(16, "abcdefghijklmnopqrstuvwxyz0123456789");
}

std::string FBlobFolder::Adopt(const std::string& IncomingPath, const std::string& Prefix) const
{
    const std::string Blob = NewBlobName(Prefix);
    return FileSystem::MoveFile(IncomingPath, PathOf(Blob)) ? Blob : std::string();
}

std::string FBlobFolder::Write(const std::string& Prefix, std::string_view Bytes) const
{
    const std::string Blob = NewBlobName(Prefix);
    std::ofstream File(PathOf(Blob), std::ios::binary | std::ios::trunc);
    File.write(Bytes.data(), static_cast<std::streamsize>(Bytes.size()));
    return File ? Blob : std::string();
}

void FBlobFolder::Remove(const std::string& Blob) const
{
    if (!Blob.empty())
    {
        FileSystem::DeleteFile(PathOf(Blob));
    }
}

std::string FBlobFolder::StatePath() const
{
    return DataDir.empty() ? std::string() : Paths::Combine(DataDir, "state.json");
}
}
