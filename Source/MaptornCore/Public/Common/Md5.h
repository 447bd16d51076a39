#pragma once

#include "Common/CoreTypes.h"

#include <array>
#include <atomic>
#include <cstddef>
#include <string>
#include <string_view>

namespace Maptorn
{
// MD5 (RFC 1321), fed in pieces so that large files never sit in memory whole. mod.io checks mod
// files with it ("filehash"), and a digest names a multipart upload so that a later run finds it.
class MAPTORNCORE_API FMd5
{
public:
    FMd5();
    void Update(const void* Data, size_t Size);
    // How many bytes have been fed so far.
    uint64 GetTotalBytes() const { return TotalBytes; }
    // 32 lower-case hex digits; the object is spent afterwards.
    std::string FinalHex();

    static std::string OfText(std::string_view Text);
    // Empty when the file cannot be read, or when bCancelled is set meanwhile.
    static std::string OfFile(const std::string& Path, const std::atomic<bool>* bCancelled = nullptr);

private:
    void Transform(const uint8* Block);

    std::array<uint32, 4> State;
    std::array<uint8, 64> Buffer{};
    uint64 TotalBytes = 0;
};
}
