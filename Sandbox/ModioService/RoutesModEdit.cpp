// Adding and editing mods: form fields checked the way mod.io checks them, the logo kept as sent.

#include "Common/Paths.h"
#include "Common/StringUtil.h"
#include "ModioService/SandboxImage.h"
#include "ModioService/SandboxRoutes.h"
#include "ModioService/SandboxState.h"

#include <httplib.h>

#include <fstream>

namespace Maptorn::Sandbox
{
namespace
{
constexpr uint64 MaxLogoBytes = 8 * 1024 * 1024;

// mod.io's Add Mod: a jpg or png of at most 8 MB and at least 512x288; the type and size are
// read from the image's own header, not from its name.
constexpr uint32 MinLogoWidth = 512;
constexpr uint32 MinLogoHeight = 288;

std::optional<FApiError> CheckLogo(const FUploadedFile* Logo, bool bRequired)
{
    if (!Logo)
    {
        return bRequired ? std::optional(ValidationError("logo", "The logo field is required.")) : std::nullopt;
    }
    const std::optional<FImageHeader> Image = ReadImageHeader(Logo->Path);
    if (Logo->Size > MaxLogoBytes || !Image)
    {
        return ValidationError("logo", "The logo must be a jpg or png image of at most 8 MB.");
    }
    if (Image->Width < MinLogoWidth || Image->Height < MinLogoHeight)
    {
        return ValidationError("logo", Printf("The logo must be at least 512x288 pixels (this one is %ux%u).", Image->Width, Image->Height));
    }
    return std::nullopt;
}

// Every field an add or edit may carry; on add, name, summary and logo are required.
FApiError CheckModFields(const FRequestBody& Body, bool bAdding)
{
    FApiError All = ValidationFailure();
    for (const char* Field : { "name", "summary" })
    {
        if ((bAdding || Body.Has(Field)) && TrimWhitespace(Body.Value(Field)).empty())
        {
            All.Fields[Field] = std::string("The ") + Field + " field is required.";
        }
    }
    MergeInto(All, CheckLength(Body, "name", 50));
    MergeInto(All, CheckLength(Body, "name_id", 80));
    MergeInto(All, CheckLength(Body, "summary", 250));
    MergeInto(All, CheckLength(Body, "description", 50000));
    MergeInto(All, CheckLength(Body, "metadata_blob", 50000));
    bool bIgnored = true;
    MergeInto(All, ReadFlag(Body, "visible", bIgnored));
    MergeInto(All, CheckLogo(Body.File("logo"), bAdding));
    return All;
}

void ApplyModFields(const FRequestBody& Body, int64 Now, FStoredMod& Mod)
{
    for (const auto& [Field, Member] :
         { std::pair{ "name", &FStoredMod::Name }, std::pair{ "summary", &FStoredMod::Summary },
           std::pair{ "description", &FStoredMod::Description }, std::pair{ "metadata_blob", &FStoredMod::MetadataBlob } })
    {
        if (Body.Has(Field))
        {
            Mod.*Member = Field == std::string("metadata_blob") ? Body.Value(Field) : TrimWhitespace(Body.Value(Field));
        }
    }
    ReadFlag(Body, "visible", Mod.bVisible);
    if (Body.HasArray("tags"))
    {
        Mod.Tags.clear();
        for (const std::string& Tag : Body.Values("tags"))
        {
            if (!TrimWhitespace(Tag).empty())
            {
                Mod.Tags.push_back({ TrimWhitespace(Tag), Now });
            }
        }
    }
    Mod.DateUpdated = Now;
}

// Moves a checked logo in, in place of the mod's old one.
bool AdoptLogo(FSandboxState& State, const FUploadedFile& Logo, FStoredMod& Mod)
{
    const std::string Blob = State.Blobs.Adopt(Logo.Path, "logo");
    if (Blob.empty())
    {
        return false;
    }
    State.Blobs.Remove(Mod.LogoBlob);
    Mod.LogoBlob = Blob;
    const std::string Filename = Paths::MakeValidFileName(Paths::GetCleanFilename(Logo.Filename));
    Mod.LogoFilename = Filename.empty() ? "logo.png" : Filename;
    return true;
}

std::optional<FApiError> ApplyNameId(FSandboxStore& Store, const FRequestBody& Body, FStoredMod& Mod)
{
    if (!Body.Has("name_id"))
    {
        if (Mod.NameId.empty())
        {
            Mod.NameId = Store.UniqueNameId(Mod.GameId, Mod.Name, Mod.Id);
        }
        return std::nullopt;
    }
    const std::string NameId = ToLower(TrimWhitespace(Body.Value("name_id")));
    if (NameId.empty() || Store.IsNameIdTaken(Mod.GameId, NameId, Mod.Id))
    {
        return ValidationError("name_id", "The name_id is empty or already taken by another mod.");
    }
    Mod.NameId = NameId;
    return std::nullopt;
}

FReply AddMod(FRouteContext& Context)
{
    if (std::optional<FApiError> Error = Context.CheckGame())
    {
        return FReply::Error(*Error);
    }
    if (const FApiError Invalid = CheckModFields(Context.Body, true); !Invalid.Fields.empty())
    {
        return FReply::Error(Invalid);
    }
    FSandboxState& State = Context.State;
    std::scoped_lock Lock(State.Mutex);
    FStoredMod Mod;
    Mod.Id = State.Store.NextModId;
    Mod.GameId = State.Options.GameId;
    Mod.SubmittedBy = Context.UserId;
    Mod.DateAdded = State.Now();
    ApplyModFields(Context.Body, Mod.DateAdded, Mod);
    if (std::optional<FApiError> Error = ApplyNameId(State.Store, Context.Body, Mod))
    {
        return FReply::Error(*Error);
    }
    if (!AdoptLogo(State, *Context.Body.File("logo"), Mod))
    {
        return FReply::Error(MakeError(500, ErrorRef::ServiceOutage, "The logo could not be stored."));
    }
    ++State.Store.NextModId;
    State.Store.Mods[Mod.Id] = Mod;
    State.SaveLocked();
    FReply Reply = FReply::Json(201, ModObject(Mod, State.Store, ViewOf(Context)));
    Reply.Headers.emplace_back("Location",
                               State.BaseUrl() + "/v1/games/" + std::to_string(Mod.GameId) + "/mods/" + std::to_string(Mod.Id));
    return Reply;
}

FReply EditMod(FRouteContext& Context)
{
    if (const FApiError Invalid = CheckModFields(Context.Body, false); !Invalid.Fields.empty())
    {
        return FReply::Error(Invalid);
    }
    FSandboxState& State = Context.State;
    std::scoped_lock Lock(State.Mutex);
    FStoredMod* Found = nullptr;
    if (std::optional<FApiError> Error = FindOwnedMod(Context, Found))
    {
        return FReply::Error(*Error);
    }
    FStoredMod Mod = *Found;
    ApplyModFields(Context.Body, State.Now(), Mod);
    if (std::optional<FApiError> Error = ApplyNameId(State.Store, Context.Body, Mod))
    {
        return FReply::Error(*Error);
    }
    if (const FUploadedFile* Logo = Context.Body.File("logo"); Logo && !AdoptLogo(State, *Logo, Mod))
    {
        return FReply::Error(MakeError(500, ErrorRef::ServiceOutage, "The logo could not be stored."));
    }
    *Found = Mod;
    State.SaveLocked();
    return FReply::Json(200, ModObject(Mod, State.Store, ViewOf(Context)));
}
}

void RegisterModEditRoutes(FSandboxRouter& Router)
{
    Router.Post(GameModsPath, EAccess::Token, EBodyKind::MultipartForm, AddMod);
    Router.Post(ModPath, EAccess::Token, EBodyKind::Form, EditMod);
}
}
