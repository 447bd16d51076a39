#include "Cli/Commands/Commands.h"
#include "Cli/WorkshopRun.h"

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
    std::unique_ptr<FWorkshopRun> Run = FWorkshopRun::Start(Context, false, Error);
    if (!Run)
    {
        return Fail(Context, ExitNoEnvironment, Error);
    }
    FModioInterface& Client = Run->Client();

    // The browser's search box, sort combo and page, then its refresh button.
    Client.SourceQuery.SortType = Sort->second;
    Client.SourceQuery.SearchText = Request.SearchText;
    Client.SourceQuery.PageOffset = (Request.Page - 1) * FWorkshopController::SourceModPageSize;
    Client.SourceQuery.PageLimit = FWorkshopController::SourceModPageSize;
    std::optional<bool> bSucceeded;
    Client.OnSourceModListUpdated.Add([&bSucceeded](bool bOk, const FSourceModList&) { bSucceeded = bOk; });
    Run->Controller->OnRefreshModPageClicked();
    Run->TickUntil([&] { return bSucceeded.has_value(); });
    if (!bSucceeded.value_or(false))
    {
        return Fail(Context, ExitFailed, "The catalogue query at " + Run->Host->Settings.ModioBaseUrl.Value + " failed: " +
            Client.LastSourceQueryError + ". Check the URL, the game id and the API key, and your connection.");
    }
    FSourceModList Shown = Client.LastSourceModList;
    Shown.Mods.clear();
    for (const FWorkshopSourcePluginEntry& Row : Run->Controller->GetSourceModRows())
    {
        Shown.Mods.push_back(Row.GetModInfo());
    }
    if (Request.bJson)
    {
        PrintJson(Context.Out, Shown);
    }
    else
    {
        PrintTable(Context.Out, Shown);
    }
    return ExitSuccess;
}
}

namespace Maptorn::Cli
{
int RunMods(const FCommandContext& Context, bool bJson)
{
    std::string Error;
    std::unique_ptr<FWorkshopRun> Run = FWorkshopRun::Start(Context, false, Error);
    if (!Run)
    {
        return Fail(Context, ExitNoEnvironment, Error);
    }
    if (!Run->Controller->IsAuthenticated())
    {
        return Fail(Context, ExitFailed, "You are not logged in to mod.io on this machine; log in first with `maptorn login`.");
    }
    // The start refreshed the user's own mods, as the editor does right after the login check.
    const FModioInterface& Client = Run->Client();
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
