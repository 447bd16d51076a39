#include "ModioService/SandboxRequestBody.h"

#include "Common/FileHelper.h"
#include "Common/StringUtil.h"
#include "ModioService/SandboxBlobs.h"

#include <httplib.h>

#include <fstream>
#include <memory>

namespace Maptorn::Sandbox
{
FRequestBody::~FRequestBody()
{
    for (const auto& [Name, Uploaded] : Files)
    {
        FileSystem::DeleteFile(Uploaded.Path);
    }
    if (!RawPath.empty())
    {
        FileSystem::DeleteFile(RawPath);
    }
}

bool FRequestBody::Has(const std::string& Name) const
{
    return Fields.count(Name) > 0;
}

std::string FRequestBody::Value(const std::string& Name) const
{
    const auto Found = Fields.find(Name);
    return Found == Fields.end() ? std::string() : Found->second;
}

std::vector<std::string> FRequestBody::Values(const std::string& Name) const
{
    std::vector<std::string> Result;
    for (const std::string& Key : { Name + "[]", Name })
    {
        const auto [Begin, End] = Fields.equal_range(Key);
        for (auto It = Begin; It != End; ++It)
        {
            Result.push_back(It->second);
        }
    }
    return Result;
}

bool FRequestBody::HasArray(const std::string& Name) const
{
    return Has(Name + "[]") || Has(Name);
}

const FUploadedFile* FRequestBody::File(const std::string& Name) const
{
    const auto Found = Files.find(Name);
    return Found == Files.end() ? nullptr : &Found->second;
}

namespace
{
enum class EContentType
{
    None,
    UrlEncoded,
    Multipart,
    Other
};

EContentType ContentTypeOf(const httplib::Request& Request)
{
    const std::string Type = ToLower(TrimWhitespace(Request.get_header_value("Content-Type")));
    if (Type.empty())
    {
        return EContentType::None;
    }
    if (Type.starts_with("application/x-www-form-urlencoded"))
    {
        return EContentType::UrlEncoded;
    }
    return Type.starts_with("multipart/form-data") ? EContentType::Multipart : EContentType::Other;
}

bool TypeSuits(EContentType Type, EBodyKind Kind)
{
    switch (Kind)
    {
    case EBodyKind::Form: return Type != EContentType::Other;
    case EBodyKind::MultipartForm: return Type == EContentType::Multipart;
    default: return true;
    }
}

bool ReceiveMultipart(const httplib::ContentReader& Reader, const FBlobFolder& Blobs, FRequestBody& Body)
{
    std::unique_ptr<std::ofstream> OpenFile;
    std::string* OpenField = nullptr;
    FUploadedFile* OpenUpload = nullptr;
    const bool bRead = Reader(
        [&](const httplib::MultipartFormData& Part)
        {
            OpenFile.reset();
            OpenField = nullptr;
            OpenUpload = nullptr;
            if (Part.filename.empty())
            {
                OpenField = &Body.Fields.emplace(Part.name, std::string())->second;
                return true;
            }
            FUploadedFile& Uploaded = Body.Files[Part.name];
            FileSystem::DeleteFile(Uploaded.Path); // a repeated file field: the last one counts
            Uploaded = FUploadedFile{ Part.filename, Part.content_type, Blobs.NewIncomingPath(), 0 };
            OpenUpload = &Uploaded;
            OpenFile = std::make_unique<std::ofstream>(Uploaded.Path, std::ios::binary);
            return static_cast<bool>(*OpenFile);
        },
        [&](const char* Data, size_t Size)
        {
            Body.ReceivedBytes += Size;
            if (OpenField)
            {
                OpenField->append(Data, Size);
                return true;
            }
            if (OpenFile && OpenUpload)
            {
                OpenUpload->Size += Size;
                OpenFile->write(Data, static_cast<std::streamsize>(Size));
                return static_cast<bool>(*OpenFile);
            }
            return true;
        });
    OpenFile.reset();
    return bRead;
}

bool ReceiveRaw(const httplib::ContentReader& Reader, const FBlobFolder& Blobs, FRequestBody& Body)
{
    Body.RawPath = Blobs.NewIncomingPath();
    std::ofstream File(Body.RawPath, std::ios::binary);
    return File && Reader(
                       [&](const char* Data, size_t Size)
                       {
                           Body.ReceivedBytes += Size;
                           File.write(Data, static_cast<std::streamsize>(Size));
                           return static_cast<bool>(File);
                       });
}

bool ReceiveInMemory(const httplib::ContentReader& Reader, FRequestBody& Body, bool bKeep, std::string& OutText)
{
    return Reader(
        [&](const char* Data, size_t Size)
        {
            Body.ReceivedBytes += Size;
            if (bKeep)
            {
                OutText.append(Data, Size);
            }
            return true;
        });
}
}

EReceiveResult ReceiveBody(const httplib::Request& Request, const httplib::ContentReader& Reader, EBodyKind Kind,
                           const FBlobFolder& Blobs, FRequestBody& OutBody)
{
    const EContentType Type = ContentTypeOf(Request);
    std::string Text;
    if (!TypeSuits(Type, Kind))
    {
        return ReceiveInMemory(Reader, OutBody, false, Text) ? EReceiveResult::UnsupportedType : EReceiveResult::Broken;
    }
    bool bRead = false;
    if (Kind == EBodyKind::Raw)
    {
        bRead = ReceiveRaw(Reader, Blobs, OutBody);
    }
    else if (Type == EContentType::Multipart)
    {
        bRead = ReceiveMultipart(Reader, Blobs, OutBody);
    }
    else
    {
        bRead = ReceiveInMemory(Reader, OutBody, true, Text);
        httplib::Params Params;
        httplib::detail::parse_query_text(Text, Params);
        OutBody.Fields.insert(Params.begin(), Params.end());
    }
    return bRead ? EReceiveResult::Received : EReceiveResult::Broken;
}
}
