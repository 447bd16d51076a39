// The data folder's state.json: every record of the store, so that a sandbox started on the same
// folder finds its users, tokens, mods, files and open upload sessions again.

#include "ModioService/SandboxStore.h"

#include <nlohmann/json.hpp>

namespace Maptorn::Sandbox
{
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE_WITH_DEFAULT(FSandboxUser, Id, Email, Username, NameId, DateJoined, DateOnline)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE_WITH_DEFAULT(FAccessToken, Value, UserId, DateExpires, bRevoked)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE_WITH_DEFAULT(FSecurityCode, Code, Email, DateIssued, bUsed)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE_WITH_DEFAULT(FModTag, Name, DateAdded)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE_WITH_DEFAULT(FModStats, DownloadsToday, DownloadsTotal, SubscribersTotal, RatingsPositive,
                                                RatingsNegative)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE_WITH_DEFAULT(FStoredModfile, Id, ModId, DateAdded, Filesize, Md5, Filename, Version, Changelog,
                                                MetadataBlob, Platforms, Blob)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE_WITH_DEFAULT(FStoredMod, Id, GameId, Status, bVisible, SubmittedBy, DateAdded, DateUpdated,
                                                DateLive, Name, NameId, Summary, Description, MetadataBlob, Tags, LogoFilename,
                                                LogoBlob, LiveModfiles, Dependencies, Stats)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE_WITH_DEFAULT(FUploadPart, Number, First, Last, DateAdded, Blob)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE_WITH_DEFAULT(FUploadSession, UploadId, ModId, UserId, Filename, Nonce, Status, Total,
                                                DateAdded, Parts, AssembledBlob, AssembledSize, AssembledMd5)

namespace
{
// Maps keyed by number become arrays of their values, which carry the key themselves.
template <typename TValue> nlohmann::json ValuesOf(const std::map<int64, TValue>& Map)
{
    nlohmann::json Array = nlohmann::json::array();
    for (const auto& [Key, Value] : Map)
    {
        Array.push_back(Value);
    }
    return Array;
}

template <typename TValue> std::map<int64, TValue> MapOf(const nlohmann::json& Array)
{
    std::map<int64, TValue> Map;
    for (const nlohmann::json& Item : Array)
    {
        TValue Value = Item.get<TValue>();
        Map[Value.Id] = Value;
    }
    return Map;
}
}

std::string SaveStoreText(const FSandboxStore& Store)
{
    nlohmann::json Root;
    Root["Users"] = ValuesOf(Store.Users);
    Root["Tokens"] = nlohmann::json::array();
    for (const auto& [Value, Token] : Store.Tokens)
    {
        Root["Tokens"].push_back(Token);
    }
    Root["Codes"] = Store.Codes;
    Root["Mods"] = ValuesOf(Store.Mods);
    Root["Modfiles"] = ValuesOf(Store.Modfiles);
    Root["Sessions"] = nlohmann::json::array();
    for (const auto& [UploadId, Session] : Store.Sessions)
    {
        Root["Sessions"].push_back(Session);
    }
    Root["SpentNonces"] = Store.SpentNonces;
    Root["NextUserId"] = Store.NextUserId;
    Root["NextModId"] = Store.NextModId;
    Root["NextModfileId"] = Store.NextModfileId;
    return Root.dump(1, '\t');
}

bool LoadStoreText(const std::string& Text, FSandboxStore& OutStore)
{
    const nlohmann::json Root = nlohmann::json::parse(Text, nullptr, false);
    if (!Root.is_object())
    {
        return false;
    }
    try
    {
        FSandboxStore Store;
        Store.Users = MapOf<FSandboxUser>(Root.value("Users", nlohmann::json::array()));
        for (const nlohmann::json& Item : Root.value("Tokens", nlohmann::json::array()))
        {
            FAccessToken Token = Item.get<FAccessToken>();
            Store.Tokens[Token.Value] = Token;
        }
        Store.Codes = Root.value("Codes", nlohmann::json::array()).get<std::vector<FSecurityCode>>();
        Store.Mods = MapOf<FStoredMod>(Root.value("Mods", nlohmann::json::array()));
        Store.Modfiles = MapOf<FStoredModfile>(Root.value("Modfiles", nlohmann::json::array()));
        for (const nlohmann::json& Item : Root.value("Sessions", nlohmann::json::array()))
        {
            FUploadSession Session = Item.get<FUploadSession>();
            Store.Sessions[Session.UploadId] = Session;
        }
        Store.SpentNonces = Root.value("SpentNonces", nlohmann::json::array()).get<std::set<std::string>>();
        Store.NextUserId = Root.value("NextUserId", Store.NextUserId);
        Store.NextModId = Root.value("NextModId", Store.NextModId);
        Store.NextModfileId = Root.value("NextModfileId", Store.NextModfileId);
        OutStore = std::move(Store);
        return true;
    }
    catch (const nlohmann::json::exception&)
    {
        return false;
    }
}
}
