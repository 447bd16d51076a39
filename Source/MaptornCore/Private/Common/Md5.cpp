#include "Common/Md5.h"

#include "Common/NativePath.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <utility>
#include <vector>

namespace Maptorn
{
namespace
{
constexpr uint32 Shifts[64] = { 7,  12, 17, 22, 7,  12, 17, 22, 7,  12, 17, 22, 7,  12, 17, 22, 5,  9,  14, 20, 5,  9,
                                14, 20, 5,  9,  14, 20, 5,  9,  14, 20, 4,  11, 16, 23, 4,  11, 16, 23, 4,  11, 16, 23,
                                4,  11, 16, 23, 6,  10, 15, 21, 6,  10, 15, 21, 6,  10, 15, 21, 6,  10, 15, 21 };

constexpr uint32 Sines[64] = { 0xd76aa478, 0xe8c7b756, 0x242070db, 0xc1bdceee, 0xf57c0faf, 0x4787c62a, 0xa8304613, 0xfd469501,
                               0x698098d8, 0x8b44f7af, 0xffff5bb1, 0x895cd7be, 0x6b901122, 0xfd987193, 0xa679438e, 0x49b40821,
                               0xf61e2562, 0xc040b340, 0x265e5a51, 0xe9b6c7aa, 0xd62f105d, 0x02441453, 0xd8a1e681, 0xe7d3fbc8,
                               0x21e1cde6, 0xc33707d6, 0xf4d50d87, 0x455a14ed, 0xa9e3e905, 0xfcefa3f8, 0x676f02d9, 0x8d2a4c8a,
                               0xfffa3942, 0x8771f681, 0x6d9d6122, 0xfde5380c, 0xa4beea44, 0x4bdecfa9, 0xf6bb4b60, 0xbebfbc70,
                               0x289b7ec6, 0xeaa127fa, 0xd4ef3085, 0x04881d05, 0xd9d4d039, 0xe6db99e5, 0x1fa27cf8, 0xc4ac5665,
                               0xf4292244, 0x432aff97, 0xab9423a7, 0xfc93a039, 0x655b59c3, 0x8f0ccc92, 0xffeff47d, 0x85845dd1,
                               0x6fa87e4f, 0xfe2ce6e0, 0xa3014314, 0x4e0811a1, 0xf7537e82, 0xbd3af235, 0x2ad7d2bb, 0xeb86d391 };

constexpr uint32 RotateLeft(uint32 Value, uint32 Count)
{
    return (Value << Count) | (Value >> (32 - Count));
}
}

FMd5::FMd5() : State{ 0x67452301, 0xefcdab89, 0x98badcfe, 0x10325476 } {}

namespace
{
// One of the 64 steps, unrolled at compile time: the four state words take turns as the one
// written, so no step moves words around, and each step's mixing function, word and shift are
// constants. This runs about twice as fast as a loop that decides them at run time, which
// matters because every downloaded archive is hashed as it arrives.
template <std::size_t Round>
inline void Step(uint32 (&Words4)[4], const uint32 (&Words)[16])
{
    uint32& A = Words4[(64 - Round) % 4];
    const uint32 B = Words4[(65 - Round) % 4];
    const uint32 C = Words4[(66 - Round) % 4];
    const uint32 D = Words4[(67 - Round) % 4];
    uint32 Mix = 0;
    std::size_t WordIndex = 0;
    if constexpr (Round < 16)
    {
        Mix = D ^ (B & (C ^ D));
        WordIndex = Round;
    }
    else if constexpr (Round < 32)
    {
        Mix = C ^ (D & (B ^ C));
        WordIndex = (5 * Round + 1) % 16;
    }
    else if constexpr (Round < 48)
    {
        Mix = B ^ C ^ D;
        WordIndex = (3 * Round + 5) % 16;
    }
    else
    {
        Mix = C ^ (B | ~D);
        WordIndex = (7 * Round) % 16;
    }
    A = B + RotateLeft(A + Mix + Sines[Round] + Words[WordIndex], Shifts[Round]);
}

template <std::size_t... Rounds>
inline void AllSteps(uint32 (&Words4)[4], const uint32 (&Words)[16], std::index_sequence<Rounds...>)
{
    (Step<Rounds>(Words4, Words), ...);
}
}

void FMd5::Transform(const uint8* Block)
{
    uint32 Words[16];
    for (int Index = 0; Index < 16; ++Index)
    {
        Words[Index] = uint32(Block[Index * 4]) | uint32(Block[Index * 4 + 1]) << 8 | uint32(Block[Index * 4 + 2]) << 16 |
                       uint32(Block[Index * 4 + 3]) << 24;
    }
    uint32 Words4[4] = { State[0], State[1], State[2], State[3] };
    AllSteps(Words4, Words, std::make_index_sequence<64>{});
    for (int Index = 0; Index < 4; ++Index)
    {
        State[Index] += Words4[Index];
    }
}

void FMd5::Update(const void* Data, size_t Size)
{
    const uint8* Bytes = static_cast<const uint8*>(Data);
    size_t Used = static_cast<size_t>(TotalBytes % 64);
    TotalBytes += Size;
    while (Size > 0)
    {
        if (Used == 0 && Size >= 64)
        {
            // Whole blocks straight from the caller's bytes, without a copy.
            Transform(Bytes);
            Bytes += 64;
            Size -= 64;
            continue;
        }
        const size_t Take = std::min(Size, 64 - Used);
        std::memcpy(Buffer.data() + Used, Bytes, Take);
        Used += Take;
        Bytes += Take;
        Size -= Take;
        if (Used == 64)
        {
            Transform(Buffer.data());
            Used = 0;
        }
    }
}

std::string FMd5::FinalHex()
{
    const uint64 BitCount = TotalBytes * 8;
    const uint8 Padding[64] = { 0x80 };
    const size_t Used = static_cast<size_t>(TotalBytes % 64);
    Update(Padding, Used < 56 ? 56 - Used : 120 - Used);
    uint8 Length[8];
    for (int Index = 0; Index < 8; ++Index)
    {
        Length[Index] = static_cast<uint8>(BitCount >> (8 * Index));
    }
    Update(Length, 8);
    std::string Hex;
    for (const uint32 Word : State)
    {
        for (int Index = 0; Index < 4; ++Index)
        {
            char Digits[3];
            std::snprintf(Digits, sizeof(Digits), "%02x", static_cast<unsigned>((Word >> (8 * Index)) & 0xff));
            Hex += Digits;
        }
    }
    return Hex;
}

std::string FMd5::OfText(std::string_view Text)
{
    FMd5 Md5;
    Md5.Update(Text.data(), Text.size());
    return Md5.FinalHex();
}

std::string FMd5::OfFile(const std::string& Path, const std::atomic<bool>* bCancelled)
{
    std::ifstream File(NativePath::FromUtf8(Path), std::ios::binary);
    if (!File)
    {
        return {};
    }
    FMd5 Md5;
    std::vector<char> Chunk(1 << 20);
    while (File)
    {
        if (bCancelled && bCancelled->load())
        {
            return {};
        }
        File.read(Chunk.data(), static_cast<std::streamsize>(Chunk.size()));
        Md5.Update(Chunk.data(), static_cast<size_t>(File.gcount()));
    }
    return File.bad() ? std::string() : Md5.FinalHex();
}
}
