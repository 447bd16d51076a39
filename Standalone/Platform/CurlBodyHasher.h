#pragma once

#include "Common/CoreTypes.h"
#include "Common/Md5.h"
#include "Transfer/GrowingFile.h"

#include <memory>
#include <string>
#include <thread>

namespace Maptorn
{
// Hashes a response body on a thread of its own, reading the file behind the transfer that
// writes it, so checking a download costs a second core instead of the transfer's time. Every
// byte the transfer reports written is in the digest once Finish has returned, whether the
// transfer succeeded or was cut (a resumed download goes on hashing from there).
class FCurlBodyHasher
{
public:
    // Hashes what is written to FilePath from StartOffset on.
    FCurlBodyHasher(const std::string& FilePath, int64 StartOffset, std::shared_ptr<FMd5> Digest);
    ~FCurlBodyHasher();
    FCurlBodyHasher(const FCurlBodyHasher&) = delete;
    FCurlBodyHasher& operator=(const FCurlBodyHasher&) = delete;

    // The transfer wrote Bytes more, already flushed to the file.
    void Written(int64 Bytes) { Progress.Advance(Bytes); }
    // No more bytes come: returns once all of them are hashed. False when the file could not be
    // read back, in which case the digest is incomplete.
    bool Finish();

private:
    void Run();

    std::string FilePath;
    int64 StartOffset = 0;
    std::shared_ptr<FMd5> Digest;
    FGrowingFile Progress;
    bool bReadFailed = false;
    std::thread Thread;
};
}
