#include "Platform/ZipEntryName.h"

#include "zlib.h"

namespace MaptornZip
{
namespace
{
constexpr uint16 FlagUtf8Name = 1u << 11;
constexpr uint16 UnicodePathField = 0x7075;

// Code page 437, the ZIP format's default for names, bytes 0x80 to 0xFF.
constexpr uint16 Cp437High[128] = {
	0x00C7, 0x00FC, 0x00E9, 0x00E2, 0x00E4, 0x00E0, 0x00E5, 0x00E7,
	0x00EA, 0x00EB, 0x00E8, 0x00EF, 0x00EE, 0x00EC, 0x00C4, 0x00C5,
	0x00C9, 0x00E6, 0x00C6, 0x00F4, 0x00F6, 0x00F2, 0x00FB, 0x00F9,
	0x00FF, 0x00D6, 0x00DC, 0x00A2, 0x00A3, 0x00A5, 0x20A7, 0x0192,
	0x00E1, 0x00ED, 0x00F3, 0x00FA, 0x00F1, 0x00D1, 0x00AA, 0x00BA,
	0x00BF, 0x2310, 0x00AC, 0x00BD, 0x00BC, 0x00A1, 0x00AB, 0x00BB,
	0x2591, 0x2592, 0x2593, 0x2502, 0x2524, 0x2561, 0x2562, 0x2556,
	0x2555, 0x2563, 0x2551, 0x2557, 0x255D, 0x255C, 0x255B, 0x2510,
	0x2514, 0x2534, 0x252C, 0x251C, 0x2500, 0x253C, 0x255E, 0x255F,
	0x255A, 0x2554, 0x2569, 0x2566, 0x2560, 0x2550, 0x256C, 0x2567,
	0x2568, 0x2564, 0x2565, 0x2559, 0x2558, 0x2552, 0x2553, 0x256B,
	0x256A, 0x2518, 0x250C, 0x2588, 0x2584, 0x258C, 0x2590, 0x2580,
	0x03B1, 0x00DF, 0x0393, 0x03C0, 0x03A3, 0x03C3, 0x00B5, 0x03C4,
	0x03A6, 0x0398, 0x03A9, 0x03B4, 0x221E, 0x03C6, 0x03B5, 0x2229,
	0x2261, 0x00B1, 0x2265, 0x2264, 0x2320, 0x2321, 0x00F7, 0x2248,
	0x00B0, 0x2219, 0x00B7, 0x221A, 0x207F, 0x00B2, 0x25A0, 0x00A0,
};

uint16 Read16(std::string_view Bytes, size_t At)
{
	return static_cast<uint16>(static_cast<uint8>(Bytes[At]) | (static_cast<uint8>(Bytes[At + 1]) << 8));
}

uint32 Read32(std::string_view Bytes, size_t At)
{
	return static_cast<uint32>(Read16(Bytes, At)) | (static_cast<uint32>(Read16(Bytes, At + 2)) << 16);
}

bool IsValidUtf8(std::string_view Text)
{
	size_t At = 0;
	while (At < Text.size())
	{
		const uint8 Lead = static_cast<uint8>(Text[At]);
		const size_t Length = Lead < 0x80 ? 1 : (Lead >> 5) == 0x6 ? 2 : (Lead >> 4) == 0xE ? 3 : (Lead >> 3) == 0x1E ? 4 : 0;
		if (Length == 0 || At + Length > Text.size())
		{
			return false;
		}
		for (size_t Next = 1; Next < Length; ++Next)
		{
			if ((static_cast<uint8>(Text[At + Next]) & 0xC0) != 0x80)
			{
				return false;
			}
		}
		At += Length;
	}
	return true;
}

void AppendUtf8(std::string& Out, uint32 CodePoint)
{
	if (CodePoint < 0x80)
	{
		Out.push_back(static_cast<char>(CodePoint));
	}
	else if (CodePoint < 0x800)
	{
		Out.push_back(static_cast<char>(0xC0 | (CodePoint >> 6)));
		Out.push_back(static_cast<char>(0x80 | (CodePoint & 0x3F)));
	}
	else
	{
		Out.push_back(static_cast<char>(0xE0 | (CodePoint >> 12)));
		Out.push_back(static_cast<char>(0x80 | ((CodePoint >> 6) & 0x3F)));
		Out.push_back(static_cast<char>(0x80 | (CodePoint & 0x3F)));
	}
}

// The Unicode path field holds a version, the CRC-32 of the stored name it replaces, and the name.
bool FindUnicodePath(std::string_view Stored, std::string_view ExtraFields, std::string& OutName)
{
	size_t At = 0;
	while (At + 4 <= ExtraFields.size())
	{
		const uint16 Id = Read16(ExtraFields, At);
		const size_t Size = Read16(ExtraFields, At + 2);
		if (At + 4 + Size > ExtraFields.size())
		{
			return false;
		}
		if (Id == UnicodePathField && Size >= 5 && ExtraFields[At + 4] == 1)
		{
			const uLong StoredCrc = crc32(crc32(0L, Z_NULL, 0), reinterpret_cast<const Bytef*>(Stored.data()), static_cast<uInt>(Stored.size()));
			if (Read32(ExtraFields, At + 5) == static_cast<uint32>(StoredCrc))
			{
				OutName.assign(ExtraFields.substr(At + 9, Size - 5));
				return true;
			}
		}
		At += 4 + Size;
	}
	return false;
}
}

std::string DecodeEntryName(std::string_view Stored, uint16 Flags, std::string_view ExtraFields)
{
	std::string Name;
	if (FindUnicodePath(Stored, ExtraFields, Name))
	{
		return Name;
	}
	if ((Flags & FlagUtf8Name) != 0 || IsValidUtf8(Stored))
	{
		return std::string(Stored);
	}
	for (const char Byte : Stored)
	{
		const uint8 Value = static_cast<uint8>(Byte);
		AppendUtf8(Name, Value < 0x80 ? Value : Cp437High[Value - 0x80]);
	}
	return Name;
}
}
