#include "ModioService/SandboxObjects.h"

#include "Common/StringUtil.h"

#include <algorithm>
#include <cctype>

namespace Maptorn::Sandbox
{
namespace
{
constexpr int64 DownloadLinkSeconds = 6 * 60 * 60;

Json::FJsonObject AvatarObject()
{
    Json::FJsonObject Avatar;
    Avatar["filename"] = "";
    Avatar["original"] = "";
    Avatar["thumb_50x50"] = "";
    Avatar["thumb_100x100"] = "";
    return Avatar;
}

Json::FJsonObject StatsObject(const FStoredMod& Mod, const FSandboxStore& Store, const FObjectView& View)
{
    int64 Rank = 1;
    int64 Ranked = 0;
    for (const auto& [Id, Other] : Store.Mods)
    {
        if (Other.GameId == Mod.GameId && Other.Status != ModStatusDeleted)
        {
            ++Ranked;
            Rank += Other.Stats.DownloadsToday > Mod.Stats.DownloadsToday ? 1 : 0;
        }
    }
    const FModStats& Stats = Mod.Stats;
    const int64 Ratings = Stats.RatingsPositive + Stats.RatingsNegative;
    const int64 Percentage = Ratings ? Stats.RatingsPositive * 100 / Ratings : 0;
    Json::FJsonObject Object;
    Object["mod_id"] = Mod.Id;
    Object["popularity_rank_position"] = Rank;
    Object["popularity_rank_total_mods"] = Ranked;
    Object["downloads_today"] = Stats.DownloadsToday;
    Object["downloads_total"] = Stats.DownloadsTotal;
    Object["subscribers_total"] = Stats.SubscribersTotal;
    Object["ratings_total"] = Ratings;
    Object["ratings_positive"] = Stats.RatingsPositive;
    Object["ratings_negative"] = Stats.RatingsNegative;
    Object["ratings_percentage_positive"] = Percentage;
    Object["ratings_weighted_aggregate"] = Ratings ? double(Stats.RatingsPositive) / double(Ratings) : 0.0;
    Object["ratings_display_text"] = Ratings == 0       ? "Unrated"
                                     : Percentage >= 80 ? "Very Positive"
                                     : Percentage >= 50 ? "Mixed"
                                                        : "Negative";
    Object["date_expires"] = View.Now + 300;
    return Object;
}

Json::FJsonObject PlatformsOf(const FStoredMod& Mod)
{
    Json::FJsonObject Platforms = Json::FJsonObject::array();
    for (const auto& [Platform, ModfileId] : Mod.LiveModfiles)
    {
        Json::FJsonObject Entry;
        Entry["platform"] = Platform;
        Entry["modfile_live"] = ModfileId;
        Platforms.push_back(Entry);
    }
    return Platforms;
}

Json::FJsonObject TagsOf(const FStoredMod& Mod)
{
    Json::FJsonObject Tags = Json::FJsonObject::array();
    for (const FModTag& Tag : Mod.Tags)
    {
        Json::FJsonObject Entry;
        Entry["name"] = Tag.Name;
        Entry["name_localized"] = Tag.Name;
        Entry["date_added"] = Tag.DateAdded;
        Tags.push_back(Entry);
    }
    return Tags;
}
}

std::string EncodePathSegment(const std::string& Text)
{
    std::string Encoded;
    for (const char Character : Text)
    {
        const unsigned char Byte = static_cast<unsigned char>(Character);
        if (std::isalnum(Byte) || Character == '-' || Character == '.' || Character == '_' || Character == '~')
        {
            Encoded += Character;
        }
        else
        {
            Encoded += Printf("%%%02X", Byte);
        }
    }
    return Encoded;
}

std::string DownloadPathOf(const FStoredModfile& Modfile)
{
    return "/sandbox/files/" + std::to_string(Modfile.Id) + "/" + EncodePathSegment(Modfile.Filename);
}

std::string LogoPathOf(const FStoredMod& Mod, const std::string& Variant)
{
    return "/sandbox/logos/" + std::to_string(Mod.Id) + "/" + Variant + "/" + EncodePathSegment(Mod.LogoFilename);
}

std::string ProfilePathOf(const FStoredMod& Mod)
{
    return "/sandbox/mods/" + EncodePathSegment(Mod.NameId);
}

Json::FJsonObject UserObject(const FSandboxUser& User, const FObjectView& View)
{
    Json::FJsonObject Object;
    Object["id"] = User.Id;
    Object["name_id"] = User.NameId;
    Object["username"] = User.Username;
    Object["display_name_portal"] = nullptr;
    Object["date_online"] = User.DateOnline;
    Object["date_joined"] = User.DateJoined;
    Object["avatar"] = AvatarObject();
    Object["timezone"] = "";
    Object["language"] = "";
    Object["profile_url"] = View.BaseUrl + "/sandbox/users/" + EncodePathSegment(User.NameId);
    return Object;
}

Json::FJsonObject LogoObject(const FStoredMod& Mod, const FObjectView& View)
{
    Json::FJsonObject Logo;
    Logo["filename"] = Mod.LogoFilename;
    Logo["original"] = View.BaseUrl + LogoPathOf(Mod, "original");
    Logo["thumb_320x180"] = View.BaseUrl + LogoPathOf(Mod, "thumb_320x180");
    Logo["thumb_640x360"] = View.BaseUrl + LogoPathOf(Mod, "thumb_640x360");
    Logo["thumb_1280x720"] = View.BaseUrl + LogoPathOf(Mod, "thumb_1280x720");
    return Logo;
}

Json::FJsonObject ModfileObject(const FStoredModfile& Modfile, const FObjectView& View)
{
    Json::FJsonObject Object;
    Object["id"] = Modfile.Id;
    Object["mod_id"] = Modfile.ModId;
    Object["date_added"] = Modfile.DateAdded;
    Object["date_updated"] = Modfile.DateAdded;
    Object["date_scanned"] = Modfile.DateAdded;
    Object["virus_status"] = 1;
    Object["virus_positive"] = 0;
    Object["virustotal_hash"] = "";
    Object["filesize"] = Modfile.Filesize;
    // The archive's unpacked size is not measured here; the packed size stands in for it.
    Object["filesize_uncompressed"] = Modfile.Filesize;
    Object["filehash"] = { { "md5", Modfile.Md5 } };
    Object["filename"] = Modfile.Filename;
    Object["version"] = Modfile.Version;
    Object["changelog"] = Modfile.Changelog;
    Object["metadata_blob"] = Modfile.MetadataBlob;
    Object["download"] = { { "binary_url", View.BaseUrl + DownloadPathOf(Modfile) },
                           { "date_expires", View.Now + DownloadLinkSeconds } };
    Object["platforms"] = Json::FJsonObject::array();
    for (const std::string& Platform : Modfile.Platforms)
    {
        Object["platforms"].push_back({ { "platform", Platform }, { "status", 1 } });
    }
    return Object;
}

Json::FJsonObject ModObject(const FStoredMod& Mod, const FSandboxStore& Store, const FObjectView& View)
{
    Json::FJsonObject Object;
    Object["id"] = Mod.Id;
    Object["game_id"] = Mod.GameId;
    Object["status"] = Mod.Status;
    Object["visible"] = Mod.bVisible ? 1 : 0;
    const FSandboxUser* Owner = Store.FindUser(Mod.SubmittedBy);
    Object["submitted_by"] = Owner ? UserObject(*Owner, View) : Json::FJsonObject(nullptr);
    Object["date_added"] = Mod.DateAdded;
    Object["date_updated"] = Mod.DateUpdated;
    Object["date_live"] = Mod.DateLive;
    Object["maturity_option"] = 0;
    Object["community_options"] = 1;
    Object["monetization_options"] = 0;
    Object["stock"] = 0;
    Object["price"] = 0;
    Object["tax"] = 0;
    Object["logo"] = LogoObject(Mod, View);
    Object["homepage_url"] = nullptr;
    Object["name"] = Mod.Name;
    Object["name_id"] = Mod.NameId;
    Object["summary"] = Mod.Summary;
    Object["description"] = Mod.Description;
    Object["description_plaintext"] = Mod.Description;
    Object["metadata_blob"] = Mod.MetadataBlob;
    Object["profile_url"] = View.BaseUrl + ProfilePathOf(Mod);
    Object["media"] = { { "youtube", Json::FJsonObject::array() }, { "sketchfab", Json::FJsonObject::array() },
                        { "images", Json::FJsonObject::array() } };
    const FStoredModfile* Modfile = Store.ModfileFor(Mod, View.Platform, View.bPlatformAsked);
    Object["modfile"] = Modfile ? ModfileObject(*Modfile, View) : Json::FJsonObject(nullptr);
    Object["dependencies"] = !Mod.Dependencies.empty();
    Object["platforms"] = PlatformsOf(Mod);
    Object["metadata_kvp"] = Json::FJsonObject::array();
    Object["tags"] = TagsOf(Mod);
    Object["stats"] = StatsObject(Mod, Store, View);
    return Object;
}

Json::FJsonObject UploadSessionObject(const FUploadSession& Session)
{
    Json::FJsonObject Object;
    Object["upload_id"] = Session.UploadId;
    Object["status"] = Session.Status;
    return Object;
}

Json::FJsonObject UploadPartObject(const FUploadSession& Session, const FUploadPart& Part)
{
    Json::FJsonObject Object;
    Object["upload_id"] = Session.UploadId;
    Object["part_number"] = Part.Number;
    Object["part_size"] = Part.Last - Part.First + 1;
    Object["date_added"] = Part.DateAdded;
    return Object;
}

Json::FJsonObject PageObject(std::vector<Json::FJsonObject> Items, int64 Offset, int64 Limit, int64 Total)
{
    Json::FJsonObject Page;
    const int64 Count = static_cast<int64>(Items.size());
    Page["data"] = Json::FJsonObject::array();
    for (Json::FJsonObject& Item : Items)
    {
        Page["data"].push_back(std::move(Item));
    }
    Page["result_count"] = Count;
    Page["result_offset"] = Offset;
    Page["result_limit"] = Limit;
    Page["result_total"] = Total;
    return Page;
}
}
