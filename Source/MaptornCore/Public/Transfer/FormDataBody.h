#pragma once

#include "Common/CoreTypes.h"

#include <string>
#include <vector>

namespace Maptorn
{
// The fixed boundary of every form-data upload body.
inline constexpr const char* FormDataBoundary = "f0Qkq8EArxUcuH62RDyzNZKjZ5uYeJu5pBH5b9lZ";
// Files are copied into the body in pieces of at most this many bytes (one upload part).
inline constexpr int64 FormDataCopyChunk = 52428799;

struct FFormDataFields
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
};

// Everything before the file's bytes: the three text fields (header lines even when empty) and,
// with a file, its part headers. The body begins with a CR LF before the first boundary.
std::string MakeFormDataHead(const FFormDataFields& Fields);
// The closing boundary.
std::string MakeFormDataTail();

// Writes the whole body to BodyFile: head, the file copied through PartBuffer in chunks of at most
// ChunkSize bytes, tail. OutBodySize is the body file's size.
EFormDataBodyError WriteFormDataBody(const FFormDataFields& Fields, const std::string& SourceFile, const std::string& BodyFile,
    std::vector<uint8>& PartBuffer, int64& OutBodySize, int64 ChunkSize = FormDataCopyChunk);
}
