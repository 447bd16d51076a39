// The Steam Workshop page's getters: the project map, the maps its definition links, the deploy
// platforms and which of its buttons can act now. None changes state.
#include "Workshop/WorkshopController.h"

#include "Common/StringUtil.h"
#include "Module/MaptornModule.h"
#include "WorkshopSupport.h"

namespace Maptorn
{
namespace
{
// Only a project whose map folder was found or made can hold a definition: no lookup without one.
std::shared_ptr<FKelvorDefinition> FindProjectMap(const FMaptornModule* Module)
{
    return Module && Module->SVR && !Module->SVR->Id.empty() ? Module->SVR->GetMapDefinition() : nullptr;
}

std::string LinkedMapText(const char* PlatformName, const std::string FKelvorDefinition::*Map)
{
    const std::shared_ptr<FKelvorDefinition> Definition = FindProjectMap(WorkshopSupport::FindModule());
    if (!Definition)
    {
        return {};
    }
    const std::string& Path = (*Definition).*Map;
    return Path.empty() ? Printf("%s map: not linked in the definition", PlatformName) : Printf("%s map: %s", PlatformName, Path.c_str());
}
}

std::string FWorkshopController::GetMapNameBoxText() const
{
    const FMaptornModule* Module = WorkshopSupport::FindModule();
    return Module && Module->SVR ? Module->SVR->MapName : std::string();
}

std::string FWorkshopController::GetNotesBoxText() const
{
    const FMaptornModule* Module = WorkshopSupport::FindModule();
    return Module && Module->SteamUGC ? Module->SteamUGC->ChangeNote : std::string();
}

std::string FWorkshopController::GetProjectMapText() const
{
    const std::shared_ptr<FKelvorDefinition> Definition = FindProjectMap(WorkshopSupport::FindModule());
    if (!Definition)
    {
        return "This project has no map definition yet, name your map and create one";
    }
    return Printf("Map definition: %s (%s)", Definition->Label.c_str(), Definition->DisplayName.c_str());
}

std::string FWorkshopController::GetWindowsMapText() const
{
    return LinkedMapText("Windows", &FKelvorDefinition::Map);
}

std::string FWorkshopController::GetAndroidMapText() const
{
    return LinkedMapText("Android", &FKelvorDefinition::VeskoMap);
}

ECheckBoxState FWorkshopController::IsWindowsDeployPlatform() const
{
    const FMaptornModule* Module = WorkshopSupport::FindModule();
    return Module && Module->bWindowsPlatform ? ECheckBoxState::Checked : ECheckBoxState::Unchecked;
}

ECheckBoxState FWorkshopController::IsAndroidDeployPlatform() const
{
    const FMaptornModule* Module = WorkshopSupport::FindModule();
    return Module && Module->bAndroidPlatform ? ECheckBoxState::Checked : ECheckBoxState::Unchecked;
}

bool FWorkshopController::CanCreateMapDefinition() const
{
    const FMaptornModule* Module = WorkshopSupport::FindModule();
    return Module && Module->SVR && !Module->bBusy && !FindProjectMap(Module);
}

bool FWorkshopController::CanEditNotes() const
{
    const FMaptornModule* Module = WorkshopSupport::FindModule();
    return Module && Module->SteamUGC;
}

bool FWorkshopController::CanDeploy() const
{
    const FMaptornModule* Module = WorkshopSupport::FindModule();
    return Module && !Module->bBusy && FindProjectMap(Module);
}

bool FWorkshopController::CanStage() const
{
    const FMaptornModule* Module = WorkshopSupport::FindModule();
    return CanDeploy() && !Module->InstallDir.empty() && Module->SteamUGC;
}
}
