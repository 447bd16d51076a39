#pragma once

#include "Common/CoreTypes.h"
#include "ModioService/SandboxErrors.h"

#include <optional>
#include <string>

namespace Maptorn::Sandbox
{
// Every part of a multipart upload but the last is exactly this long (50 MiB).
inline constexpr int64 UploadPartSize = 52428800;

// A part's place in the whole file, inclusive and zero-based.
struct FPartRange
{
    int64 First = 0;
    int64 Last = 0;
    int64 Total = 0;
};

// Reads a part's `Content-Range: bytes <first>-<last>/<total>`; with bAcceptLegacy also the
// older uploader's unit-less `<offset>-<size>/<total>`. Errors are 400 with mod.io's 290xx refs.
std::optional<FApiError> ParsePartRange(const std::string& Header, bool bAcceptLegacy, FPartRange& OutRange);

// The part's size against the rules: 50 MiB unless it ends the file, exactly the body received,
// starting on a part boundary, and ending at total − 1 when it is the short last part.
// PartUnit is the part size: 50 MiB, or one byte less for clients that send the legacy ranges.
std::optional<FApiError> CheckPartRange(const FPartRange& Range, uint64 BodySize, int64 PartUnit);

// What a download's `Range` header asks of a file of Size bytes.
enum class EDownloadRange
{
    Whole, // no header, or one the service does not serve partially
    Partial,
    Unsatisfiable // 416
};
EDownloadRange ResolveDownloadRange(const std::string& Header, uint64 Size, uint64& OutFirst, uint64& OutLast);
}
