#pragma once

#include "Common/CoreTypes.h"

#include <atomic>
#include <optional>
#include <string>
#include <vector>

namespace Maptorn
{
class FGrowingFile;

// The fixed boundary of every form-data upload body.
inline constexpr const char* FormDataBoundary = "f0Qkq8EArxUcuH62RDyzNZKjZ5uYeJu5pBH5b9lZ";
// Files are copied into the body in pieces of at most this many bytes (one upload part).
inline constexpr int64 FormDataCopyChunk = 52428799;

struct MAPTORNCORE_API FFormDataFields
{
    std::string Version;
    std::string Changelog;
    std::string Platform;      // one platform per request
    bool bIncludeFile = false;
    std::string FileName;
};

enum class EFormDataBodyError
{
    None,
    BodyNotWritable,   // the temporary body file could not be created
    FileNotReadable,   // the file to send could not be opened
    ShortRead,         // fewer bytes were read than the file holds
    Cancelled,         // the owner stopped the copy
};

// Everything before the file's bytes: the three text fields (header lines even when empty) and,
// with a file, its part headers. The body begins with a CR LF before the first boundary.
MAPTORNCORE_API std::string MakeFormDataHead(const FFormDataFields& Fields);
// The closing boundary.
MAPTORNCORE_API std::string MakeFormDataTail();

// Writes Head, the bytes of SourceFile (none without one) copied through PartBuffer in pieces
// of at most ChunkSize bytes, then Tail into BodyFile, so a large file never sits in memory whole.
// bCancelled, when given, stops the copy between pieces. OutBodySize is the body file's size.
// Growing, when given, hears of every write, so the body can be sent while it is written; the
// caller tells it the end.
MAPTORNCORE_API EFormDataBodyError WriteBodyAroundFile(const std::string& Head, const std::optional<std::string>& SourceFile, const std::string& Tail,
    const std::string& BodyFile, std::vector<uint8>& PartBuffer, int64& OutBodySize, int64 ChunkSize,
    const std::atomic<bool>* bCancelled = nullptr, FGrowingFile* Growing = nullptr);

// Writes the whole body to BodyFile: head, the file copied through PartBuffer in chunks of at most
// ChunkSize bytes, tail. OutBodySize is the body file's size.
MAPTORNCORE_API EFormDataBodyError WriteFormDataBody(const FFormDataFields& Fields, const std::string& SourceFile, const std::string& BodyFile,
    std::vector<uint8>& PartBuffer, int64& OutBodySize, int64 ChunkSize = FormDataCopyChunk);
}
