#pragma once

#include "Common/CoreTypes.h"

#include <atomic>
#include <cstddef>
#include <string>

namespace Maptorn
{
// MD5 (RFC 1321) of a mod file: mod.io compares it with what it received ("filehash"), and the
// same digest names a multipart session so that a later run finds it again.
class FModFileMd5
{
public:
    FModFileMd5();
    void Update(const void* Bytes, std::size_t Size);
    // 32 lower-case hex digits; the object is spent afterwards.
    std::string FinalHex();

    // The digest of a whole file; empty when it cannot be read or bCancelled is set meanwhile.
    static std::string OfFile(const std::string& Path, const std::atomic<bool>& bCancelled);

private:
    void Transform(const uint8* Block);

    uint32 State[4];
    uint64 Length = 0;
    uint8 Buffer[64] = {};
};
}
