#include "Platform/ZipEntryData.h"

#include "zlib.h"

#include <algorithm>
#include <cstdio>

namespace MaptornZip
{
namespace
{
constexpr uint16 MethodStored = 0;
constexpr uint16 MethodDeflated = 8;

// Takes the bytes the entry produced: counts them against the declared size before anything
// past it reaches the disk, and keeps the running CRC-32.
class FEntrySink
{
public:
	FEntrySink(const FEntryRecord& InEntry, FArchive& InWriter) : Entry(InEntry), Writer(InWriter) {}

	bool Write(uint8* Bytes, uint64 Count, std::string& OutReason)
	{
		if (Count > Entry.Size - Written)
		{
			OutReason = "it holds more bytes than the " + std::to_string(Entry.Size) + " it declares";
			return false;
		}
		Written += Count;
		Crc = crc32(Crc, Bytes, static_cast<uInt>(Count));
		Writer.Serialize(Bytes, static_cast<int64>(Count));
		if (Writer.IsError())
		{
			OutReason = "its file cannot be written";
			return false;
		}
		return true;
	}

	bool Finish(std::string& OutReason) const
	{
		if (Written != Entry.Size)
		{
			OutReason = "it holds " + std::to_string(Written) + " of its " + std::to_string(Entry.Size) + " bytes";
			return false;
		}
		if (static_cast<uint32>(Crc) != Entry.Crc32)
		{
			char Text[64];
			snprintf(Text, sizeof(Text), "its CRC-32 is %08x where the archive declares %08x", static_cast<unsigned>(Crc), static_cast<unsigned>(Entry.Crc32));
			OutReason = Text;
			return false;
		}
		return true;
	}

private:
	const FEntryRecord& Entry;
	FArchive& Writer;
	uint64 Written = 0;
	uLong Crc = crc32(0L, Z_NULL, 0);
};

bool ReadChunk(FArchive& Reader, uint8* Out, uint64 Count, std::string& OutReason)
{
	Reader.Serialize(Out, static_cast<int64>(Count));
	if (Reader.IsError())
	{
		OutReason = "its data cannot be read";
		return false;
	}
	return true;
}

bool CopyStored(FArchive& Reader, uint64 Remaining, FEntrySink& Sink, FChunkBuffers& Buffers, std::string& OutReason)
{
	while (Remaining > 0)
	{
		const uint64 Count = std::min(Remaining, FChunkBuffers::ChunkSize);
		if (!ReadChunk(Reader, Buffers.In.data(), Count, OutReason) || !Sink.Write(Buffers.In.data(), Count, OutReason))
		{
			return false;
		}
		Remaining -= Count;
	}
	return true;
}

// Raw deflate (no zlib header), as ZIP stores it; reads no further than the entry's compressed size.
bool Inflate(FArchive& Reader, uint64 Remaining, FEntrySink& Sink, FChunkBuffers& Buffers, std::string& OutReason)
{
	z_stream Stream = {};
	if (inflateInit2(&Stream, -MAX_WBITS) != Z_OK)
	{
		OutReason = "zlib cannot start inflating";
		return false;
	}
	int Status = Z_OK;
	bool bOk = true;
	while (bOk && Status != Z_STREAM_END)
	{
		if (Stream.avail_in == 0)
		{
			if (Remaining == 0)
			{
				OutReason = "its data ends before its deflate stream does";
				bOk = false;
				break;
			}
			const uint64 Count = std::min(Remaining, FChunkBuffers::ChunkSize);
			if (!ReadChunk(Reader, Buffers.In.data(), Count, OutReason))
			{
				bOk = false;
				break;
			}
			Stream.next_in = Buffers.In.data();
			Stream.avail_in = static_cast<uInt>(Count);
			Remaining -= Count;
		}
		Stream.next_out = Buffers.Out.data();
		Stream.avail_out = static_cast<uInt>(FChunkBuffers::ChunkSize);
		Status = inflate(&Stream, Z_NO_FLUSH);
		if (Status != Z_OK && Status != Z_STREAM_END && Status != Z_BUF_ERROR)
		{
			OutReason = std::string("its deflate stream is corrupt: ") + (Stream.msg ? Stream.msg : "zlib error " + std::to_string(Status));
			bOk = false;
			break;
		}
		bOk = Sink.Write(Buffers.Out.data(), FChunkBuffers::ChunkSize - Stream.avail_out, OutReason);
	}
	inflateEnd(&Stream);
	return bOk;
}
}

bool IsReadableMethod(uint16 Method)
{
	return Method == MethodStored || Method == MethodDeflated;
}

bool CopyEntryData(FArchive& Reader, const FEntryRecord& Entry, uint64 DataOffset, FArchive& Writer, FChunkBuffers& Buffers,
	std::string& OutReason)
{
	if (!IsReadableMethod(Entry.Method))
	{
		OutReason = "it uses compression method " + std::to_string(Entry.Method) + ", which cannot be read";
		return false;
	}
	FEntrySink Sink(Entry, Writer);
	Reader.Seek(static_cast<int64>(DataOffset));
	// An empty file may be stored with no deflate stream at all.
	const bool bNothingToRead = Entry.CompressedSize == 0 && Entry.Size == 0;
	const bool bCopied = bNothingToRead
		|| (Entry.Method == MethodStored ? CopyStored(Reader, Entry.CompressedSize, Sink, Buffers, OutReason)
										 : Inflate(Reader, Entry.CompressedSize, Sink, Buffers, OutReason));
	return bCopied && Sink.Finish(OutReason);
}
}
