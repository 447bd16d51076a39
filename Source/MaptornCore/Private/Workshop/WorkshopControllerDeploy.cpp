// The Steam Workshop side of the window: the project map's name, the change note, the deploy
// platforms, and the stage and deploy tasks that run on a worker while the module is busy.
#include "Workshop/WorkshopController.h"

#include "Build/Cooker.h"
#include "Build/WorkshopDeploy.h"
#include "Common/StringUtil.h"
#include "Module/MaptornModule.h"
#include "WorkshopSupport.h"

namespace Maptorn
{
namespace
{
void SetDeployPlatform(bool FMaptornModule::*Choice, ECheckBoxState State, const char* What)
{
    if (FMaptornModule* Module = WorkshopSupport::FindModule())
    {
        const bool bChecked = State == ECheckBoxState::Checked;
        Module->*Choice = bChecked;
        WorkshopSupport::LogWindow(ELogVerbosity::Log, Printf("%s %s", bChecked ? "Checked" : "Unchecked", What));
    }
}

// The worker side of the Steam stage: cooks the project map for Windows, the only client the
// Steam game runs. Every exit clears bBusy.
void RunSteamStage(FMaptornModule& Module)
{
    FMaptornPlatform& Platform = Module.GetPlatform();
    const std::shared_ptr<FKelvorDefinition> Definition = Module.SVR ? Module.SVR->GetMapDefinition() : nullptr;
    const std::string MapUrl = Definition && !Definition->Map.empty() ? GetLongPackageName(Definition->Map) : std::string();
    if (MapUrl.empty())
    {
        Platform.Log.Log(LogCategory::MaptornLog, ELogVerbosity::Error, "Please specify a map in the Definition file!");
    }
    else
    {
        FCooker Cooker(Platform);
        Cooker.WriteBuildMarker(true);
        if (!Cooker.CookMap(MapUrl, true))
        {
            Platform.Log.Log(LogCategory::MaptornLog, ELogVerbosity::Error, "Cooked content is needed for staging!");
        }
    }
    Module.bBusy = false;
}
}

void FWorkshopController::OnMapNameTextChanged(const std::string& Text)
{
    FMaptornModule* Module = WorkshopSupport::FindModule();
    if (Module && Module->SVR)
    {
        Module->SVR->MapName = SanitizeMapName(Text);
    }
}

void FWorkshopController::OnNotesTextChanged(const std::string& Text)
{
    // The note box is only shown with a Steam deploy object; without one there is nowhere to keep it.
    FMaptornModule* Module = WorkshopSupport::FindModule();
    if (Module && Module->SteamUGC)
    {
        Module->SteamUGC->ChangeNote = Text;
    }
}

void FWorkshopController::OnWindowsBuildPlatformsChanged(ECheckBoxState State)
{
    SetDeployPlatform(&FMaptornModule::bWindowsPlatform, State, "windows build");
}

void FWorkshopController::OnAndroidBuildPlatformsChanged(ECheckBoxState State)
{
    SetDeployPlatform(&FMaptornModule::bAndroidPlatform, State, "android build");
}

bool FWorkshopController::StageButtonClicked()
{
    FMaptornModule* Module = WorkshopSupport::FindModule();
    if (!Module)
    {
        return true;
    }
    if (Module->bBusy)
    {
        WorkshopSupport::LogWindow(ELogVerbosity::Error, "Busy! can't stage at this time");
        return true;
    }
    if (Module->InstallDir.empty())
    {
        WorkshopSupport::LogWindow(ELogVerbosity::Error, "Kelvor installation not found, can't stage");
        return true;
    }
    if (!Module->SteamUGC)
    {
        WorkshopSupport::LogWindow(ELogVerbosity::Error, "Cannot stage Android only mods, must have a valid UGC/have steam running to stage");
        return true;
    }
    Module->bBusy = true;
    Module->GetPlatform().Tasks.AsyncTask(ENamedThreads::AnyBackgroundThreadNormalTask, [Module] { RunSteamStage(*Module); });
    return true;
}

bool FWorkshopController::SubmitVeskoClicked()
{
    FMaptornModule* Module = WorkshopSupport::FindModule();
    if (!Module || (!Module->SVR && !Module->SteamUGC))
    {
        return true;
    }
    FMaptornPlatform& Platform = Module->GetPlatform();
    if (!Module->SVR)
    {
        Platform.Dialogs.MessageBox(EAppMsgType::Ok, "You can't deploy Steam UGC as server maps!", "Kelvor Build");
        return true;
    }
    if (!Module->SVR->GetMapDefinition())
    {
        static constexpr const char* NoDefinition = "You need to create a definition before you can deploy!";
        Platform.Dialogs.MessageBox(EAppMsgType::Ok, NoDefinition, "Kelvor Build");
        WorkshopSupport::LogWindow(ELogVerbosity::Error, NoDefinition);
        return true;
    }
    WorkshopSupport::LogWindow(ELogVerbosity::Log, "Deploy Platform Builds");
    if (Module->bBusy)
    {
        WorkshopSupport::LogWindow(ELogVerbosity::Error, "Busy! can't deploy at this time");
        return true;
    }
    Module->bBusy = true;
    // The deploy clears bBusy on every exit.
    Platform.Tasks.AsyncTask(ENamedThreads::AnyBackgroundThreadNormalTask, [Module] { RunWorkshopDeploy(*Module); });
    return true;
}
}
