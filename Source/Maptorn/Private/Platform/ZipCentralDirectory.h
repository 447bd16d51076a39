#pragma once

#include "CoreMinimal.h"
#include "Serialization/Archive.h"

#include <optional>
#include <string>
#include <vector>

// The ZIP container as the format's description lays it out: the end-of-central-directory record
// (and ZIP64's, for archives past 4 GiB or 65535 entries), the central directory, and each entry's
// local header. Reads through an engine file reader and never seeks outside the file, since the
// engine's reader treats that as a fatal error. Reasons are phrases; the caller names the archive.
namespace MaptornZip
{
struct FDirectoryEnd
{
	uint64 EntryCount = 0;
	uint64 DirectoryOffset = 0;
	uint64 DirectorySize = 0;
};

struct FEntryRecord
{
	std::string Name;  // UTF-8
	uint16 Flags = 0;
	uint16 Method = 0;
	uint32 Crc32 = 0;
	uint64 CompressedSize = 0;
	uint64 Size = 0;
	uint64 LocalHeaderOffset = 0;
	std::optional<uint32> UnixMode;  // st_mode, when a Unix archiver wrote the entry

	bool IsEncrypted() const { return (Flags & 1) != 0; }
};

// Reads Length bytes at Offset; false, without touching the reader, when the range is not inside the file.
bool ReadAt(FArchive& Reader, uint64 Offset, void* Out, uint64 Length);

bool ReadDirectoryEnd(FArchive& Reader, FDirectoryEnd& OutEnd, std::string& OutReason);

// Every record of the central directory, in archive order.
bool ReadCentralDirectory(FArchive& Reader, const FDirectoryEnd& End, std::vector<FEntryRecord>& OutEntries, std::string& OutReason);

// Where the entry's data starts, past its local header, once the data is known to lie inside the file.
bool FindEntryData(FArchive& Reader, const FEntryRecord& Entry, uint64& OutDataOffset, std::string& OutReason);
}
