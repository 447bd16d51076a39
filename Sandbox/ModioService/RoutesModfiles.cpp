// Adding a mod's file, from a form-data upload or a completed multipart session; the new file
// goes live on the platforms it names.

#include "Common/Paths.h"
#include "Common/StringUtil.h"
#include "ModioService/SandboxListQuery.h"
#include "Common/Md5.h"
#include "ModioService/SandboxRoutes.h"
#include "ModioService/SandboxState.h"

#include <httplib.h>

#include <fstream>

namespace Maptorn::Sandbox
{
namespace
{
// The file being added: where its bytes are and what they are.
struct FIncomingModfile
{
    std::string Path;        // a received file, or a session's assembled blob
    std::string SessionBlob; // set when the bytes come from an upload session
    std::string Filename;
    int64 Size = 0;
    std::string Md5;
};

bool IsZip(const std::string& Path)
{
    std::ifstream File(Path, std::ios::binary);
    char Head[4] = {};
    File.read(Head, sizeof(Head));
    const std::string_view Bytes(Head, static_cast<size_t>(File.gcount()));
    return Bytes == std::string_view("PK\x03\x04", 4) || Bytes == std::string_view("PK\x05\x06", 4);
}

FApiError CheckModfileFields(const FRequestBody& Body, std::vector<std::string>& OutPlatforms)
{
    FApiError All = ValidationFailure();
    MergeInto(All, CheckLength(Body, "version", 50));
    MergeInto(All, CheckLength(Body, "changelog", 50000));
    MergeInto(All, CheckLength(Body, "metadata_blob", 50000));
    bool bIgnored = true;
    MergeInto(All, ReadFlag(Body, "active", bIgnored));
    for (const std::string& Asked : Body.Values("platforms"))
    {
        const std::string Platform = ToLower(TrimWhitespace(Asked));
        if (!IsKnownPlatform(Platform))
        {
            All.Fields["platforms"] = "The platform " + Asked + " is not one mod.io knows.";
        }
        else if (std::find(OutPlatforms.begin(), OutPlatforms.end(), Platform) == OutPlatforms.end())
        {
            OutPlatforms.push_back(Platform);
        }
    }
    if (OutPlatforms.empty())
    {
        OutPlatforms.push_back("windows");
    }
    return All;
}

std::optional<FApiError> FromFiledata(const FUploadedFile& Filedata, FIncomingModfile& Out)
{
    if (!IsZip(Filedata.Path))
    {
        return ValidationError("filedata", "The filedata must be a zip archive.");
    }
    Out.Path = Filedata.Path;
    Out.Filename = Paths::MakeValidFileName(Paths::GetCleanFilename(Filedata.Filename));
    Out.Filename = Out.Filename.empty() ? "modfile.zip" : Out.Filename;
    Out.Size = static_cast<int64>(Filedata.Size);
    Out.Md5 = FMd5::OfFile(Filedata.Path);
    return std::nullopt;
}

std::optional<FApiError> FromSession(FRouteContext& Context, int64 ModId, const std::string& UploadId, FIncomingModfile& Out)
{
    const auto Found = Context.State.Store.Sessions.find(UploadId);
    if (Found == Context.State.Store.Sessions.end() || Found->second.ModId != ModId || Found->second.Status != UploadComplete)
    {
        return ValidationError("upload_id", "The upload_id does not name a completed upload session of this mod.");
    }
    Out.SessionBlob = Found->second.AssembledBlob;
    Out.Path = Context.State.Blobs.PathOf(Out.SessionBlob);
    Out.Filename = Found->second.Filename;
    Out.Size = Found->second.AssembledSize;
    Out.Md5 = Found->second.AssembledMd5;
    return std::nullopt;
}

FStoredModfile MakeModfile(FRouteContext& Context, const FIncomingModfile& Incoming, std::vector<std::string> Platforms,
                           int64 ModId)
{
    FStoredModfile Modfile;
    Modfile.Id = Context.State.Store.NextModfileId++;
    Modfile.ModId = ModId;
    Modfile.DateAdded = Context.State.Now();
    Modfile.Filesize = Incoming.Size;
    Modfile.Md5 = Incoming.Md5;
    Modfile.Filename = Incoming.Filename;
    Modfile.Version = TrimWhitespace(Context.Body.Value("version"));
    Modfile.Changelog = Context.Body.Value("changelog");
    Modfile.MetadataBlob = Context.Body.Value("metadata_blob");
    Modfile.Platforms = std::move(Platforms);
    return Modfile;
}

// Stores the file and makes it live; the caller holds the lock and has checked the owner.
FReply CommitModfile(FRouteContext& Context, FStoredMod& Mod, const FIncomingModfile& Incoming,
                     std::vector<std::string> Platforms)
{
    FSandboxState& State = Context.State;
    FStoredModfile Modfile = MakeModfile(Context, Incoming, std::move(Platforms), Mod.Id);
    Modfile.Blob = Incoming.SessionBlob.empty() ? State.Blobs.Adopt(Incoming.Path, "modfile") : Incoming.SessionBlob;
    if (Modfile.Blob.empty())
    {
        return FReply::Error(MakeError(500, ErrorRef::ServiceOutage, "The file could not be stored."));
    }
    if (!Incoming.SessionBlob.empty())
    {
        const auto Session = State.Store.Sessions.find(Context.Body.Value("upload_id"));
        if (Session != State.Store.Sessions.end())
        {
            if (!Session->second.Nonce.empty())
            {
                State.Store.SpentNonces.insert(std::to_string(Mod.Id) + ":" + Session->second.Nonce);
            }
            State.Store.Sessions.erase(Session);
        }
    }
    bool bActive = true;
    ReadFlag(Context.Body, "active", bActive);
    if (bActive)
    {
        for (const std::string& Platform : Modfile.Platforms)
        {
            Mod.LiveModfiles[Platform] = Modfile.Id;
        }
        Mod.DateLive = Mod.DateLive == 0 ? Modfile.DateAdded : Mod.DateLive;
    }
    Mod.DateUpdated = Modfile.DateAdded;
    State.Store.Modfiles[Modfile.Id] = Modfile;
    State.SaveLocked();
    FReply Reply = FReply::Json(201, ModfileObject(Modfile, ViewOf(Context)));
    Reply.Headers.emplace_back("Location", State.BaseUrl() + "/v1/games/" + std::to_string(Mod.GameId) + "/mods/" +
                                               std::to_string(Mod.Id) + "/files/" + std::to_string(Modfile.Id));
    return Reply;
}

FReply AddModfile(FRouteContext& Context)
{
    std::vector<std::string> Platforms;
    if (const FApiError Invalid = CheckModfileFields(Context.Body, Platforms); !Invalid.Fields.empty())
    {
        return FReply::Error(Invalid);
    }
    FIncomingModfile Incoming;
    const FUploadedFile* Filedata = Context.Body.File("filedata");
    const std::string UploadId = TrimWhitespace(Context.Body.Value("upload_id"));
    if (!Filedata && UploadId.empty())
    {
        return FReply::Error(ValidationError("filedata", "The filedata field is required when upload_id is not present."));
    }
    // Hashing a large file happens outside the lock.
    if (Filedata)
    {
        if (std::optional<FApiError> Error = FromFiledata(*Filedata, Incoming))
        {
            return FReply::Error(*Error);
        }
    }
    std::scoped_lock Lock(Context.State.Mutex);
    FStoredMod* Mod = nullptr;
    if (std::optional<FApiError> Error = FindOwnedMod(Context, Mod))
    {
        return FReply::Error(*Error);
    }
    if (!Filedata)
    {
        if (std::optional<FApiError> Error = FromSession(Context, Mod->Id, UploadId, Incoming))
        {
            return FReply::Error(*Error);
        }
    }
    const std::string Expected = ToLower(TrimWhitespace(Context.Body.Value("filehash")));
    if (!Expected.empty() && Expected != Incoming.Md5)
    {
        return FReply::Error(ValidationError("filehash", "The filehash does not match the MD5 of the uploaded file."));
    }
    return CommitModfile(Context, *Mod, Incoming, std::move(Platforms));
}

FReply ListModfiles(FRouteContext& Context)
{
    FPaging Paging;
    if (std::optional<FApiError> Error = ParsePaging(Context.Request.params, Paging))
    {
        return FReply::Error(*Error);
    }
    std::scoped_lock Lock(Context.State.Mutex);
    FStoredMod* Mod = nullptr;
    if (std::optional<FApiError> Error = FindMod(Context, Mod))
    {
        return FReply::Error(*Error);
    }
    std::vector<const FStoredModfile*> Modfiles;
    for (const auto& [Id, Modfile] : Context.State.Store.Modfiles)
    {
        if (Modfile.ModId == Mod->Id)
        {
            Modfiles.push_back(&Modfile);
        }
    }
    const FPageSlice Slice = SliceOf(Modfiles.size(), Paging);
    std::vector<Json::FJsonObject> Items;
    for (size_t Index = Slice.First; Index < Slice.First + Slice.Count; ++Index)
    {
        Items.push_back(ModfileObject(*Modfiles[Index], ViewOf(Context)));
    }
    return FReply::Json(200, PageObject(std::move(Items), Paging.Offset, Paging.Limit, static_cast<int64>(Modfiles.size())));
}

FReply GetModfile(FRouteContext& Context)
{
    std::scoped_lock Lock(Context.State.Mutex);
    FStoredMod* Mod = nullptr;
    if (std::optional<FApiError> Error = FindMod(Context, Mod))
    {
        return FReply::Error(*Error);
    }
    const FStoredModfile* Modfile = Context.State.Store.FindModfile(Context.PathNumber(3));
    if (!Modfile || Modfile->ModId != Mod->Id)
    {
        return FReply::Error(MakeError(404, ErrorRef::ModfileNotFound, "The requested modfile could not be found."));
    }
    return FReply::Json(200, ModfileObject(*Modfile, ViewOf(Context)));
}
}

void RegisterModfileRoutes(FSandboxRouter& Router)
{
    // Form rather than multipart only: an upload_id alone may come urlencoded.
    Router.Post(ModPath + "/files", EAccess::Token, EBodyKind::Form, AddModfile);
    Router.Get(ModPath + "/files", EAccess::KeyOrToken, ListModfiles);
    Router.Get(ModPath + R"(/files/(\d+))", EAccess::KeyOrToken, GetModfile);
}
}
