#include "Cli/Commands/Commands.h"

#include "Common/Paths.h"
#include "Content/ModDefinitions.h"
#include "Content/SVRInterface.h"
#include "Modio/ModioInterface.h"

#include <cctype>
#include <optional>
#include <ostream>

namespace Maptorn::Cli
{
namespace
{
bool IsPlainId(const std::string& Id, bool bDigitsOnly)
{
    if (Id.empty() || Id.size() > 64)
    {
        return false;
    }
    for (unsigned char C : Id)
    {
        const bool bAllowed = bDigitsOnly ? std::isdigit(C) != 0 : (std::isalnum(C) != 0 || C == '_' || C == '-');
        if (!bAllowed)
        {
            return false;
        }
    }
    return true;
}

// Why a map given on the command line is not an object path (empty clears the link), naming Example.
std::optional<std::string> RefuseMapPaths(const std::optional<std::string>& Map, const std::optional<std::string>& QuestMap, const std::string& Example)
{
    for (const std::optional<std::string>* Path : {&Map, &QuestMap})
    {
        if (*Path && !Path->value().empty() && (Path->value().front() != '/' || Path->value().find('.') == std::string::npos))
        {
            return "\"" + Path->value() + "\" is not an object path; write it like " + Example + ".";
        }
    }
    return std::nullopt;
}
}

int RunMapCreate(const FCommandContext& Context, const std::string& MapId, const std::string& MapName)
{
    if (!IsPlainId(MapId, false))
    {
        return Fail(Context, ExitBadInput,
            "The map id \"" + MapId + "\" names a folder (SVR_<id>): use 1-64 letters, digits, '-' or '_'.");
    }
    std::string Error;
    std::unique_ptr<FStandaloneHost> Host = FStandaloneHost::Create(Context, false, Error);
    if (!Host)
    {
        return Fail(Context, ExitNoEnvironment, Error);
    }

    FSVRInterface SVR(Host->Platform);
    SVR.MapName = SanitizeMapName(MapName);
    if (SVR.MapName != MapName)
    {
        Context.Out << "Map name stored as \"" << SVR.MapName << "\"\n";
    }
    if (!SVR.CreateMapDefinition(MapId))
    {
        return Fail(Context, ExitFailed, "No map definition was created; the project is unchanged.");
    }
    bool bAllSaved = false;
    const std::vector<std::string> Written = Host->Definitions.SaveDirtyPackages(bAllSaved);
    if (!bAllSaved || Written.empty())
    {
        return Fail(Context, ExitFailed, "The map definition could not be saved; check that the project's Content folder is writable.");
    }
    Context.Out << "Created map definition SVR_" << MapId << " (\"" << SVR.MapName << "\")\n";
    Context.Out << "  definition: " << Written.front() << "\n";
    return ExitSuccess;
}

int RunMapSet(const FCommandContext& Context, const FMapSetRequest& Request)
{
    if (!Request.Map && !Request.QuestMap)
    {
        return Fail(Context, ExitBadInput, "Say what to set: --map and/or --quest-map.");
    }
    if (const std::optional<std::string> Refusal = RefuseMapPaths(Request.Map, Request.QuestMap, "/Game/CustomMaps/SVR_Harbour/Harbour.Harbour"))
    {
        return Fail(Context, ExitBadInput, *Refusal);
    }
    std::string Error;
    std::unique_ptr<FStandaloneHost> Host = FStandaloneHost::Create(Context, false, Error);
    if (!Host)
    {
        return Fail(Context, ExitNoEnvironment, Error);
    }
    const std::shared_ptr<FKelvorDefinition> Definition = FSVRInterface(Host->Platform).GetMapDefinition();
    if (!Definition)
    {
        return Fail(Context, ExitFailed, "The project has no map definition yet: create one with `maptorn map create <id> --name <name>`.");
    }
    Definition->Map = Request.Map.value_or(Definition->Map);
    Definition->VeskoMap = Request.QuestMap.value_or(Definition->VeskoMap);
    if (!Host->Definitions.SavePackage(*Definition))
    {
        return Fail(Context, ExitFailed, "The definition could not be saved; check that the project's Content folder is writable.");
    }
    Context.Out << "Definition of " << Definition->Label << ":\n  map:        " << Definition->Map << "\n  quest map:  " << Definition->VeskoMap << "\n";
    return ExitSuccess;
}

int RunPluginCreate(const FCommandContext& Context, const std::string& ModId, const std::string& TypeWord)
{
    if (!IsPlainId(ModId, true))
    {
        return Fail(Context, ExitBadInput, "The mod id must be the number mod.io gave the mod, e.g. 4711 (got \"" + ModId + "\").");
    }
    const std::optional<EModType> Type = ParseModType(TypeWord);
    if (!Type)
    {
        return Fail(Context, ExitBadInput, "Unknown content type \"" + TypeWord + "\": use map, mod or gamemode.");
    }
    std::string Error;
    std::unique_ptr<FStandaloneHost> Host = FStandaloneHost::Create(Context, true, Error);
    if (!Host)
    {
        return Fail(Context, ExitNoEnvironment, Error);
    }

    FModioInterface Client(Host->Platform, MakeModuleConfig(Host->Settings));
    const std::string PluginName = MakeUGCPluginName(ModId);
    if (!CreateUGCPlugin(Host->Platform, Client, ModId, *Type))
    {
        if (Client.CreatedMods.count(ModId) != 0)
        {
            return Fail(Context, ExitFailed, "The plug-in " + PluginName + " was created but its definition could not be saved; "
                "check that " + Client.CreatedMods.at(ModId).ContentDir + " is writable.");
        }
        return Fail(Context, ExitFailed, "The plug-in " + PluginName + " was not created; the project is unchanged.");
    }
    const FPluginInfo& Plugin = Client.CreatedMods.at(ModId);
    Context.Out << "Created plug-in " << Plugin.Name << " for a " << ModTypeWord(*Type) << "\n";
    Context.Out << "  folder:     " << Plugin.BaseDir << "\n";
    Context.Out << "  definition: " << Host->Definitions.PackageFilePath("/" + Plugin.Name + "/definition") << "\n";
    return ExitSuccess;
}
}

namespace Maptorn::Cli
{
int RunPluginSet(const FCommandContext& Context, const FPluginSetRequest& Request)
{
    if (!IsPlainId(Request.ModId, true))
    {
        return Fail(Context, ExitBadInput, "The mod id must be the number mod.io gave the mod, e.g. 4711 (got \"" + Request.ModId + "\").");
    }
    if (!Request.Map && !Request.QuestMap && !Request.GameLogic)
    {
        return Fail(Context, ExitBadInput, "Say what to set: --map, --quest-map and/or --game-logic.");
    }
    if (const std::optional<std::string> Refusal = RefuseMapPaths(Request.Map, Request.QuestMap, "/UGC" + Request.ModId + "/Maps/Arena.Arena"))
    {
        return Fail(Context, ExitBadInput, *Refusal);
    }
    std::string Error;
    std::unique_ptr<FStandaloneHost> Host = FStandaloneHost::Create(Context, false, Error);
    if (!Host)
    {
        return Fail(Context, ExitNoEnvironment, Error);
    }
    std::shared_ptr<FKelvorDefinition> Definition = LoadAnyModDefinition(Host->Platform, Request.ModId);
    if (!Definition)
    {
        return Fail(Context, ExitFailed, "The plug-in " + MakeUGCPluginName(Request.ModId) + " has no definition; create it with `maptorn plugin create`.");
    }
    Definition->Map = Request.Map.value_or(Definition->Map);
    Definition->VeskoMap = Request.QuestMap.value_or(Definition->VeskoMap);
    Definition->GameLogicClass = Request.GameLogic.value_or(Definition->GameLogicClass);
    if (!Host->Definitions.SavePackage(*Definition))
    {
        return Fail(Context, ExitFailed, "The definition could not be saved; check that the plug-in's Content folder is writable.");
    }
    Context.Out << "Definition of " << MakeUGCPluginName(Request.ModId) << " (" << DefinitionClassName(Definition->Class) << "):\n"
                << "  map:        " << Definition->Map << "\n  quest map:  " << Definition->VeskoMap << "\n  game logic: " << Definition->GameLogicClass << "\n";
    return ExitSuccess;
}
}
