#pragma once

#include "CoreMinimal.h"
#include "Platform/ZipCentralDirectory.h"
#include "Serialization/Archive.h"

#include <string>
#include <vector>

namespace MaptornZip
{
// Two chunk buffers kept across entries, so the archive is streamed without a buffer per file.
struct FChunkBuffers
{
	static constexpr uint64 ChunkSize = 1u << 20;

	std::vector<uint8> In = std::vector<uint8>(ChunkSize);
	std::vector<uint8> Out = std::vector<uint8>(ChunkSize);
};

// Whether this reader can decompress the method: stored (0) and deflated (8), what archivers and
// mod.io uploads use.
bool IsReadableMethod(uint16 Method);

// Streams one entry's data, starting at DataOffset, into Writer chunk by chunk: copied when
// stored, inflated when deflated. Fails with a reason when the data is corrupt, holds more or
// fewer bytes than the entry declares, or does not match its CRC-32.
bool CopyEntryData(FArchive& Reader, const FEntryRecord& Entry, uint64 DataOffset, FArchive& Writer, FChunkBuffers& Buffers,
	std::string& OutReason);
}
