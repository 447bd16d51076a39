#include "Platform/RestModFileRequests.h"

#include "Common/Paths.h"
#include "Common/StringUtil.h"
#include "Modio/JsonFields.h"
#include "Platform/RestModioSessionRequests.h"
#include "Transfer/FormDataBody.h"

#include <cctype>

namespace Maptorn::ModioRest
{
namespace
{
// A quote or line break would end the header early; browsers send them percent-encoded.
std::string QuotedHeaderValue(const std::string& Value)
{
    std::string Quoted;
    for (const char Character : Value)
    {
        if (Character == '"')
        {
            Quoted += "%22";
        }
        else if (Character == '\r')
        {
            Quoted += "%0D";
        }
        else if (Character == '\n')
        {
            Quoted += "%0A";
        }
        else
        {
            Quoted += Character;
        }
    }
    return Quoted;
}

std::string PartHead(const std::string& Disposition)
{
    return Printf("--%s\r\nContent-Disposition: form-data; %s\r\n", FormDataBoundary, Disposition.c_str());
}

std::string GamePath(const std::string& BaseUrl, int64 GameId)
{
    return BaseUrl + "/v1/games/" + std::to_string(GameId);
}
}

std::string FormContentType()
{
    return std::string("multipart/form-data; boundary=") + FormDataBoundary;
}

std::string MakeFormHead(const FFormFields& Fields, const std::optional<FFormFile>& File)
{
    std::string Head;
    for (const auto& [Name, Value] : Fields)
    {
        Head += PartHead("name=\"" + QuotedHeaderValue(Name) + "\"");
        Head += "\r\n";
        Head += Value;
        Head += "\r\n";
    }
    if (File)
    {
        Head += PartHead("name=\"" + QuotedHeaderValue(File->FieldName) + "\"; filename=\"" + QuotedHeaderValue(File->FileName) + "\"");
        Head += "Content-Type: " + File->ContentType + "\r\n\r\n";
    }
    return Head;
}

std::string MakeFormTail(bool bAfterFile)
{
    return Printf("%s--%s--\r\n", bAfterFile ? "\r\n" : "", FormDataBoundary);
}

std::string MakeUrlEncodedForm(const FFormFields& Fields)
{
    std::string Body;
    for (const auto& [Name, Value] : Fields)
    {
        Body += Body.empty() ? "" : "&";
        Body += UrlEncode(Name) + "=" + UrlEncode(Value);
    }
    return Body;
}

std::string ModsUrl(const std::string& BaseUrl, int64 GameId)
{
    return GamePath(BaseUrl, GameId) + "/mods";
}

std::string ModUrl(const std::string& BaseUrl, int64 GameId, FModioModID Mod)
{
    return ModsUrl(BaseUrl, GameId) + "/" + std::to_string(Mod);
}

std::string ModfilesUrl(const std::string& BaseUrl, int64 GameId, FModioModID Mod)
{
    return ModUrl(BaseUrl, GameId, Mod) + "/files";
}

std::string MultipartUrl(const std::string& BaseUrl, int64 GameId, FModioModID Mod, const std::string& UploadId)
{
    const std::string Url = ModfilesUrl(BaseUrl, GameId, Mod) + "/multipart";
    return UploadId.empty() ? Url : Url + "?upload_id=" + UrlEncode(UploadId);
}

std::string MultipartPartsUrl(const std::string& BaseUrl, int64 GameId, FModioModID Mod, const std::string& UploadId, int64 Offset)
{
    return MultipartUrl(BaseUrl, GameId, Mod, UploadId) + "&_limit=100&_offset=" + std::to_string(Offset);
}

std::string MultipartCompleteUrl(const std::string& BaseUrl, int64 GameId, FModioModID Mod, const std::string& UploadId)
{
    return ModfilesUrl(BaseUrl, GameId, Mod) + "/multipart/complete?upload_id=" + UrlEncode(UploadId);
}

std::string PlatformName(EModioModfilePlatform Platform)
{
    switch (Platform)
    {
    case EModioModfilePlatform::Windows: return "windows";
    case EModioModfilePlatform::Mac: return "mac";
    case EModioModfilePlatform::Linux: return "linux";
    case EModioModfilePlatform::Android: return "android";
    case EModioModfilePlatform::iOS: return "ios";
    case EModioModfilePlatform::XboxOne: return "xboxone";
    case EModioModfilePlatform::XboxSeriesX: return "xboxseriesx";
    case EModioModfilePlatform::PS4: return "ps4";
    case EModioModfilePlatform::PS5: return "ps5";
    case EModioModfilePlatform::Switch: return "switch";
    case EModioModfilePlatform::Oculus: return "oculus";
    case EModioModfilePlatform::Source: return "source";
    }
    return {};
}

FFormFields AddModFields(const FModioCreateModParams& Params)
{
    FFormFields Fields{{"name", Params.Name}, {"summary", Params.Summary}};
    for (const std::string& Tag : Params.Tags.value_or(std::vector<std::string>{}))
    {
        Fields.emplace_back("tags[]", Tag);
    }
    if (Params.MetadataBlob)
    {
        Fields.emplace_back("metadata_blob", *Params.MetadataBlob);
    }
    return Fields;
}

FFormFields EditModFields(const FModioEditModParams& Params)
{
    FFormFields Fields;
    if (Params.Name)
    {
        Fields.emplace_back("name", *Params.Name);
    }
    if (Params.Summary)
    {
        Fields.emplace_back("summary", *Params.Summary);
    }
    if (Params.Tags)
    {
        for (const std::string& Tag : *Params.Tags)
        {
            Fields.emplace_back("tags[]", Tag);
        }
        if (Params.Tags->empty())
        {
            Fields.emplace_back("tags[]", "");
        }
    }
    if (Params.MetadataBlob)
    {
        Fields.emplace_back("metadata_blob", *Params.MetadataBlob);
    }
    return Fields;
}

FFormFields ModfileFields(const FModioCreateModFileParams& Params, const std::string& Md5)
{
    FFormFields Fields;
    if (Params.VersionString)
    {
        Fields.emplace_back("version", *Params.VersionString);
    }
    if (Params.Changelog)
    {
        Fields.emplace_back("changelog", *Params.Changelog);
    }
    if (Params.bSetAsActive)
    {
        Fields.emplace_back("active", *Params.bSetAsActive ? "true" : "false");
    }
    if (Params.MetadataBlob)
    {
        Fields.emplace_back("metadata_blob", *Params.MetadataBlob);
    }
    for (const EModioModfilePlatform Platform : Params.ModfilePlatforms.value_or(std::vector<EModioModfilePlatform>{}))
    {
        const std::string Name = PlatformName(Platform);
        if (!Name.empty())
        {
            Fields.emplace_back("platforms[]", Name);
        }
    }
    if (!Md5.empty())
    {
        Fields.emplace_back("filehash", Md5);
    }
    return Fields;
}

std::string ImageContentType(const std::string& Head)
{
    if (Head.starts_with("\x89PNG\r\n\x1a\n"))
    {
        return "image/png";
    }
    if (Head.starts_with("\xFF\xD8\xFF"))
    {
        return "image/jpeg";
    }
    return "application/octet-stream";
}

std::string ArchiveFileName(const std::string& RootDirectory)
{
    std::string Folder = RootDirectory;
    while (!Folder.empty() && (Folder.back() == '/' || Folder.back() == '\\'))
    {
        Folder.pop_back();
    }
    std::string Name;
    for (const char Character : Paths::GetCleanFilename(Folder))
    {
        const bool bSafe = std::isalnum(static_cast<unsigned char>(Character)) || Character == '-' || Character == '_' || Character == '.';
        Name += bSafe ? Character : '_';
    }
    // mod.io takes at most 100 characters, ".zip" included.
    Name = Name.substr(0, 64);
    return (Name.empty() || Name.find_first_not_of('.') == std::string::npos ? std::string("modfile") : Name) + ".zip";
}

std::optional<FModioModID> ReadModId(const std::string& Body)
{
    const JsonFields::FJson Answer = JsonFields::FJson::parse(Body, nullptr, false);
    double Id = 0;
    if (!JsonFields::TryGetNumber(Answer, "id", Id) || JsonFields::TruncateToInt64(Id) <= 0)
    {
        return std::nullopt;
    }
    return JsonFields::TruncateToInt64(Id);
}

std::optional<FModioModInfo> ReadModInfo(const std::string& Body)
{
    const std::optional<FModioModID> Id = ReadModId(Body);
    if (!Id)
    {
        return std::nullopt;
    }
    const JsonFields::FJson Answer = JsonFields::FJson::parse(Body, nullptr, false);
    FModioModInfo Info;
    Info.ModId = *Id;
    Info.Name = JsonFields::GetString(Answer, "name");
    Info.MetadataBlob = JsonFields::GetString(Answer, "metadata_blob");
    return Info;
}

bool IsModfileObject(const std::string& Body)
{
    return ReadModId(Body).has_value();
}

std::optional<FUploadSession> ReadUploadSession(const std::string& Body)
{
    const JsonFields::FJson Answer = JsonFields::FJson::parse(Body, nullptr, false);
    FUploadSession Session{JsonFields::GetString(Answer, "upload_id"),
        JsonFields::TruncateToInt32(JsonFields::GetNumber(Answer, "status"))};
    if (Session.UploadId.empty())
    {
        return std::nullopt;
    }
    return Session;
}

std::optional<FUploadedParts> ReadUploadedParts(const std::string& Body)
{
    const JsonFields::FJson Answer = JsonFields::FJson::parse(Body, nullptr, false);
    const JsonFields::FJson* Data = JsonFields::TryGetArray(Answer, "data");
    if (!Data)
    {
        return std::nullopt;
    }
    FUploadedParts Page;
    Page.PageCount = static_cast<int64>(Data->size());
    Page.ResultTotal = JsonFields::TruncateToInt64(JsonFields::GetNumber(Answer, "result_total"));
    for (const JsonFields::FJson& Item : *Data)
    {
        const FUploadedPart Part{JsonFields::TruncateToInt64(JsonFields::GetNumber(Item, "part_number")),
            JsonFields::TruncateToInt64(JsonFields::GetNumber(Item, "part_size"))};
        if (Part.Number > 0 && Part.Size > 0)
        {
            Page.Parts.push_back(Part);
        }
    }
    return Page;
}
}
