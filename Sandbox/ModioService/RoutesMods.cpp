// Reading mods: the game's catalogue, one mod, the token's user's own mods; and deleting one.

#include "ModioService/SandboxListQuery.h"
#include "ModioService/SandboxRoutes.h"
#include "ModioService/SandboxState.h"

#include <httplib.h>

namespace Maptorn::Sandbox
{
namespace
{
// The catalogue shows accepted, visible mods; with X-Modio-Platform only those live on it.
bool IsListedPublicly(const FStoredMod& Mod, const FRouteContext& Context)
{
    return Mod.GameId == Context.State.Options.GameId && Mod.Status == ModStatusAccepted && Mod.bVisible &&
           (!Context.bPlatformAsked || Mod.LiveModfiles.count(Context.Platform) > 0);
}

FReply PageOfMods(FRouteContext& Context, const FListQuery& Query, std::vector<const FStoredMod*> Mods)
{
    SortMods(Mods, Query);
    const FPageSlice Slice = SliceOf(Mods.size(), Query.Paging);
    const FObjectView View = ViewOf(Context);
    std::vector<Json::FJsonObject> Items;
    for (size_t Index = Slice.First; Index < Slice.First + Slice.Count; ++Index)
    {
        Items.push_back(ModObject(*Mods[Index], Context.State.Store, View));
    }
    return FReply::Json(200,
                        PageObject(std::move(Items), Query.Paging.Offset, Query.Paging.Limit, static_cast<int64>(Mods.size())));
}

FReply ListGameMods(FRouteContext& Context)
{
    if (std::optional<FApiError> Error = Context.CheckGame())
    {
        return FReply::Error(*Error);
    }
    FListQuery Query;
    if (std::optional<FApiError> Error = ParseListQuery(Context.Request.params, Query))
    {
        return FReply::Error(*Error);
    }
    std::scoped_lock Lock(Context.State.Mutex);
    std::vector<const FStoredMod*> Mods;
    for (const auto& [Id, Mod] : Context.State.Store.Mods)
    {
        if (IsListedPublicly(Mod, Context) && ModMatches(Mod, Query))
        {
            Mods.push_back(&Mod);
        }
    }
    return PageOfMods(Context, Query, std::move(Mods));
}

// All the user's mods, hidden and deleted ones included; filter `game_id` and `status-not=3` as wanted.
FReply ListMyMods(FRouteContext& Context)
{
    FListQuery Query;
    if (std::optional<FApiError> Error = ParseListQuery(Context.Request.params, Query))
    {
        return FReply::Error(*Error);
    }
    std::scoped_lock Lock(Context.State.Mutex);
    std::vector<const FStoredMod*> Mods;
    for (const auto& [Id, Mod] : Context.State.Store.Mods)
    {
        if (Mod.SubmittedBy == Context.UserId && ModMatches(Mod, Query))
        {
            Mods.push_back(&Mod);
        }
    }
    return PageOfMods(Context, Query, std::move(Mods));
}

FReply GetMod(FRouteContext& Context)
{
    std::scoped_lock Lock(Context.State.Mutex);
    FStoredMod* Mod = nullptr;
    if (std::optional<FApiError> Error = FindMod(Context, Mod))
    {
        return FReply::Error(*Error);
    }
    if (!Mod->bVisible && Mod->SubmittedBy != Context.UserId)
    {
        return FReply::Error(MakeError(404, ErrorRef::ModNotFound, "The requested mod could not be found."));
    }
    return FReply::Json(200, ModObject(*Mod, Context.State.Store, ViewOf(Context)));
}

FReply DeleteMod(FRouteContext& Context)
{
    std::scoped_lock Lock(Context.State.Mutex);
    FStoredMod* Mod = nullptr;
    if (std::optional<FApiError> Error = FindOwnedMod(Context, Mod))
    {
        return FReply::Error(*Error);
    }
    Mod->Status = ModStatusDeleted;
    Mod->DateUpdated = Context.State.Now();
    Context.State.SaveLocked();
    return FReply::NoContent();
}
}

void RegisterModRoutes(FSandboxRouter& Router)
{
    Router.Get(GameModsPath, EAccess::KeyOrToken, ListGameMods);
    Router.Get("/v1/me/mods", EAccess::Token, ListMyMods);
    Router.Get(ModPath, EAccess::KeyOrToken, GetMod);
    Router.Delete(ModPath, EAccess::Token, DeleteMod);
}
}
