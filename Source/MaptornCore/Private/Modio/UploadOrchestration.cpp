// Uploading an own mod: the checks, the version stamp, packaging (or staging) every chosen
// platform, then one mod file per platform, one after the other with a short pause, driven by
// the session's mod-management events and the module's tick.

#include "Build/Packager.h"
#include "Common/FileHelper.h"
#include "Common/Paths.h"
#include "Common/StringUtil.h"
#include "Content/ModDefinitions.h"
#include "Modio/ModioInterface.h"
#include "Module/MaptornModule.h"

#include <algorithm>
#include <cmath>

namespace Maptorn
{
namespace
{
constexpr uint8 SourcePlatform = static_cast<uint8>(EModioModfilePlatform::Source);

struct FDefinitionProblem
{
    const char* MessageBoxText = nullptr;
    const char* LogText = nullptr; // null: only the message box
};

// What stops a definition of this kind from being uploaded for the chosen builds.
std::optional<FDefinitionProblem> FindDefinitionProblem(EModType Type, const FKelvorDefinition* Definition, bool bWindows, bool bQuest)
{
    switch (Type)
    {
    case EModType::Map:
        if (!Definition)
        {
            return FDefinitionProblem{"ERROR: cannot find map definition file", "Failed to find map definition file"};
        }
        if (bQuest && Definition->VeskoMap.empty())
        {
            return FDefinitionProblem{"ERROR: Definition did not contain a quest map to upload"};
        }
        if (bWindows && Definition->Map.empty())
        {
            return FDefinitionProblem{"ERROR: Definition did not contain a map to upload"};
        }
        return std::nullopt;
    case EModType::Mod:
        if (!Definition)
        {
            return FDefinitionProblem{"ERROR: cannot find mod definition file", "Failed to find mod definition file"};
        }
        return std::nullopt;
    case EModType::GameMode:
        if (!Definition)
        {
            return FDefinitionProblem{"ERROR: cannot find gamemode definition file", "Failed to find gamemode definition file"};
        }
        if (Definition->GameLogicClass.empty())
        {
            return FDefinitionProblem{"ERROR: GameMode definition did not contain a gamelogic to upload"};
        }
        return std::nullopt;
    }
    return std::nullopt;
}
}

const FSourceModInfo* FModioInterface::FindOwnMod(const std::string& ModId) const
{
    const std::string PluginName = MakeUGCPluginName(ModId);
    const auto Found = std::find_if(OwnMods.begin(), OwnMods.end(),
        [&PluginName](const FSourceModInfo& Mod) { return EqualsIgnoreCase(Mod.PluginName, PluginName); });
    return Found == OwnMods.end() ? nullptr : &*Found;
}

std::atomic<bool>& FModioInterface::BuildBusyFlag()
{
    // Packaging shares the module's flag, so the window shows it like any build.
    return FMaptornModule::IsAvailable() ? FMaptornModule::Get().bBusy : bPackagingBusy;
}

void FModioInterface::UploadMod(const std::string& ModId)
{
    if (bIsModioBusy)
    {
        LogTemp("Cannot upload mod, currently busy", ELogVerbosity::Warning);
        return;
    }
    const FSourceModInfo* Row = FindOwnMod(ModId);
    if (!Row)
    {
        const std::string Message = Printf("Cannot find mod %s", ModId.c_str());
        LogTemp(Message, ELogVerbosity::Error);
        FinishUploadWork(ModId, false, Message);
        return;
    }
    const auto Owned = OwnModVersions.find(ModId);
    if (Owned == OwnModVersions.end())
    {
        LogTemp("Cannot upload a mod unless you own it", ELogVerbosity::Error);
        FinishUploadWork(ModId, false, "Cannot upload a mod unless you own it");
        return;
    }
    const int32 NewVersion = Owned->second + 1;

    std::shared_ptr<FKelvorDefinition> Definition = LoadModDefinition(Platform, ModId, Row->ModType);
    if (const std::optional<FDefinitionProblem> Problem = FindDefinitionProblem(Row->ModType, Definition.get(), bBuildWindows, bBuildAndroid))
    {
        Platform.Dialogs.MessageBox(EAppMsgType::Ok, Problem->MessageBoxText, "Upload");
        if (Problem->LogText)
        {
            LogTemp(Problem->LogText, ELogVerbosity::Error);
        }
        FinishUploadWork(ModId, false, Problem->MessageBoxText);
        return;
    }
    // The stamp stays even when the upload fails later: the next try counts on from it.
    Definition->Version = NewVersion;
    Platform.Definitions.SavePackage(*Definition);
    CurrentDefinition = Definition;

    OwnModVersions[ModId] = NewVersion;
    UploadVersion = NewVersion;
    UpdateMetadata(ModId);

    bIsModioBusy = true;
    bIsUploading = true;
    UploadModId = ModId;
    UploadProgress = 0.0f;
    PendingPlatforms.clear();
    if (bShareSource && !bStageOnly)
    {
        if (const std::optional<FPluginInfo> Plugin = Platform.Engine.FindPlugin(MakeUGCPluginName(ModId)))
        {
            PendingPlatforms.emplace_back(SourcePlatform, Plugin->BaseDir);
        }
    }

    std::atomic<bool>& BuildBusy = BuildBusyFlag();
    BuildBusy = true;
    std::weak_ptr<bool> Alive = AliveToken;
    StartPackagingTask(Platform, *this, BuildBusy,
        [this, Alive] {
            if (!Alive.expired())
            {
                OnPackagingComplete();
            }
        },
        [this, Alive](const std::string& Message) {
            if (!Alive.expired())
            {
                // The packaging step has shown its message; nothing is uploaded.
                bIsModioBusy = false;
                bIsUploading = false;
                FinishUploadWork(UploadModId, false, Message);
            }
        });
}

void FModioInterface::OnPackagingComplete()
{
    BuildBusyFlag() = false;
    if (bStageOnly)
    {
        PendingPlatforms.clear();
        bIsModioBusy = false;
        bIsUploading = false;
        Platform.Dialogs.MessageBox(EAppMsgType::Ok, "Staged mod", "Staging");
        FinishUploadWork(UploadModId, true, "Staged mod");
        return;
    }
    StepsTotal = static_cast<int32>(PendingPlatforms.size());
    StepsQueued = StepsTotal;
    StepOffset = 0;
    if (PendingPlatforms.empty())
    {
        LogTemp("Nothing to upload: no platform was packaged", ELogVerbosity::Warning);
        bIsModioBusy = false;
        bIsUploading = false;
        FinishUploadWork(UploadModId, false, "Nothing to upload: no platform was packaged");
        return;
    }
    CurrentPlatform = PendingPlatforms.front().first;
    UploadPlatform(PendingPlatforms.front().first, PendingPlatforms.front().second);
}

void FModioInterface::StartNextPlatformUpload()
{
    const auto Entry = std::find_if(PendingPlatforms.begin(), PendingPlatforms.end(),
        [this](const auto& Pending) { return Pending.first == CurrentPlatform; });
    if (Entry != PendingPlatforms.end())
    {
        UploadPlatform(Entry->first, Entry->second);
    }
}

void FModioInterface::UploadPlatform(uint8 PlatformValue, const std::string& Directory)
{
    IModioSession* Session = Platform.ModioSession;
    if (!Session)
    {
        LogTemp("Failed to get the modio subsystem");
        return;
    }
    LogTemp(Printf("Uploading Platform %d from dir %s", PlatformValue, Directory.c_str()));

    FModioCreateModFileParams Params;
    Params.ModfilePlatforms = std::vector<EModioModfilePlatform>{static_cast<EModioModfilePlatform>(PlatformValue)};
    if (PlatformValue == SourcePlatform)
    {
        // Shared sources never carry the editor's local Saved folder.
        const std::string SavedDir = Paths::Combine(Directory, "Saved");
        if (FileSystem::DirectoryExists(SavedDir))
        {
            FileSystem::DeleteDirectoryRecursively(SavedDir);
        }
        Params.RootDirectory = Directory;
    }
    else
    {
        Params.RootDirectory = Printf("%s/UGC%s/", Directory.c_str(), UploadModId.c_str());
    }
    Params.Changelog = UploadChangelog;
    Params.VersionString = std::to_string(UploadVersion);
    Params.MetadataBlob = MakeMetadataBlob(UploadVersion);
    Session->SubmitNewModFileForMod(ParseModId(UploadModId).value_or(0), Params);
}

void FModioInterface::OnModManagementEvent(const FModioModManagementEvent& Event)
{
    // Events of other mods, other kinds, or after the queue has ended are not ours.
    if (!bIsUploading || !EqualsIgnoreCase(std::to_string(Event.ID), UploadModId) ||
        Event.Event != EModioModManagementEventType::Uploaded)
    {
        return;
    }
    if (!Event.Status)
    {
        FinishPlatform();
        return;
    }
    const FModioErrorCode& Error = Event.Status;
    if (Error.GetValue() == ModioErrorValue::HttpRequestFailed && std::fabs(UploadProgress - 1.0f) < 1e-8f)
    {
        // Every byte went out; an error this late is the final answer going astray.
        LogTemp(Printf("Failed to upload %s mod, it should have finished uploading ... skipping error %d %s",
            UploadModId.c_str(), Error.GetValue(), Error.GetErrorMessage().c_str()), ELogVerbosity::Warning);
        FinishPlatform();
        return;
    }
    Platform.Dialogs.MessageBox(EAppMsgType::Ok, "ERROR: Failed to upload mod, check output log for details", "Upload");
    LogTemp(Printf("Failed to upload mod %d %s", Error.GetValue(), Error.GetErrorMessage().c_str()), ELogVerbosity::Error);
    bIsModioBusy = false;
    bIsUploading = false;
    PendingPlatforms.clear();
    FinishUploadWork(UploadModId, false, "ERROR: Failed to upload mod, check output log for details");
}

void FModioInterface::FinishPlatform()
{
    UploadProgress = 0.0f;
    const auto Finished = std::find_if(PendingPlatforms.begin(), PendingPlatforms.end(),
        [this](const auto& Pending) { return Pending.first == CurrentPlatform; });
    if (Finished != PendingPlatforms.end())
    {
        PendingPlatforms.erase(Finished);
    }
    StepsQueued = static_cast<int32>(PendingPlatforms.size());
    if (!PendingPlatforms.empty())
    {
        CurrentPlatform = PendingPlatforms.front().first;
        NextUploadDelay = PlatformUploadPause;
        return;
    }
    LogTemp("Upload Complete");
    Platform.Dialogs.MessageBox(EAppMsgType::Ok, "Upload Complete", "Upload");
    bIsModioBusy = false;
    bIsUploading = false;
    FinishUploadWork(UploadModId, true, "Upload Complete");
}

void FModioInterface::FinishUploadWork(const std::string& ModId, bool bSucceeded, const std::string& Message)
{
    OnWorkFinished.Broadcast(FWorkshopWorkEnd{bStageOnly ? EWorkshopWork::Stage : EWorkshopWork::Upload, ModId, bSucceeded, Message});
}
}
