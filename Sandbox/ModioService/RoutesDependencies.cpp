// A mod's dependencies: listed (recursively when asked) and added by the mod's owner.

#include "Common/StringUtil.h"
#include "ModioService/SandboxListQuery.h"
#include "ModioService/SandboxRoutes.h"
#include "ModioService/SandboxState.h"

#include <httplib.h>

#include <set>

namespace Maptorn::Sandbox
{
namespace
{
constexpr size_t MaxDependenciesPerRequest = 5;

Json::FJsonObject DependencyObject(const FStoredMod& Mod, int64 Depth, const FSandboxStore& Store, const FObjectView& View)
{
    Json::FJsonObject Object;
    Object["mod_id"] = Mod.Id;
    Object["name"] = Mod.Name;
    Object["name_id"] = Mod.NameId;
    Object["date_added"] = Mod.DateAdded;
    Object["date_updated"] = Mod.DateUpdated;
    Object["dependency_depth"] = Depth;
    Object["logo"] = LogoObject(Mod, View);
    const FStoredModfile* Modfile = Store.ModfileFor(Mod, View.Platform, View.bPlatformAsked);
    Object["modfile"] = Modfile ? ModfileObject(*Modfile, View) : Json::FJsonObject(nullptr);
    return Object;
}

// Breadth first: direct dependencies at depth 0, theirs at 1, each mod once.
std::vector<std::pair<const FStoredMod*, int64>> DependenciesOf(FSandboxStore& Store, const FStoredMod& Root, bool bRecursive)
{
    std::vector<std::pair<const FStoredMod*, int64>> Found;
    std::set<int64> Seen{ Root.Id };
    std::vector<std::pair<int64, int64>> Queue;
    for (const int64 Id : Root.Dependencies)
    {
        Queue.emplace_back(Id, 0);
    }
    for (size_t Index = 0; Index < Queue.size(); ++Index)
    {
        const auto [Id, Depth] = Queue[Index];
        const FStoredMod* Mod = Store.FindMod(Id);
        if (!Mod || !Seen.insert(Id).second)
        {
            continue;
        }
        Found.emplace_back(Mod, Depth);
        for (const int64 Next : bRecursive ? Mod->Dependencies : std::vector<int64>{})
        {
            Queue.emplace_back(Next, Depth + 1);
        }
    }
    return Found;
}

FReply ListDependencies(FRouteContext& Context)
{
    FPaging Paging;
    if (std::optional<FApiError> Error = ParsePaging(Context.Request.params, Paging))
    {
        return FReply::Error(*Error);
    }
    const std::string Recursive = ToLower(Context.Query("recursive"));
    std::scoped_lock Lock(Context.State.Mutex);
    FStoredMod* Mod = nullptr;
    if (std::optional<FApiError> Error = FindMod(Context, Mod))
    {
        return FReply::Error(*Error);
    }
    const auto Dependencies = DependenciesOf(Context.State.Store, *Mod, Recursive == "true" || Recursive == "1");
    const FPageSlice Slice = SliceOf(Dependencies.size(), Paging);
    const FObjectView View = ViewOf(Context);
    std::vector<Json::FJsonObject> Items;
    for (size_t Index = Slice.First; Index < Slice.First + Slice.Count; ++Index)
    {
        Items.push_back(DependencyObject(*Dependencies[Index].first, Dependencies[Index].second, Context.State.Store, View));
    }
    return FReply::Json(200, PageObject(std::move(Items), Paging.Offset, Paging.Limit, static_cast<int64>(Dependencies.size())));
}

std::optional<FApiError> ReadDependencyIds(FRouteContext& Context, const FStoredMod& Mod, std::vector<int64>& OutIds)
{
    const std::vector<std::string> Values = Context.Body.Values("dependencies");
    if (Values.empty() || Values.size() > MaxDependenciesPerRequest)
    {
        return ValidationError("dependencies", "Send from 1 to 5 dependencies[] at a time.");
    }
    for (const std::string& Value : Values)
    {
        const std::string Text = TrimWhitespace(Value);
        const bool bNumber = !Text.empty() && std::all_of(Text.begin(), Text.end(),
                                                          [](char C) { return std::isdigit(static_cast<unsigned char>(C)); });
        const FStoredMod* Other = bNumber ? Context.State.Store.FindMod(std::stoll(Text)) : nullptr;
        if (!Other || Other->Id == Mod.Id || Other->GameId != Mod.GameId || Other->Status == ModStatusDeleted)
        {
            return ValidationError("dependencies", "The dependency " + Text + " is not another mod of this game.");
        }
        OutIds.push_back(Other->Id);
    }
    return std::nullopt;
}

FReply AddDependencies(FRouteContext& Context)
{
    std::scoped_lock Lock(Context.State.Mutex);
    FStoredMod* Mod = nullptr;
    if (std::optional<FApiError> Error = FindOwnedMod(Context, Mod))
    {
        return FReply::Error(*Error);
    }
    std::vector<int64> Ids;
    if (std::optional<FApiError> Error = ReadDependencyIds(Context, *Mod, Ids))
    {
        return FReply::Error(*Error);
    }
    for (const int64 Id : Ids)
    {
        if (std::find(Mod->Dependencies.begin(), Mod->Dependencies.end(), Id) == Mod->Dependencies.end())
        {
            Mod->Dependencies.push_back(Id);
        }
    }
    Mod->DateUpdated = Context.State.Now();
    Context.State.SaveLocked();
    Json::FJsonObject Answer;
    Answer["code"] = 201;
    Answer["message"] = "You have successfully added the dependencies to the specified mod.";
    return FReply::Json(201, Answer);
}
}

void RegisterDependencyRoutes(FSandboxRouter& Router)
{
    Router.Get(ModPath + "/dependencies", EAccess::KeyOrToken, ListDependencies);
    Router.Post(ModPath + "/dependencies", EAccess::Token, EBodyKind::Form, AddDependencies);
}
}
