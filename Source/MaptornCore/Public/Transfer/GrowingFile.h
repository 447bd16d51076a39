#pragma once

#include "Common/CoreTypes.h"

#include <condition_variable>
#include <mutex>

namespace Maptorn
{
// How far one thread has written a file that another thread already reads: the reader sends an
// upload body while its writer is still copying the archive into it, so the copy and the sending
// overlap instead of following each other.
class MAPTORNCORE_API FGrowingFile
{
public:
    // The writer: Bytes more are in the file (written, so a reader of the file sees them).
    void Advance(int64 Bytes);
    // The writer is done: every byte is written, or it stopped and will write no more.
    void Finish(bool bSucceeded);

    // The reader: waits until the file holds at least Offset bytes. False when the writer stopped
    // short of them, in which case the reader must give up.
    bool WaitUntil(int64 Offset) const;
    int64 Written() const;
    bool Failed() const;

private:
    mutable std::mutex Mutex;
    mutable std::condition_variable Changed;
    int64 BytesWritten = 0;
    bool bFinished = false;
    bool bFailed = false;
};
}
