#pragma once

#include "CoreMinimal.h"
#include "Modules/ModuleInterface.h"
#include "Modules/ModuleManager.h"
#include "TickableEditorObject.h"

class FEngineArchive;
class FEngineDefinitions;
class FEngineDialogs;
class FEngineHttp;
class FEngineLog;
class FEngineModioSession;
class FEngineNotifications;
class FEngineProcesses;
class FEngineServices;
class FEngineTasks;
class FSlateStyleSet;
class FSpawnTabArgs;
class SDockTab;

namespace Maptorn
{
class FMaptornModule;
struct FMaptornPlatform;
}

// The editor module: plugs the core into the engine through the port adapters, registers the
// workshop's style set and tab, and ticks the core every editor frame.
class FMaptornModule : public IModuleInterface, public FTickableEditorObject
{
public:
	FMaptornModule();
	virtual ~FMaptornModule() override;

	// Loads the module on first use, as every other module's Get() does.
	static FMaptornModule& Get() { return FModuleManager::LoadModuleChecked<FMaptornModule>("Maptorn"); }

	// The workshop itself; valid between StartupModule and ShutdownModule.
	Maptorn::FMaptornModule& GetCore() const { return *Core; }

	virtual void StartupModule() override;
	virtual void ShutdownModule() override;

	virtual void Tick(float DeltaTime) override;
	virtual bool IsTickable() const override;
	virtual TStatId GetStatId() const override;

private:
	TSharedRef<SDockTab> OnSpawnPluginTab(const FSpawnTabArgs& SpawnTabArgs);
	void OnEnginePreExit();
	void RegisterStyleSet();
	void RegisterTab();
	void UseGameInstall();

	// The adapters first, so that they are destroyed after the core that uses them.
	TUniquePtr<FEngineLog> Log;
	TUniquePtr<FEngineDialogs> Dialogs;
	TUniquePtr<FEngineServices> Engine;
	TUniquePtr<FEngineDefinitions> Definitions;
	TUniquePtr<FEngineProcesses> Processes;
	TUniquePtr<FEngineTasks> Tasks;
	TUniquePtr<FEngineHttp> Http;
	TUniquePtr<FEngineArchive> Archive;
	TUniquePtr<FEngineModioSession> ModioSession;
	TUniquePtr<FEngineNotifications> Notifications;
	TUniquePtr<Maptorn::FMaptornPlatform> Platform;
	TUniquePtr<Maptorn::FMaptornModule> Core;

	TSharedPtr<FSlateStyleSet> StyleSet;
	FDelegateHandle EnginePreExitHandle;
};
