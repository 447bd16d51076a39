// The Steam Workshop side of the window: the project map's name and its creation, the change note,
// the deploy platforms, and the stage and deploy tasks that run on a worker while the module is busy.
#include "Workshop/WorkshopController.h"

#include "Build/SteamStage.h"
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

// A new project map's id is its name: the folder (SVR_<id>) then reads as the map it holds. The
// kept name is already a valid file name without blanks or dots; these are the characters a
// package path refuses besides.
std::string MakeMapId(const std::string& MapName)
{
    std::string Id = MapName;
    for (char& C : Id)
    {
        if (C == '\'' || C == ',' || C == '!' || C == '~' || C == '\t' || C == '\r' || C == '\n')
        {
            C = '_';
        }
    }
    return Id;
}

// The worker gets its own copy: the window reloads the definition every frame on the game thread.
std::shared_ptr<const FKelvorDefinition> WorkerCopy(const FKelvorDefinition& Definition)
{
    return std::make_shared<const FKelvorDefinition>(Definition);
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

bool FWorkshopController::CreateMapDefinitionClicked()
{
    FMaptornModule* Module = WorkshopSupport::FindModule();
    if (!Module || !Module->SVR || Module->bBusy)
    {
        return true;
    }
    FSVRInterface& SVR = *Module->SVR;
    if (!SVR.CreateMapDefinition(MakeMapId(SVR.MapName)))
    {
        return true;
    }
    // Saved at once, as a new UGC plug-in's definition is: the page's next steps read it from the project.
    const std::shared_ptr<FKelvorDefinition> Definition = SVR.GetMapDefinition();
    if (!Definition || !Module->GetPlatform().Definitions.SavePackage(*Definition))
    {
        WorkshopSupport::LogWindow(ELogVerbosity::Error, "Cannot save the Definition file, check your folder permissions");
    }
    return true;
}

void FWorkshopController::OnNotesTextChanged(const std::string& Text)
{
    // The note box is only enabled with a Steam deploy object; without one there is nowhere to keep it.
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
    const std::shared_ptr<FKelvorDefinition> Definition = Module->SVR ? Module->SVR->GetMapDefinition() : nullptr;
    std::shared_ptr<const FKelvorDefinition> Copy = Definition ? WorkerCopy(*Definition) : nullptr;
    Module->bBusy = true;
    Module->GetPlatform().Tasks.AsyncTask(ENamedThreads::AnyBackgroundThreadNormalTask, [Module, Copy] { RunSteamStage(*Module, Copy); });
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
    const std::shared_ptr<FKelvorDefinition> Definition = Module->SVR->GetMapDefinition();
    if (!Definition)
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
    std::shared_ptr<const FKelvorDefinition> Copy = WorkerCopy(*Definition);
    Module->bBusy = true;
    // The deploy clears bBusy on every exit.
    Platform.Tasks.AsyncTask(ENamedThreads::AnyBackgroundThreadNormalTask, [Module, Copy] { RunWorkshopDeploy(*Module, Copy); });
    return true;
}
}
