#include "Support/TempDir.h"

#include <fstream>
#include <iterator>
#include <random>

namespace fs = std::filesystem;

namespace Maptorn::Testing
{
FTempDir::FTempDir()
{
    std::random_device Random;
    for (;;)
    {
        Root = fs::temp_directory_path() / ("maptorn-test-" + std::to_string(Random()));
        std::error_code Error;
        if (fs::create_directory(Root, Error))
        {
            break;
        }
    }
}

FTempDir::~FTempDir()
{
    std::error_code Error;
    fs::remove_all(Root, Error);
}

FScopedWorkingDirectory::FScopedWorkingDirectory(const fs::path& Folder)
    : Previous(fs::current_path())
{
    fs::current_path(Folder);
}

FScopedWorkingDirectory::~FScopedWorkingDirectory()
{
    std::error_code Error;
    fs::current_path(Previous, Error);
}

void WriteTextFile(const fs::path& File, const std::string& Text)
{
    fs::create_directories(File.parent_path());
    std::ofstream(File, std::ios::binary) << Text;
}

std::string ReadTextFile(const fs::path& File)
{
    std::ifstream In(File, std::ios::binary);
    return std::string((std::istreambuf_iterator<char>(In)), std::istreambuf_iterator<char>());
}
}
