#include "ModioService/SandboxImage.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <vector>

namespace Maptorn::Sandbox
{
namespace
{
// A JPEG's header segments fit in this much; the scan data after them is never needed.
constexpr std::streamsize MaxHeaderBytes = 256 * 1024;

uint32_t BigEndian(const std::vector<unsigned char>& Bytes, size_t At, size_t Count)
{
    uint32_t Value = 0;
    for (size_t Index = 0; Index < Count; ++Index)
    {
        Value = (Value << 8) | Bytes[At + Index];
    }
    return Value;
}

std::optional<FImageHeader> ReadPng(const std::vector<unsigned char>& Bytes)
{
    // Signature (8), then the IHDR chunk: length (4), "IHDR" (4), width (4), height (4).
    if (Bytes.size() < 24 || std::string(Bytes.begin() + 12, Bytes.begin() + 16) != "IHDR")
    {
        return std::nullopt;
    }
    return FImageHeader{EImageType::Png, BigEndian(Bytes, 16, 4), BigEndian(Bytes, 20, 4)};
}

// Start-of-frame markers C0-CF carry the frame's size, except C4 (Huffman tables), C8 (reserved)
// and CC (arithmetic coding conditioning).
bool IsStartOfFrame(unsigned char Marker)
{
    return Marker >= 0xC0 && Marker <= 0xCF && Marker != 0xC4 && Marker != 0xC8 && Marker != 0xCC;
}

std::optional<FImageHeader> ReadJpeg(const std::vector<unsigned char>& Bytes)
{
    size_t At = 2;
    while (At + 4 <= Bytes.size())
    {
        if (Bytes[At] != 0xFF)
        {
            return std::nullopt;
        }
        const unsigned char Marker = Bytes[At + 1];
        if (Marker == 0xFF)
        {
            ++At; // fill byte
            continue;
        }
        const size_t Length = BigEndian(Bytes, At + 2, 2);
        if (IsStartOfFrame(Marker))
        {
            // Length (2), precision (1), height (2), width (2).
            if (At + 9 > Bytes.size())
            {
                return std::nullopt;
            }
            return FImageHeader{EImageType::Jpeg, BigEndian(Bytes, At + 7, 2), BigEndian(Bytes, At + 5, 2)};
        }
        if (Marker == 0xD9 || Marker == 0xDA || Length < 2)
        {
            return std::nullopt; // end of image or scan data before any frame
        }
        At += 2 + Length;
    }
    return std::nullopt;
}
}

std::optional<FImageHeader> ReadImageHeader(const std::string& Path)
{
    std::ifstream File(Path, std::ios::binary);
    std::vector<unsigned char> Bytes(static_cast<size_t>(MaxHeaderBytes));
    File.read(reinterpret_cast<char*>(Bytes.data()), MaxHeaderBytes);
    Bytes.resize(static_cast<size_t>(File.gcount()));
    static constexpr unsigned char PngSignature[] = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
    if (Bytes.size() >= 8 && std::equal(std::begin(PngSignature), std::end(PngSignature), Bytes.begin()))
    {
        return ReadPng(Bytes);
    }
    if (Bytes.size() >= 3 && Bytes[0] == 0xFF && Bytes[1] == 0xD8 && Bytes[2] == 0xFF)
    {
        return ReadJpeg(Bytes);
    }
    return std::nullopt;
}
}
