#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include <zip.h>

namespace Maptorn::Testing
{
// One entry of an archive written for a test. A name ending in "/" with no bytes is a folder.
struct FTestZipEntry
{
    std::string Name;
    std::string Bytes;
    bool bSymbolicLink = false;
    zip_int32_t Compression = ZIP_CM_DEFLATE;
    zip_flags_t NameEncoding = ZIP_FL_ENC_UTF_8;
};

inline FTestZipEntry ZipFolder(const std::string& Name) { return { Name, {} }; }

// Written by libzip itself, the way a mod.io upload of a plug-in folder arrives. Fails the
// running test when libzip refuses an entry.
void WriteTestZip(const std::filesystem::path& Path, const std::vector<FTestZipEntry>& Entries);

// Varied bytes that deflate cannot shrink to nothing: every byte value, in a pseudo-random walk
// with no period that lines up with a buffer size, so a lost or repeated chunk shows.
std::string VariedBytes(std::size_t Size, unsigned Seed);

// The central directory record of the entry with this name: "PK\1\2" and 46 bytes of fields.
std::size_t CentralRecordOf(const std::string& Archive, const std::string& Name);

void PatchUint32(std::string& Bytes, std::size_t At, std::uint32_t Value);

void WriteBinaryFile(const std::filesystem::path& Path, const std::string& Bytes);

// One bad entry each, every one a host's extractor must refuse before writing anything: paths
// that leave the destination, a link, and a decompression bomb.
std::vector<FTestZipEntry> UnsafeZipEntries();
}
