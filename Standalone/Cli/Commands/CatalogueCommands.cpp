#include "Cli/Commands/Commands.h"

#include "Common/StringUtil.h"
#include "Modio/ModioInterface.h"

#include <nlohmann/json.hpp>

#include <iomanip>
#include <map>
#include <ostream>

namespace Maptorn::Cli
{
namespace
{
constexpr int32 BrowsePageSize = 20;

const std::map<std::string, ESourceModQueryType>& SortNames()
{
    static const std::map<std::string, ESourceModQueryType> Names = {
        {"installed", ESourceModQueryType::Installed}, {"popular", ESourceModQueryType::Popular},
        {"subscribers", ESourceModQueryType::Subscribers}, {"newest", ESourceModQueryType::Newest},
        {"updated", ESourceModQueryType::LastUpdated}, {"rating", ESourceModQueryType::Rating},
        {"downloads", ESourceModQueryType::Downloads}, {"name", ESourceModQueryType::NameAscending},
        {"-name", ESourceModQueryType::NameDescending}};
    return Names;
}

std::string Clip(const std::string& Text, std::size_t Width)
{
    return Text.size() <= Width ? Text : Text.substr(0, Width - 1) + "~";
}

void PrintTable(std::ostream& Out, const FSourceModList& List)
{
    Out << std::left << std::setw(8) << "Id" << std::setw(28) << "Name" << std::setw(9) << "Type" << std::setw(14) << "Author"
        << std::setw(11) << "Size" << "Status\n";
    for (const FSourceModInfo& Mod : List.Mods)
    {
        Out << std::left << std::setw(8) << Mod.PluginName.substr(3) << std::setw(28) << Clip(Mod.Name, 27) << std::setw(9)
            << ModTypeWord(Mod.ModType) << std::setw(14) << Clip(Mod.Author, 13) << std::setw(11) << Mod.FileSize
            << InstallStateWord(Mod.InstallState) << "\n";
    }
    Out << Printf("%d Results - Page %d/%d", List.TotalResults, List.CurrentPage, List.TotalPages) << "\n";
}

void PrintJson(std::ostream& Out, const FSourceModList& List)
{
    nlohmann::json Mods = nlohmann::json::array();
    for (const FSourceModInfo& Mod : List.Mods)
    {
        Mods.push_back({{"id", Mod.PluginName.substr(3)}, {"plugin", Mod.PluginName}, {"name", Mod.Name}, {"summary", Mod.Summary},
            {"author", Mod.Author}, {"type", ModTypeWord(Mod.ModType)}, {"version", Mod.Version}, {"filesize", Mod.FileSize},
            {"windows", Mod.bWindows}, {"oculus", Mod.bOculus}, {"status", InstallStateWord(Mod.InstallState)}, {"profile_url", Mod.ProfileUrl}});
    }
    const nlohmann::json Page = {{"mods", Mods}, {"page", List.CurrentPage}, {"pages", List.TotalPages}, {"results", List.TotalResults}};
    Out << Page.dump(2) << "\n";
}
}

int RunBrowse(const FCommandContext& Context, const FBrowseRequest& Request)
{
    const auto Sort = SortNames().find(ToLower(Request.Sort));
    if (Sort == SortNames().end())
    {
        return Fail(Context, ExitBadInput, "Unknown sort \"" + Request.Sort + "\": use popular, subscribers, newest, updated, rating, downloads, name, -name or installed.");
    }
    if (Request.Page < 1)
    {
        return Fail(Context, ExitBadInput, "Pages count from 1.");
    }
    std::string Error;
    std::unique_ptr<FStandaloneHost> Host = FStandaloneHost::Create(Context, false, Error);
    if (!Host)
    {
        return Fail(Context, ExitNoEnvironment, Error);
    }
    if (!Host->RequireModioSettings(Error))
    {
        return Fail(Context, ExitNoEnvironment, Error);
    }
    FModioInterface Client(Host->Platform, MakeModuleConfig(Host->Settings));
    Client.SourceQuery.SortType = Sort->second;
    Client.SourceQuery.SearchText = Request.SearchText;
    Client.SourceQuery.PageOffset = (Request.Page - 1) * BrowsePageSize;
    Client.SourceQuery.PageLimit = BrowsePageSize;

    std::optional<bool> bSucceeded;
    Client.OnSourceModListUpdated.Add([&bSucceeded](bool bOk, const FSourceModList&) { bSucceeded = bOk; });
    Client.QuerySourceMods();
    Host->RunUntil([&] { return bSucceeded.has_value(); });
    if (!bSucceeded.value_or(false))
    {
        return Fail(Context, ExitFailed, "mod.io did not answer the catalogue query at " + Host->Settings.ModioBaseUrl.Value +
            "; check the URL, the game id and the API key, and your connection.");
    }
    if (Request.bJson)
    {
        PrintJson(Context.Out, Client.LastSourceModList);
    }
    else
    {
        PrintTable(Context.Out, Client.LastSourceModList);
    }
    return ExitSuccess;
}
}

namespace Maptorn::Cli
{
int RunMods(const FCommandContext& Context, bool bJson)
{
    std::string Error;
    std::unique_ptr<FStandaloneHost> Host = FStandaloneHost::Create(Context, false, Error);
    if (!Host || !Host->StartModioSession(Error))
    {
        return Fail(Context, ExitNoEnvironment, Error);
    }
    if (Host->Session->GetAuthTokenAsString().empty())
    {
        return Fail(Context, ExitFailed, "You are not logged in to mod.io on this machine; log in first.");
    }
    FModioInterface Client(Host->Platform, MakeModuleConfig(Host->Settings));
    bool bUpdated = false;
    Client.OnUploadListUpdated.Add([&bUpdated] { bUpdated = true; });
    Client.RefreshOwnMods();
    Host->RunUntil([&] { return !Client.bOwnModRefreshBusy; });
    if (!bUpdated)
    {
        return Fail(Context, ExitFailed, "mod.io did not answer the list of your mods at " + Host->Settings.ModioBaseUrl.Value + ".");
    }
    FSourceModList List;
    List.Mods = Client.OwnMods;
    List.TotalResults = static_cast<int32>(List.Mods.size());
    if (bJson)
    {
        PrintJson(Context.Out, List);
        return ExitSuccess;
    }
    PrintTable(Context.Out, List);
    Context.Out << "Only your mods whose UGC plug-in is in this project are listed: those are the ones you can upload from here.\n";
    return ExitSuccess;
}
}
