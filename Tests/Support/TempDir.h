#pragma once

#include <filesystem>
#include <string>

namespace Maptorn::Testing
{
// A fresh folder under the system's temporary directory, removed with everything in it.
class FTempDir
{
public:
    FTempDir();
    ~FTempDir();
    FTempDir(const FTempDir&) = delete;
    FTempDir& operator=(const FTempDir&) = delete;

    const std::filesystem::path& Path() const { return Root; }
    // The folder as text with a trailing "/", the way the engine hands out directories.
    std::string Dir() const { return Root.generic_string() + "/"; }

private:
    std::filesystem::path Root;
};

// Runs the test inside a folder, restoring the previous working directory afterwards.
class FScopedWorkingDirectory
{
public:
    explicit FScopedWorkingDirectory(const std::filesystem::path& Folder);
    ~FScopedWorkingDirectory();

private:
    std::filesystem::path Previous;
};

void WriteTextFile(const std::filesystem::path& File, const std::string& Text);
std::string ReadTextFile(const std::filesystem::path& File);
}
