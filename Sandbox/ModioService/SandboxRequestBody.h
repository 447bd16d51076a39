#pragma once

#include "Common/CoreTypes.h"

#include <map>
#include <string>
#include <vector>

namespace httplib
{
struct Request;
class ContentReader;
}

namespace Maptorn::Sandbox
{
class FBlobFolder;

// What a route takes as its body.
enum class EBodyKind
{
    None,          // GET and DELETE
    Form,          // urlencoded or multipart form fields, or nothing at all
    MultipartForm, // multipart/form-data only (it carries a file)
    Raw            // the bytes themselves, received to a file
};

struct FUploadedFile
{
    std::string Filename;
    std::string ContentType;
    std::string Path; // received to disk; gone with the body unless adopted
    uint64 Size = 0;
};

// A request's body as a route reads it. Files received for it are removed with it, unless a
// route moved them away first.
class FRequestBody
{
public:
    FRequestBody() = default;
    ~FRequestBody();
    FRequestBody(const FRequestBody&) = delete;
    FRequestBody& operator=(const FRequestBody&) = delete;

    bool Has(const std::string& Name) const;
    std::string Value(const std::string& Name) const;
    // Every value of "Name[]" and "Name", in the order sent.
    std::vector<std::string> Values(const std::string& Name) const;
    bool HasArray(const std::string& Name) const;
    const FUploadedFile* File(const std::string& Name) const;

    std::multimap<std::string, std::string> Fields;
    std::map<std::string, FUploadedFile> Files;
    std::string RawPath;
    uint64 ReceivedBytes = 0;
};

enum class EReceiveResult
{
    Received,
    UnsupportedType, // drained; the route answers 415
    Broken           // the body could not be read
};

// Reads the whole body (draining it when its type does not suit Kind), streaming files and raw
// bodies to the blob folder's incoming area so that large uploads never sit in memory.
EReceiveResult ReceiveBody(const httplib::Request& Request, const httplib::ContentReader& Reader, EBodyKind Kind,
                           const FBlobFolder& Blobs, FRequestBody& OutBody);
}
