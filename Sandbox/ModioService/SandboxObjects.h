#pragma once

#include "Common/CoreTypes.h"
#include "Common/JsonWriter.h"
#include "ModioService/SandboxStore.h"

#include <string>
#include <vector>

namespace Maptorn::Sandbox
{
// What an object's URLs and platform-dependent fields depend on.
struct FObjectView
{
    std::string BaseUrl;
    int64 Now = 0;
    std::string Platform = "windows";
    bool bPlatformAsked = false;
};

// Percent-encodes everything but RFC 3986's unreserved characters.
std::string EncodePathSegment(const std::string& Text);

std::string DownloadPathOf(const FStoredModfile& Modfile);
std::string LogoPathOf(const FStoredMod& Mod, const std::string& Variant);
std::string ProfilePathOf(const FStoredMod& Mod);

Json::FJsonObject UserObject(const FSandboxUser& User, const FObjectView& View);
Json::FJsonObject LogoObject(const FStoredMod& Mod, const FObjectView& View);
Json::FJsonObject ModfileObject(const FStoredModfile& Modfile, const FObjectView& View);
Json::FJsonObject ModObject(const FStoredMod& Mod, const FSandboxStore& Store, const FObjectView& View);
Json::FJsonObject UploadSessionObject(const FUploadSession& Session);
Json::FJsonObject UploadPartObject(const FUploadSession& Session, const FUploadPart& Part);

// {"data":[...],"result_count":n,"result_offset":o,"result_limit":l,"result_total":t}
Json::FJsonObject PageObject(std::vector<Json::FJsonObject> Items, int64 Offset, int64 Limit, int64 Total);
}
