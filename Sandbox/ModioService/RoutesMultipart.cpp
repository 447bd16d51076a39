// Multipart upload sessions: a file sent in 50 MiB parts, each with its Content-Range, then
// assembled on disk when the client completes the session.

#include "Common/FileHelper.h"
#include "Common/StringUtil.h"
#include "ModioService/SandboxByteRanges.h"
#include "ModioService/SandboxListQuery.h"
#include "Common/Md5.h"
#include "ModioService/SandboxRandom.h"
#include "ModioService/SandboxRoutes.h"
#include "ModioService/SandboxState.h"

#include <httplib.h>

#include <fstream>

namespace Maptorn::Sandbox
{
namespace
{
const std::string SessionsPath = ModPath + "/files/multipart";

// The session named by ?upload_id= for the path's mod, which the token's user owns.
std::optional<FApiError> FindSession(FRouteContext& Context, FUploadSession*& OutSession)
{
    FStoredMod* Mod = nullptr;
    if (std::optional<FApiError> Error = FindOwnedMod(Context, Mod))
    {
        return Error;
    }
    const auto Found = Context.State.Store.Sessions.find(Context.Query("upload_id"));
    if (Found == Context.State.Store.Sessions.end() || Found->second.ModId != Mod->Id)
    {
        return MakeError(404, ErrorRef::NotFound, "The requested upload session could not be found.");
    }
    OutSession = &Found->second;
    return std::nullopt;
}

FReply CreateSession(FRouteContext& Context)
{
    const std::string Filename = TrimWhitespace(Context.Body.Value("filename"));
    const std::string Nonce = Context.Body.Value("nonce");
    if (Filename.size() < 5 || Filename.size() > 100 || !ToLower(Filename).ends_with(".zip"))
    {
        return FReply::Error(ValidationError("filename", "The filename must end in .zip and be at most 100 characters."));
    }
    if (Nonce.size() > 64)
    {
        return FReply::Error(ValidationError("nonce", "The nonce may not be greater than 64 characters."));
    }
    std::scoped_lock Lock(Context.State.Mutex);
    FStoredMod* Mod = nullptr;
    if (std::optional<FApiError> Error = FindOwnedMod(Context, Mod))
    {
        return FReply::Error(*Error);
    }
    // The same nonce finds the session it opened before, so that a retried create is harmless;
    // once that session has completed, the nonce is spent (Create Multipart Upload Session: 29002).
    const FApiError Spent = MakeError(400, ErrorRef::NonceOfCompletedSession,
        "The nonce you provided was already associated with a completed upload session. If you wish to start a new upload "
        "you should regenerate the nonce parameter.");
    if (!Nonce.empty() && Context.State.Store.SpentNonces.count(std::to_string(Mod->Id) + ":" + Nonce))
    {
        return FReply::Error(Spent);
    }
    for (const auto& [UploadId, Existing] : Context.State.Store.Sessions)
    {
        if (Nonce.empty() || Existing.ModId != Mod->Id || Existing.Nonce != Nonce)
        {
            continue;
        }
        return Existing.Status == UploadComplete ? FReply::Error(Spent) : FReply::Json(200, UploadSessionObject(Existing));
    }
    FUploadSession Session;
    Session.UploadId = NewUuid();
    Session.ModId = Mod->Id;
    Session.UserId = Context.UserId;
    Session.Filename = Filename;
    Session.Nonce = Nonce;
    Session.DateAdded = Context.State.Now();
    Context.State.Store.Sessions[Session.UploadId] = Session;
    Context.State.SaveLocked();
    return FReply::Json(200, UploadSessionObject(Session));
}

std::optional<FApiError> CheckPartAgainstSession(const FUploadSession& Session, const FPartRange& Range)
{
    if (Session.Status != UploadIncomplete)
    {
        return ValidationError("upload_id", "The upload session no longer takes parts.");
    }
    if (Session.Total >= 0 && Session.Total != Range.Total)
    {
        return MakeError(400, ErrorRef::RangeFinalEndNotTotal, "The total size differs from the one given with earlier parts.");
    }
    for (const FUploadPart& Part : Session.Parts)
    {
        if (Part.First == Range.First)
        {
            return MakeError(
                400, ErrorRef::RangeAlreadyUploaded,
                "An uploaded part with the specified start - finish byte range has already been uploaded to that session.");
        }
    }
    return std::nullopt;
}

FReply AddPart(FRouteContext& Context)
{
    FPartRange Range;
    const bool bLegacy = Context.State.bAcceptLegacyContentRange.load();
    if (std::optional<FApiError> Error = ParsePartRange(Context.Request.get_header_value("Content-Range"), bLegacy, Range))
    {
        return FReply::Error(*Error);
    }
    const int64 PartUnit = bLegacy ? UploadPartSize - 1 : UploadPartSize;
    if (std::optional<FApiError> Error = CheckPartRange(Range, Context.Body.ReceivedBytes, PartUnit))
    {
        return FReply::Error(*Error);
    }
    std::scoped_lock Lock(Context.State.Mutex);
    FUploadSession* Session = nullptr;
    if (std::optional<FApiError> Error = FindSession(Context, Session))
    {
        return FReply::Error(*Error);
    }
    if (std::optional<FApiError> Error = CheckPartAgainstSession(*Session, Range))
    {
        return FReply::Error(*Error);
    }
    FUploadPart Part{ Range.First / PartUnit + 1, Range.First, Range.Last, Context.State.Now(), {} };
    Part.Blob = Context.State.Blobs.Adopt(Context.Body.RawPath, "part");
    if (Part.Blob.empty())
    {
        return FReply::Error(MakeError(500, ErrorRef::ServiceOutage, "The part could not be stored."));
    }
    Session->Total = Range.Total;
    Session->Parts.push_back(Part);
    std::sort(Session->Parts.begin(), Session->Parts.end(),
              [](const FUploadPart& A, const FUploadPart& B) { return A.First < B.First; });
    Context.State.SaveLocked();
    return FReply::Json(200, UploadPartObject(*Session, Part));
}

FReply ListParts(FRouteContext& Context)
{
    FPaging Paging;
    if (std::optional<FApiError> Error = ParsePaging(Context.Request.params, Paging))
    {
        return FReply::Error(*Error);
    }
    std::scoped_lock Lock(Context.State.Mutex);
    FUploadSession* Session = nullptr;
    if (std::optional<FApiError> Error = FindSession(Context, Session))
    {
        return FReply::Error(*Error);
    }
    const FPageSlice Slice = SliceOf(Session->Parts.size(), Paging);
    std::vector<Json::FJsonObject> Items;
    for (size_t Index = Slice.First; Index < Slice.First + Slice.Count; ++Index)
    {
        Items.push_back(UploadPartObject(*Session, Session->Parts[Index]));
    }
    return FReply::Json(200,
                        PageObject(std::move(Items), Paging.Offset, Paging.Limit, static_cast<int64>(Session->Parts.size())));
}

// True when the parts, in order, cover every byte from 0 to Total − 1 once.
bool CoversWholeFile(const FUploadSession& Session)
{
    int64 Next = 0;
    for (const FUploadPart& Part : Session.Parts)
    {
        if (Part.First != Next)
        {
            return false;
        }
        Next = Part.Last + 1;
    }
    return Session.Total > 0 && Next == Session.Total;
}

// Concatenates the parts on disk, hashing as it goes; empty on failure.
std::string AssembleParts(const FBlobFolder& Blobs, const std::vector<FUploadPart>& Parts, std::string& OutMd5)
{
    const std::string Path = Blobs.NewIncomingPath();
    std::ofstream Whole(Path, std::ios::binary);
    FMd5 Md5;
    std::vector<char> Chunk(1 << 20);
    for (const FUploadPart& Part : Parts)
    {
        std::ifstream Piece(Blobs.PathOf(Part.Blob), std::ios::binary);
        while (Piece && Whole)
        {
            Piece.read(Chunk.data(), static_cast<std::streamsize>(Chunk.size()));
            Md5.Update(Chunk.data(), static_cast<size_t>(Piece.gcount()));
            Whole.write(Chunk.data(), Piece.gcount());
        }
    }
    OutMd5 = Md5.FinalHex();
    return Whole ? Path : std::string();
}

FReply CompletedReply(const FRouteContext& Context, const FUploadSession& Session)
{
    // Clients of the legacy ranges expect 201 here.
    return FReply::Json(Context.State.bAcceptLegacyContentRange.load() ? 201 : 200, UploadSessionObject(Session));
}

FReply CompleteSession(FRouteContext& Context)
{
    std::vector<FUploadPart> Parts;
    {
        std::scoped_lock Lock(Context.State.Mutex);
        FUploadSession* Session = nullptr;
        if (std::optional<FApiError> Error = FindSession(Context, Session))
        {
            return FReply::Error(*Error);
        }
        if (Session->Status == UploadComplete)
        {
            return CompletedReply(Context, *Session);
        }
        if (!CoversWholeFile(*Session))
        {
            return FReply::Error(ValidationError("upload_id", "The upload session is missing parts of the file."));
        }
        Parts = Session->Parts;
    }
    // A large file is assembled outside the lock; the session is looked up again afterwards.
    std::string Md5;
    const std::string Assembled = AssembleParts(Context.State.Blobs, Parts, Md5);
    if (Assembled.empty())
    {
        return FReply::Error(MakeError(500, ErrorRef::ServiceOutage, "The parts could not be joined."));
    }
    std::scoped_lock Lock(Context.State.Mutex);
    FUploadSession* Session = nullptr;
    const std::optional<FApiError> Error = FindSession(Context, Session);
    if (Error || Session->Status == UploadComplete)
    {
        FileSystem::DeleteFile(Assembled); // deleted or completed meanwhile
        return Error ? FReply::Error(*Error) : CompletedReply(Context, *Session);
    }
    Session->AssembledBlob = Context.State.Blobs.Adopt(Assembled, "upload");
    Session->AssembledSize = Session->Total;
    Session->AssembledMd5 = Md5;
    Session->Status = UploadComplete;
    for (FUploadPart& Part : Session->Parts)
    {
        Context.State.Blobs.Remove(Part.Blob);
        Part.Blob.clear();
    }
    Context.State.SaveLocked();
    return CompletedReply(Context, *Session);
}

FReply DeleteSession(FRouteContext& Context)
{
    std::scoped_lock Lock(Context.State.Mutex);
    FUploadSession* Session = nullptr;
    if (std::optional<FApiError> Error = FindSession(Context, Session))
    {
        return FReply::Error(*Error);
    }
    for (const FUploadPart& Part : Session->Parts)
    {
        Context.State.Blobs.Remove(Part.Blob);
    }
    Context.State.Blobs.Remove(Session->AssembledBlob);
    Context.State.Store.Sessions.erase(Session->UploadId);
    Context.State.SaveLocked();
    return FReply::NoContent();
}

FReply ListSessions(FRouteContext& Context)
{
    FPaging Paging;
    if (std::optional<FApiError> Error = ParsePaging(Context.Request.params, Paging))
    {
        return FReply::Error(*Error);
    }
    std::scoped_lock Lock(Context.State.Mutex);
    FStoredMod* Mod = nullptr;
    if (std::optional<FApiError> Error = FindOwnedMod(Context, Mod))
    {
        return FReply::Error(*Error);
    }
    std::vector<Json::FJsonObject> Sessions;
    for (const auto& [UploadId, Session] : Context.State.Store.Sessions)
    {
        if (Session.ModId == Mod->Id)
        {
            Sessions.push_back(UploadSessionObject(Session));
        }
    }
    const FPageSlice Slice = SliceOf(Sessions.size(), Paging);
    const int64 Total = static_cast<int64>(Sessions.size());
    std::vector<Json::FJsonObject> Items(Sessions.begin() + Slice.First, Sessions.begin() + Slice.First + Slice.Count);
    return FReply::Json(200, PageObject(std::move(Items), Paging.Offset, Paging.Limit, Total));
}
}

void RegisterMultipartRoutes(FSandboxRouter& Router)
{
    Router.Post(SessionsPath, EAccess::Token, EBodyKind::Form, CreateSession);
    Router.Put(SessionsPath, EAccess::Token, EBodyKind::Raw, AddPart);
    Router.Get(SessionsPath, EAccess::Token, ListParts);
    Router.Post(SessionsPath + "/complete", EAccess::Token, EBodyKind::Form, CompleteSession);
    Router.Delete(SessionsPath, EAccess::Token, DeleteSession);
    Router.Get(SessionsPath + "/sessions", EAccess::Token, ListSessions);
}
}
