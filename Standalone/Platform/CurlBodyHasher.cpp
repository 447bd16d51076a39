#include "Platform/CurlBodyHasher.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <vector>

namespace Maptorn
{
namespace
{
constexpr int64 ReadChunk = 1 << 20;
}

FCurlBodyHasher::FCurlBodyHasher(const std::string& InFilePath, int64 InStartOffset, std::shared_ptr<FMd5> InDigest)
    : FilePath(InFilePath), StartOffset(InStartOffset), Digest(std::move(InDigest)), Thread([this] { Run(); })
{
}

FCurlBodyHasher::~FCurlBodyHasher()
{
    Finish();
}

bool FCurlBodyHasher::Finish()
{
    Progress.Finish(true);
    if (Thread.joinable())
    {
        Thread.join();
    }
    return !bReadFailed;
}

void FCurlBodyHasher::Run()
{
    const int File = ::open(FilePath.c_str(), O_RDONLY | O_CLOEXEC);
    std::vector<char> Buffer(ReadChunk);
    int64 Hashed = 0;
    while (File >= 0 && Progress.WaitUntil(Hashed + 1))
    {
        const int64 Wanted = std::min(Progress.Written() - Hashed, ReadChunk);
        const ssize_t Read = ::pread(File, Buffer.data(), static_cast<size_t>(Wanted), static_cast<off_t>(StartOffset + Hashed));
        if (Read <= 0)
        {
            break;
        }
        Digest->Update(Buffer.data(), static_cast<size_t>(Read));
        Hashed += Read;
    }
    bReadFailed = File < 0 || Hashed != Progress.Written();
    if (File >= 0)
    {
        ::close(File);
    }
}
}
