// The stand-in editor's shell: the module manager, the tick list of editor objects, the global tab
// manager and the Tools menu, and the frame.

#include "EditorEngine/SurfaceEditor.h"
#include "EditorEngine/SurfaceObjects.h"
#include "EditorEngine/SurfaceTestState.h"

#include "Framework/Docking/TabManager.h"
#include "Misc/CoreDelegates.h"
#include "Modules/ModuleManager.h"
#include "Platform/StandaloneEngine.h"
#include "TickableEditorObject.h"
#include "WorkspaceMenuStructure.h"
#include "WorkspaceMenuStructureModule.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <memory>
#include <vector>

// The editor module's entry point, as its DLL exports it.
extern "C" IModuleInterface* InitializeModule();

namespace
{
std::vector<FTickableEditorObject*>& Tickables()
{
	static std::vector<FTickableEditorObject*> Objects;
	return Objects;
}

struct FLoadedModule
{
	FName Name;
	std::unique_ptr<IModuleInterface> Module;
};

std::vector<FLoadedModule>& LoadedModules()
{
	static std::vector<FLoadedModule> Modules;
	return Modules;
}

struct FTabRecord
{
	FOnSpawnTab Spawner;
	std::shared_ptr<FTabSpawnerEntry> Entry = std::make_shared<FTabSpawnerEntry>();
	SurfaceEditor::FTabInfo Info;
	TSharedPtr<SDockTab> OpenTab;
};

std::map<FName, FTabRecord>& Tabs()
{
	static std::map<FName, FTabRecord> Records;
	return Records;
}

SurfaceEditor::FTabInfo* InfoOf(const FTabSpawnerEntry* Entry)
{
	for (auto& [Id, Record] : Tabs())
	{
		if (Record.Entry.get() == Entry)
		{
			return &Record.Info;
		}
	}
	return nullptr;
}

class FToolsCategory final : public FWorkspaceItem
{
};

class FMenuStructure final : public IWorkspaceMenuStructure
{
public:
	TSharedRef<FWorkspaceItem> GetStructureRoot() const override { return Root; }
	TSharedRef<FWorkspaceItem> GetToolsStructureRoot() const override { return Root; }
	TSharedRef<FWorkspaceItem> GetLevelEditorCategory() const override { return Root; }
	TSharedRef<FWorkspaceItem> GetToolsCategory() const override { return Tools; }
	TSharedRef<FWorkspaceItem> GetDeveloperToolsMiscCategory() const override { return Root; }

	TSharedRef<FWorkspaceItem> Root = MakeShared<FWorkspaceItem>();
	TSharedRef<FWorkspaceItem> Tools = MakeShared<FToolsCategory>();
};

const FMenuStructure& MenuStructure()
{
	static const FMenuStructure Structure;
	return Structure;
}

std::string WithSlash(std::string Folder)
{
	if (!Folder.empty() && Folder.back() != '/')
	{
		Folder += '/';
	}
	return Folder;
}
}

FTickableEditorObject::FTickableEditorObject()
{
	Tickables().push_back(this);
}

FTickableEditorObject::~FTickableEditorObject()
{
	std::vector<FTickableEditorObject*>& Objects = Tickables();
	Objects.erase(std::remove(Objects.begin(), Objects.end(), this), Objects.end());
}

FModuleManager& FModuleManager::Get()
{
	static FModuleManager Manager;
	return Manager;
}

IModuleInterface* FModuleManager::LoadModule(const FName InModuleName)
{
	if (IModuleInterface* Loaded = GetModule(InModuleName))
	{
		return Loaded;
	}
	// Only the editor module is linked into the stand-in editor.
	if (InModuleName != FName(TEXT("Maptorn")))
	{
		return nullptr;
	}
	LoadedModules().push_back(FLoadedModule{InModuleName, std::unique_ptr<IModuleInterface>(InitializeModule())});
	IModuleInterface* Module = LoadedModules().back().Module.get();
	Module->StartupModule();
	return Module;
}

IModuleInterface& FModuleManager::LoadModuleChecked(const FName InModuleName)
{
	IModuleInterface* Module = LoadModule(InModuleName);
	check(Module);
	return *Module;
}

IModuleInterface* FModuleManager::GetModule(const FName InModuleName)
{
	for (const FLoadedModule& Loaded : LoadedModules())
	{
		if (Loaded.Name == InModuleName)
		{
			return Loaded.Module.get();
		}
	}
	return nullptr;
}

bool FModuleManager::IsModuleLoaded(const FName InModuleName) const
{
	return const_cast<FModuleManager*>(this)->GetModule(InModuleName) != nullptr;
}

const TSharedRef<FGlobalTabmanager>& FGlobalTabmanager::Get()
{
	static const TSharedRef<FGlobalTabmanager> Manager = MakeShared<FGlobalTabmanager>();
	return Manager;
}

FTabSpawnerEntry& FGlobalTabmanager::RegisterNomadTabSpawner(const FName TabId, const FOnSpawnTab& OnSpawnTab, const FCanSpawnTab& /*CanSpawnTab*/)
{
	// The engine asserts that a tab id is registered once.
	check(Tabs().count(TabId) == 0);
	FTabRecord& Record = Tabs()[TabId];
	Record.Spawner = OnSpawnTab;
	return *Record.Entry;
}

bool FGlobalTabmanager::UnregisterNomadTabSpawner(const FName TabId)
{
	return Tabs().erase(TabId) != 0;
}

TSharedPtr<SDockTab> FTabManager::TryInvokeTab(const FName& TabId, bool /*bInvokeAsInactive*/)
{
	return SurfaceEditor::InvokeTab(TabId);
}

FTabSpawnerEntry& FTabSpawnerEntry::SetDisplayName(const FText& InLegibleName)
{
	if (SurfaceEditor::FTabInfo* Info = InfoOf(this))
	{
		Info->DisplayName = InLegibleName;
	}
	return *this;
}

FTabSpawnerEntry& FTabSpawnerEntry::SetTooltipText(const FText& /*InTooltipText*/)
{
	return *this;
}

FTabSpawnerEntry& FTabSpawnerEntry::SetGroup(const TSharedRef<FWorkspaceItem>& InGroup)
{
	if (SurfaceEditor::FTabInfo* Info = InfoOf(this))
	{
		Info->bInToolsCategory = &InGroup.Get() == &MenuStructure().Tools.Get();
	}
	return *this;
}

FTabSpawnerEntry& FTabSpawnerEntry::SetIcon(const FSlateIcon& InIcon)
{
	if (SurfaceEditor::FTabInfo* Info = InfoOf(this))
	{
		Info->Icon = InIcon;
	}
	return *this;
}

FTabSpawnerEntry& FTabSpawnerEntry::SetMenuType(const TAttribute<int32>& /*InMenuType*/)
{
	return *this;
}

const IWorkspaceMenuStructure& WorkspaceMenu::GetMenuStructure()
{
	return MenuStructure();
}

namespace SurfaceEditor
{
void OpenProject(const FProjectPaths& Paths)
{
	namespace fs = std::filesystem;
	SurfaceTestState::FState& State = SurfaceTestState::Get();
	State.ProjectFile = fs::absolute(Paths.ProjectFile).generic_string();
	State.ProjectDir = WithSlash(fs::path(State.ProjectFile).parent_path().generic_string());
	State.EngineDir = WithSlash(fs::absolute(Paths.EngineRoot).generic_string()) + "Engine/";
	State.UserSettingsDir = WithSlash(Paths.UserSettingsDir);
	State.BaseDir = State.EngineDir + "Binaries/Win64/";
	State.Project = std::make_shared<Maptorn::FStandaloneEngine>(Maptorn::FStandaloneEngineSettings{
		State.ProjectFile, WithSlash(fs::absolute(Paths.EngineRoot).generic_string()), State.UserSettingsDir, State.BaseDir});
	SurfaceTestState::UseProjectConfigFiles();
}

IModuleInterface& LoadEditorModule()
{
	return FModuleManager::Get().LoadModuleChecked(TEXT("Maptorn"));
}

std::optional<FTabInfo> FindTab(const FName& TabId)
{
	const auto Found = Tabs().find(TabId);
	return Found == Tabs().end() ? std::nullopt : std::optional<FTabInfo>(Found->second.Info);
}

TSharedPtr<SDockTab> InvokeTab(const FName& TabId)
{
	const auto Found = Tabs().find(TabId);
	if (Found == Tabs().end())
	{
		return nullptr;
	}
	FTabRecord& Record = Found->second;
	if (!Record.OpenTab.IsValid())
	{
		Record.OpenTab = Record.Spawner.Execute(FSpawnTabArgs());
	}
	return Record.OpenTab;
}

void CloseTab(const FName& TabId)
{
	const auto Found = Tabs().find(TabId);
	if (Found != Tabs().end())
	{
		Found->second.OpenTab.Reset();
	}
}

void Frame(float DeltaSeconds)
{
	const std::vector<FTickableEditorObject*> Objects = Tickables();
	for (FTickableEditorObject* Object : Objects)
	{
		if (Object->IsTickable())
		{
			Object->Tick(DeltaSeconds);
		}
	}
	SurfaceTestState::PumpGameThread();
}

void Exit()
{
	FCoreDelegates::OnEnginePreExit.Broadcast();
	for (auto& [Id, Record] : Tabs())
	{
		Record.OpenTab.Reset();
	}
	std::vector<FLoadedModule>& Modules = LoadedModules();
	while (!Modules.empty())
	{
		Modules.back().Module->ShutdownModule();
		Modules.pop_back();
	}
	Tabs().clear();
	SurfaceObjects::UnloadAll();
	SurfaceTestState::CloseHttp();
	SurfaceTestState::PumpGameThread();
}
}
