#pragma once

#include "Common/CoreTypes.h"

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace Maptorn::Sandbox
{
// Mod statuses as mod.io numbers them.
inline constexpr int32 ModStatusNotAccepted = 0;
inline constexpr int32 ModStatusAccepted = 1;
inline constexpr int32 ModStatusDeleted = 3;

// Multipart upload session statuses.
inline constexpr int32 UploadIncomplete = 0;
inline constexpr int32 UploadComplete = 3;

struct FSandboxUser
{
    int64 Id = 0;
    std::string Email;
    std::string Username;
    std::string NameId;
    int64 DateJoined = 0;
    int64 DateOnline = 0;
};

struct FAccessToken
{
    std::string Value;
    int64 UserId = 0;
    int64 DateExpires = 0;
    bool bRevoked = false;
};

struct FSecurityCode
{
    std::string Code;
    std::string Email;
    int64 DateIssued = 0;
    bool bUsed = false;
};

struct FModTag
{
    std::string Name;
    int64 DateAdded = 0;
};

struct FModStats
{
    int64 DownloadsToday = 0; // what "popular" sorts by
    int64 DownloadsTotal = 0;
    int64 SubscribersTotal = 0;
    int64 RatingsPositive = 0;
    int64 RatingsNegative = 0;
};

struct FStoredModfile
{
    int64 Id = 0;
    int64 ModId = 0;
    int64 DateAdded = 0;
    int64 Filesize = 0;
    std::string Md5;
    std::string Filename;
    std::string Version;
    std::string Changelog;
    std::string MetadataBlob;
    std::vector<std::string> Platforms;
    std::string Blob; // name inside the blob folder
};

struct FStoredMod
{
    int64 Id = 0;
    int64 GameId = 0;
    int32 Status = ModStatusAccepted;
    bool bVisible = true;
    int64 SubmittedBy = 0;
    int64 DateAdded = 0;
    int64 DateUpdated = 0;
    int64 DateLive = 0;
    std::string Name;
    std::string NameId;
    std::string Summary;
    std::string Description;
    std::string MetadataBlob;
    std::vector<FModTag> Tags;
    std::string LogoFilename;
    std::string LogoBlob;
    std::map<std::string, int64> LiveModfiles; // platform → modfile id
    std::vector<int64> Dependencies;
    FModStats Stats;
};

struct FUploadPart
{
    int64 Number = 0; // 1-based
    int64 First = 0;
    int64 Last = 0;
    int64 DateAdded = 0;
    std::string Blob;
};

struct FUploadSession
{
    std::string UploadId;
    int64 ModId = 0;
    int64 UserId = 0;
    std::string Filename;
    std::string Nonce;
    int32 Status = UploadIncomplete;
    int64 Total = -1; // known once a part names it
    int64 DateAdded = 0;
    std::vector<FUploadPart> Parts;
    std::string AssembledBlob;
    int64 AssembledSize = 0;
    std::string AssembledMd5;
};

// Everything the service knows; the caller holds the state's lock.
struct FSandboxStore
{
    std::map<int64, FSandboxUser> Users;
    std::map<std::string, FAccessToken> Tokens;
    std::vector<FSecurityCode> Codes;
    std::map<int64, FStoredMod> Mods;
    std::map<int64, FStoredModfile> Modfiles;
    std::map<std::string, FUploadSession> Sessions;
    // "<mod id>:<nonce>" of completed sessions whose file was added: the nonce stays spent.
    std::set<std::string> SpentNonces;
    int64 NextUserId = 101;
    int64 NextModId = 2001; // seeded mods take 1001 onwards
    int64 NextModfileId = 9001;

    FSandboxUser* FindUserByEmail(const std::string& Email);
    const FSandboxUser* FindUser(int64 Id) const;
    FSandboxUser& FindOrAddUser(const std::string& Email, int64 Now);
    FStoredMod* FindMod(int64 Id);
    const FStoredModfile* FindModfile(int64 Id) const;
    bool IsNameIdTaken(int64 GameId, const std::string& NameId, int64 ExceptModId) const;
    // "Harbour Run!" → "harbour-run", made unique within the game.
    std::string UniqueNameId(int64 GameId, const std::string& Name, int64 ExceptModId) const;
    // The modfile a reader on Platform sees: the live one for it, else (no platform asked) the newest live one.
    const FStoredModfile* ModfileFor(const FStoredMod& Mod, const std::string& Platform, bool bPlatformAsked) const;
};

// The store as JSON (the data folder's state.json) and back; false when the text is not a saved store.
std::string SaveStoreText(const FSandboxStore& Store);
bool LoadStoreText(const std::string& Text, FSandboxStore& OutStore);
}
