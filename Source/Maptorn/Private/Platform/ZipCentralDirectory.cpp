#include "Platform/ZipCentralDirectory.h"

#include "Platform/ZipEntryName.h"

#include <algorithm>
#include <string_view>

namespace MaptornZip
{
namespace
{
constexpr uint32 EndSignature = 0x06054b50;
constexpr uint32 Zip64LocatorSignature = 0x07064b50;
constexpr uint32 Zip64EndSignature = 0x06064b50;
constexpr uint32 CentralSignature = 0x02014b50;
constexpr uint32 LocalSignature = 0x04034b50;

constexpr uint64 EndSize = 22;
constexpr uint64 MaxCommentSize = 0xFFFF;
constexpr uint64 Zip64LocatorSize = 20;
constexpr uint64 Zip64EndSize = 56;
constexpr uint64 CentralHeaderSize = 46;
constexpr uint64 LocalHeaderSize = 30;

constexpr uint16 Zip64ExtraField = 0x0001;
constexpr uint32 Zip64Marker = 0xFFFFFFFF;
constexpr uint8 HostUnix = 3;

// The central directory is read in windows of this size, not record by record.
constexpr uint64 DirectoryWindowSize = 1u << 20;

uint16 Read16(const uint8* Bytes)
{
	return static_cast<uint16>(Bytes[0] | (Bytes[1] << 8));
}

uint32 Read32(const uint8* Bytes)
{
	return static_cast<uint32>(Read16(Bytes)) | (static_cast<uint32>(Read16(Bytes + 2)) << 16);
}

uint64 Read64(const uint8* Bytes)
{
	return static_cast<uint64>(Read32(Bytes)) | (static_cast<uint64>(Read32(Bytes + 4)) << 32);
}

// Offset + Length without wrapping past the top of uint64.
bool FitsWithin(uint64 Offset, uint64 Length, uint64 Limit)
{
	return Offset <= Limit && Length <= Limit - Offset;
}

// Hands out byte ranges of the central directory from a window refilled as the walk moves on.
class FDirectoryWindow
{
public:
	FDirectoryWindow(FArchive& InReader, uint64 InBegin, uint64 InEnd) : Reader(InReader), Begin(InBegin), End(InEnd) {}

	const uint8* Get(uint64 Offset, uint64 Length)
	{
		if (Offset < Begin || !FitsWithin(Offset, Length, End))
		{
			return nullptr;
		}
		if (Offset < WindowStart || !FitsWithin(Offset, Length, WindowStart + Bytes.size()))
		{
			const uint64 Count = std::min(std::max(DirectoryWindowSize, Length), End - Offset);
			Bytes.resize(static_cast<size_t>(Count));
			WindowStart = Offset;
			if (!ReadAt(Reader, Offset, Bytes.data(), Count))
			{
				Bytes.clear();
				return nullptr;
			}
		}
		return Bytes.data() + (Offset - WindowStart);
	}

private:
	FArchive& Reader;
	uint64 Begin;
	uint64 End;
	uint64 WindowStart = 0;
	std::vector<uint8> Bytes;
};

// ZIP64 keeps, in this order, each 64-bit value whose 32-bit field in the record is all ones.
bool ReadZip64Fields(const uint8* Extra, uint64 ExtraSize, FEntryRecord& Entry)
{
	const bool bNeedsSize = Entry.Size == Zip64Marker;
	const bool bNeedsCompressedSize = Entry.CompressedSize == Zip64Marker;
	const bool bNeedsOffset = Entry.LocalHeaderOffset == Zip64Marker;
	if (!bNeedsSize && !bNeedsCompressedSize && !bNeedsOffset)
	{
		return true;
	}
	for (uint64 At = 0; At + 4 <= ExtraSize;)
	{
		const uint16 Id = Read16(Extra + At);
		const uint64 FieldSize = Read16(Extra + At + 2);
		if (!FitsWithin(At + 4, FieldSize, ExtraSize))
		{
			return false;
		}
		if (Id == Zip64ExtraField)
		{
			const uint8* Field = Extra + At + 4;
			const uint64 Needed = 8 * (uint64(bNeedsSize) + uint64(bNeedsCompressedSize) + uint64(bNeedsOffset));
			if (FieldSize < Needed)
			{
				return false;
			}
			uint64* const Targets[] = { bNeedsSize ? &Entry.Size : nullptr, bNeedsCompressedSize ? &Entry.CompressedSize : nullptr,
				bNeedsOffset ? &Entry.LocalHeaderOffset : nullptr };
			for (uint64* Target : Targets)
			{
				if (Target)
				{
					*Target = Read64(Field);
					Field += 8;
				}
			}
			return true;
		}
		At += 4 + FieldSize;
	}
	return false;
}

// Fills End from the ZIP64 record the locator before the classic end record points at.
bool ReadZip64End(FArchive& Reader, uint64 EndOffset, FDirectoryEnd& OutEnd, uint64& OutDirectoryLimit, std::string& OutReason)
{
	uint8 Locator[Zip64LocatorSize];
	if (EndOffset < Zip64LocatorSize || !ReadAt(Reader, EndOffset - Zip64LocatorSize, Locator, Zip64LocatorSize)
		|| Read32(Locator) != Zip64LocatorSignature)
	{
		return true;  // no ZIP64 end: the classic record's values stand
	}
	const uint64 RecordOffset = Read64(Locator + 8);
	uint8 Record[Zip64EndSize];
	if (Read32(Locator + 4) != 0 || Read32(Locator + 16) > 1)
	{
		OutReason = "it spans several disks";
		return false;
	}
	if (RecordOffset > EndOffset - Zip64LocatorSize || !ReadAt(Reader, RecordOffset, Record, Zip64EndSize) || Read32(Record) != Zip64EndSignature)
	{
		OutReason = "its ZIP64 end of central directory is missing";
		return false;
	}
	if (Read32(Record + 16) != 0 || Read32(Record + 20) != 0 || Read64(Record + 24) != Read64(Record + 32))
	{
		OutReason = "it spans several disks";
		return false;
	}
	OutEnd.EntryCount = Read64(Record + 32);
	OutEnd.DirectorySize = Read64(Record + 40);
	OutEnd.DirectoryOffset = Read64(Record + 48);
	OutDirectoryLimit = RecordOffset;
	return true;
}
}

bool ReadAt(FArchive& Reader, uint64 Offset, void* Out, uint64 Length)
{
	const int64 Size = Reader.TotalSize();
	if (Size < 0 || !FitsWithin(Offset, Length, static_cast<uint64>(Size)))
	{
		return false;
	}
	Reader.Seek(static_cast<int64>(Offset));
	Reader.Serialize(Out, static_cast<int64>(Length));
	return !Reader.IsError();
}

// The end record sits in the last 22 bytes plus an archive comment of up to 64 KiB; the last
// signature whose comment fits the file is the real one.
bool ReadDirectoryEnd(FArchive& Reader, FDirectoryEnd& OutEnd, std::string& OutReason)
{
	const int64 FileSize = Reader.TotalSize();
	if (FileSize < static_cast<int64>(EndSize))
	{
		OutReason = "it is not a ZIP archive";
		return false;
	}
	const uint64 Size = static_cast<uint64>(FileSize);
	const uint64 TailSize = std::min(Size, EndSize + MaxCommentSize);
	std::vector<uint8> Tail(static_cast<size_t>(TailSize));
	if (!ReadAt(Reader, Size - TailSize, Tail.data(), TailSize))
	{
		OutReason = "it cannot be read";
		return false;
	}
	const uint8* Record = nullptr;
	for (uint64 At = TailSize - EndSize + 1; At-- > 0;)
	{
		if (Read32(&Tail[At]) == EndSignature && At + EndSize + Read16(&Tail[At + 20]) <= TailSize)
		{
			Record = &Tail[At];
			break;
		}
	}
	if (!Record)
	{
		OutReason = "it is not a ZIP archive";
		return false;
	}
	const uint64 EndOffset = Size - TailSize + static_cast<uint64>(Record - Tail.data());
	OutEnd.EntryCount = Read16(Record + 10);
	OutEnd.DirectorySize = Read32(Record + 12);
	OutEnd.DirectoryOffset = Read32(Record + 16);
	uint64 DirectoryLimit = EndOffset;
	if (!ReadZip64End(Reader, EndOffset, OutEnd, DirectoryLimit, OutReason))
	{
		return false;
	}
	if (DirectoryLimit == EndOffset && (Read16(Record + 4) != 0 || Read16(Record + 6) != 0 || Read16(Record + 8) != Read16(Record + 10)))
	{
		OutReason = "it spans several disks";
		return false;
	}
	if (!FitsWithin(OutEnd.DirectoryOffset, OutEnd.DirectorySize, DirectoryLimit))
	{
		OutReason = "its central directory lies outside the file";
		return false;
	}
	if (OutEnd.EntryCount > OutEnd.DirectorySize / CentralHeaderSize)
	{
		OutReason = "its central directory is shorter than its " + std::to_string(OutEnd.EntryCount) + " entries";
		return false;
	}
	return true;
}

bool ReadCentralDirectory(FArchive& Reader, const FDirectoryEnd& End, std::vector<FEntryRecord>& OutEntries, std::string& OutReason)
{
	FDirectoryWindow Window(Reader, End.DirectoryOffset, End.DirectoryOffset + End.DirectorySize);
	OutEntries.clear();
	OutEntries.reserve(static_cast<size_t>(End.EntryCount));
	uint64 At = End.DirectoryOffset;
	for (uint64 Index = 0; Index < End.EntryCount; ++Index)
	{
		const uint8* Header = Window.Get(At, CentralHeaderSize);
		const uint64 NameSize = Header ? Read16(Header + 28) : 0;
		const uint64 ExtraSize = Header ? Read16(Header + 30) : 0;
		const uint64 RecordSize = CentralHeaderSize + NameSize + ExtraSize + (Header ? Read16(Header + 32) : 0);
		const uint8* Whole = Header && Read32(Header) == CentralSignature ? Window.Get(At, RecordSize) : nullptr;
		if (!Whole)
		{
			OutReason = "record " + std::to_string(Index) + " of its central directory is damaged";
			return false;
		}
		const std::string_view Stored(reinterpret_cast<const char*>(Whole + CentralHeaderSize), static_cast<size_t>(NameSize));
		const uint8* Extra = Whole + CentralHeaderSize + NameSize;
		FEntryRecord& Entry = OutEntries.emplace_back();
		Entry.Flags = Read16(Whole + 8);
		Entry.Method = Read16(Whole + 10);
		Entry.Crc32 = Read32(Whole + 16);
		Entry.CompressedSize = Read32(Whole + 20);
		Entry.Size = Read32(Whole + 24);
		Entry.LocalHeaderOffset = Read32(Whole + 42);
		Entry.Name = DecodeEntryName(Stored, Entry.Flags, std::string_view(reinterpret_cast<const char*>(Extra), static_cast<size_t>(ExtraSize)));
		if (Whole[5] == HostUnix)
		{
			Entry.UnixMode = Read32(Whole + 38) >> 16;
		}
		if (!ReadZip64Fields(Extra, ExtraSize, Entry))
		{
			OutReason = "entry '" + Entry.Name + "' lacks the ZIP64 sizes its record refers to";
			return false;
		}
		At += RecordSize;
	}
	return true;
}

bool FindEntryData(FArchive& Reader, const FEntryRecord& Entry, uint64& OutDataOffset, std::string& OutReason)
{
	uint8 Header[LocalHeaderSize];
	if (!ReadAt(Reader, Entry.LocalHeaderOffset, Header, LocalHeaderSize) || Read32(Header) != LocalSignature)
	{
		OutReason = "its local header is missing";
		return false;
	}
	OutDataOffset = Entry.LocalHeaderOffset + LocalHeaderSize + Read16(Header + 26) + Read16(Header + 28);
	const int64 Size = Reader.TotalSize();
	if (Size < 0 || !FitsWithin(OutDataOffset, Entry.CompressedSize, static_cast<uint64>(Size)))
	{
		OutReason = "its data runs past the end of the archive";
		return false;
	}
	return true;
}
}
