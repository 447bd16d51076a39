#include "Platform/RestModFileMd5.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>
#include <vector>

namespace Maptorn
{
namespace
{
constexpr uint32 RoundShifts[64] = {7, 12, 17, 22, 7, 12, 17, 22, 7, 12, 17, 22, 7, 12, 17, 22, 5, 9, 14, 20, 5, 9, 14, 20, 5, 9,
    14, 20, 5, 9, 14, 20, 4, 11, 16, 23, 4, 11, 16, 23, 4, 11, 16, 23, 4, 11, 16, 23, 6, 10, 15, 21, 6, 10, 15, 21, 6, 10, 15, 21,
    6, 10, 15, 21};

// floor(abs(sin(i + 1)) * 2^32)
constexpr uint32 SineTable[64] = {0xd76aa478, 0xe8c7b756, 0x242070db, 0xc1bdceee, 0xf57c0faf, 0x4787c62a, 0xa8304613, 0xfd469501,
    0x698098d8, 0x8b44f7af, 0xffff5bb1, 0x895cd7be, 0x6b901122, 0xfd987193, 0xa679438e, 0x49b40821, 0xf61e2562, 0xc040b340,
    0x265e5a51, 0xe9b6c7aa, 0xd62f105d, 0x02441453, 0xd8a1e681, 0xe7d3fbc8, 0x21e1cde6, 0xc33707d6, 0xf4d50d87, 0x455a14ed,
    0xa9e3e905, 0xfcefa3f8, 0x676f02d9, 0x8d2a4c8a, 0xfffa3942, 0x8771f681, 0x6d9d6122, 0xfde5380c, 0xa4beea44, 0x4bdecfa9,
    0xf6bb4b60, 0xbebfbc70, 0x289b7ec6, 0xeaa127fa, 0xd4ef3085, 0x04881d05, 0xd9d4d039, 0xe6db99e5, 0x1fa27cf8, 0xc4ac5665,
    0xf4292244, 0x432aff97, 0xab9423a7, 0xfc93a039, 0x655b59c3, 0x8f0ccc92, 0xffeff47d, 0x85845dd1, 0x6fa87e4f, 0xfe2ce6e0,
    0xa3014314, 0x4e0811a1, 0xf7537e82, 0xbd3af235, 0x2ad7d2bb, 0xeb86d391};

uint32 RotateLeft(uint32 Value, uint32 Bits)
{
    return (Value << Bits) | (Value >> (32 - Bits));
}

struct FFileCloser
{
    void operator()(std::FILE* File) const { std::fclose(File); }
};
}

FModFileMd5::FModFileMd5()
    : State{0x67452301, 0xefcdab89, 0x98badcfe, 0x10325476}
{
}

void FModFileMd5::Transform(const uint8* Block)
{
    uint32 Words[16];
    for (int Index = 0; Index < 16; ++Index)
    {
        Words[Index] = static_cast<uint32>(Block[Index * 4]) | static_cast<uint32>(Block[Index * 4 + 1]) << 8 |
            static_cast<uint32>(Block[Index * 4 + 2]) << 16 | static_cast<uint32>(Block[Index * 4 + 3]) << 24;
    }
    uint32 A = State[0], B = State[1], C = State[2], D = State[3];
    for (uint32 Round = 0; Round < 64; ++Round)
    {
        uint32 Mixed = 0;
        uint32 WordIndex = 0;
        if (Round < 16)
        {
            Mixed = (B & C) | (~B & D);
            WordIndex = Round;
        }
        else if (Round < 32)
        {
            Mixed = (D & B) | (~D & C);
            WordIndex = (5 * Round + 1) % 16;
        }
        else if (Round < 48)
        {
            Mixed = B ^ C ^ D;
            WordIndex = (3 * Round + 5) % 16;
        }
        else
        {
            Mixed = C ^ (B | ~D);
            WordIndex = (7 * Round) % 16;
        }
        const uint32 Next = D;
        D = C;
        C = B;
        B = B + RotateLeft(A + Mixed + SineTable[Round] + Words[WordIndex], RoundShifts[Round]);
        A = Next;
    }
    State[0] += A;
    State[1] += B;
    State[2] += C;
    State[3] += D;
}

void FModFileMd5::Update(const void* Bytes, std::size_t Size)
{
    const uint8* Input = static_cast<const uint8*>(Bytes);
    std::size_t Buffered = static_cast<std::size_t>(Length % 64);
    Length += Size;
    while (Size > 0)
    {
        const std::size_t Take = std::min<std::size_t>(64 - Buffered, Size);
        std::memcpy(Buffer + Buffered, Input, Take);
        Buffered += Take;
        Input += Take;
        Size -= Take;
        if (Buffered == 64)
        {
            Transform(Buffer);
            Buffered = 0;
        }
    }
}

std::string FModFileMd5::FinalHex()
{
    const uint64 BitLength = Length * 8;
    const uint8 Padding = 0x80;
    Update(&Padding, 1);
    const uint8 Zero = 0;
    while (Length % 64 != 56)
    {
        Update(&Zero, 1);
    }
    uint8 LengthBytes[8];
    for (int Index = 0; Index < 8; ++Index)
    {
        LengthBytes[Index] = static_cast<uint8>(BitLength >> (8 * Index));
    }
    Update(LengthBytes, sizeof(LengthBytes));

    static constexpr char Hex[] = "0123456789abcdef";
    std::string Digest;
    for (const uint32 Word : State)
    {
        for (int Index = 0; Index < 4; ++Index)
        {
            const uint8 Byte = static_cast<uint8>(Word >> (8 * Index));
            Digest += Hex[Byte >> 4];
            Digest += Hex[Byte & 0x0F];
        }
    }
    return Digest;
}

std::string FModFileMd5::OfFile(const std::string& Path, const std::atomic<bool>& bCancelled)
{
    std::unique_ptr<std::FILE, FFileCloser> File(std::fopen(Path.c_str(), "rb"));
    if (!File)
    {
        return {};
    }
    FModFileMd5 Md5;
    std::vector<uint8> Chunk(1u << 20);
    std::size_t Read = 0;
    while ((Read = std::fread(Chunk.data(), 1, Chunk.size(), File.get())) > 0)
    {
        if (bCancelled.load())
        {
            return {};
        }
        Md5.Update(Chunk.data(), Read);
    }
    return std::ferror(File.get()) ? std::string() : Md5.FinalHex();
}
}
