#pragma once

#include "Common/CoreTypes.h"
#include "Modio/ModioSdkTypes.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace Maptorn::ModioRest
{
// Creating and editing mods and adding their files: pure builders of what goes on the wire, and
// lenient readers of what comes back.

using FFormFields = std::vector<std::pair<std::string, std::string>>;

// A file part of a multipart/form-data body.
struct FFormFile
{
    std::string FieldName;
    std::string FileName;
    std::string ContentType;
};

// "multipart/form-data; boundary=…" with the one boundary every form-data body uses
// (FormDataBoundary), long and random enough not to turn up in a logo or an archive.
std::string FormContentType();

// The text fields, then the head of File's part when there is one; the file's bytes come next.
std::string MakeFormHead(const FFormFields& Fields, const std::optional<FFormFile>& File = std::nullopt);
// What follows the last field (and the file's bytes): the closing boundary.
std::string MakeFormTail(bool bAfterFile);
// "a=1&b=2", every name and value percent-encoded.
std::string MakeUrlEncodedForm(const FFormFields& Fields);

std::string ModsUrl(const std::string& BaseUrl, int64 GameId);
std::string ModUrl(const std::string& BaseUrl, int64 GameId, FModioModID Mod);
std::string ModfilesUrl(const std::string& BaseUrl, int64 GameId, FModioModID Mod);
// The multipart session endpoint; with an upload id "?upload_id=" follows.
std::string MultipartUrl(const std::string& BaseUrl, int64 GameId, FModioModID Mod, const std::string& UploadId = {});
std::string MultipartPartsUrl(const std::string& BaseUrl, int64 GameId, FModioModID Mod, const std::string& UploadId, int64 Offset);
std::string MultipartCompleteUrl(const std::string& BaseUrl, int64 GameId, FModioModID Mod, const std::string& UploadId);

// mod.io's name of a mod-file platform ("windows", "oculus", "source", …); empty for a value it has none for.
std::string PlatformName(EModioModfilePlatform Platform);

// Add mod: name, summary, each tag as "tags[]", the metadata blob when set (the logo goes as a file).
FFormFields AddModFields(const FModioCreateModParams& Params);
// Edit mod: only what is set; a set but empty tag list clears the tags.
FFormFields EditModFields(const FModioEditModParams& Params);
// Add mod file: version, changelog, active, metadata blob and platforms as far as set, and the MD5.
FFormFields ModfileFields(const FModioCreateModFileParams& Params, const std::string& Md5);

// "image/png" or "image/jpeg" from the file's first bytes; "application/octet-stream" otherwise.
std::string ImageContentType(const std::string& Head);
// The archive's name on mod.io: the folder's name made safe, with ".zip".
std::string ArchiveFileName(const std::string& RootDirectory);

// The "id" of a mod object; nothing when the answer is not one.
std::optional<FModioModID> ReadModId(const std::string& Body);
std::optional<FModioModInfo> ReadModInfo(const std::string& Body);
// True when the answer is a mod file object (it has an id).
bool IsModfileObject(const std::string& Body);

struct FUploadSession
{
    std::string UploadId;
    int32 Status = 0; // 0 incomplete, 1 pending, 2 processing, 3 complete, 4 cancelled
};
inline constexpr int32 UploadSessionComplete = 3;
std::optional<FUploadSession> ReadUploadSession(const std::string& Body);

struct FUploadedPart
{
    int64 Number = 0; // from 1
    int64 Size = 0;
};
struct FUploadedParts
{
    std::vector<FUploadedPart> Parts;
    int64 PageCount = 0;   // items on this page, readable or not
    int64 ResultTotal = 0; // items on every page
};
// One page of a session's parts; nothing when the answer is not a list.
std::optional<FUploadedParts> ReadUploadedParts(const std::string& Body);
}
