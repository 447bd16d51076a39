#include "Transfer/GrowingFile.h"

namespace Maptorn
{
void FGrowingFile::Advance(int64 Bytes)
{
    {
        std::lock_guard<std::mutex> Lock(Mutex);
        BytesWritten += Bytes;
    }
    Changed.notify_all();
}

void FGrowingFile::Finish(bool bSucceeded)
{
    {
        std::lock_guard<std::mutex> Lock(Mutex);
        bFinished = true;
        bFailed = !bSucceeded;
    }
    Changed.notify_all();
}

bool FGrowingFile::WaitUntil(int64 Offset) const
{
    std::unique_lock<std::mutex> Lock(Mutex);
    Changed.wait(Lock, [&] { return BytesWritten >= Offset || bFinished; });
    return BytesWritten >= Offset && !bFailed;
}

int64 FGrowingFile::Written() const
{
    std::lock_guard<std::mutex> Lock(Mutex);
    return BytesWritten;
}

bool FGrowingFile::Failed() const
{
    std::lock_guard<std::mutex> Lock(Mutex);
    return bFailed;
}
}
