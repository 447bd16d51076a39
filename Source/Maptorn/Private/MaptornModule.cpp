#include "Maptorn.h"

#include "Platform/EngineArchive.h"
#include "Platform/EngineDefinitions.h"
#include "Platform/EngineDialogs.h"
#include "Platform/EngineHttp.h"
#include "Platform/EngineLog.h"
#include "Platform/EngineModioSession.h"
#include "Platform/EngineNotifications.h"
#include "Platform/EngineProcesses.h"
#include "Platform/EngineServices.h"
#include "Platform/EngineTasks.h"
#include "Platform/StringConversion.h"

#include "Module/GameInstall.h"
#include "Module/MaptornConfig.h"
#include "Module/MaptornModule.h"
#include "Platform/MaptornPlatform.h"

#include "Framework/Docking/TabManager.h"
#include "Misc/ConfigCacheIni.h"
#include "Misc/CoreDelegates.h"
#include "Slate/SlateGameResources.h"
#include "Styling/AppStyle.h"
#include "Styling/SlateStyleRegistry.h"
#include "UI/KelvorWorkshopWindow.h"
#include "UI/WorkshopStyle.h"
#include "Widgets/Docking/SDockTab.h"
#include "Widgets/Layout/SBorder.h"
#include "Widgets/Text/STextBlock.h"
#include "WorkspaceMenuStructure.h"
#include "WorkspaceMenuStructureModule.h"

#define LOCTEXT_NAMESPACE "FMaptornModule"

IMPLEMENT_MODULE(FMaptornModule, Maptorn)

// The module's settings live in the editor's per-project user settings, section
// [/Script/Maptorn.MaptornSettings]: shared values (SteamAppId, ModioGameId, ModioApiBaseUrl) in the
// project's Config/DefaultEditorPerProjectUserSettings.ini, and the secret ModioApiKey in the user's own
// Saved/Config/<Platform>Editor/EditorPerProjectUserSettings.ini, which is never committed or shipped.
namespace MaptornModuleSettings
{
const TCHAR* const Section = TEXT("/Script/Maptorn.MaptornSettings");

FString Read(const TCHAR* Key)
{
	FString Value;
	if (GConfig)
	{
		GConfig->GetString(Section, Key, Value, GEditorPerProjectIni);
	}
	return Value.TrimStartAndEnd();
}

Maptorn::FMaptornConfig ReadModuleConfig()
{
	Maptorn::FMaptornConfig Config;
	Config.SteamAppId = MaptornString::ToStd(Read(TEXT("SteamAppId")));
	Config.ModioGameId = FCString::Atoi64(*Read(TEXT("ModioGameId")));
	Config.ModioApiKey = MaptornString::ToStd(Read(TEXT("ModioApiKey")));

	FString BaseUrl = Read(TEXT("ModioApiBaseUrl"));
	if (BaseUrl.IsEmpty() && Config.ModioGameId > 0)
	{
		// mod.io's own per-game origin, as the standalone host defaults it.
		BaseUrl = FString::Printf(TEXT("https://g-%lld.modapi.io"), static_cast<long long>(Config.ModioGameId));
	}
	while (BaseUrl.RemoveFromEnd(TEXT("/")))
	{
	}
	Config.ModioApiBaseUrl = MaptornString::ToStd(BaseUrl);

	if (Config.ModioGameId <= 0 || Config.ModioApiKey.empty())
	{
		UE_LOG(MaptornLog, Warning, TEXT("mod.io is not configured: set ModioGameId and ModioApiKey in [%s] of %s"), Section,
			*GEditorPerProjectIni);
	}
	return Config;
}
}

FMaptornModule::FMaptornModule() = default;

FMaptornModule::~FMaptornModule() = default;

void FMaptornModule::StartupModule()
{
	Log = MakeUnique<FEngineLog>();
	Dialogs = MakeUnique<FEngineDialogs>();
	Engine = MakeUnique<FEngineServices>();
	Definitions = MakeUnique<FEngineDefinitions>();
	Processes = MakeUnique<FEngineProcesses>();
	Tasks = MakeUnique<FEngineTasks>();
	Http = MakeUnique<FEngineHttp>();
	Archive = MakeUnique<FEngineArchive>();
	ModioSession = MakeUnique<FEngineModioSession>();
	Notifications = MakeUnique<FEngineNotifications>();
	Platform = TUniquePtr<Maptorn::FMaptornPlatform>(new Maptorn::FMaptornPlatform{
		*Log, *Dialogs, *Engine, *Definitions, *Processes, *Tasks, *Http, *Archive, ModioSession.Get(), Notifications.Get()});

	Core = TUniquePtr<Maptorn::FMaptornModule>(Maptorn::InitializeModule(*Platform, MaptornModuleSettings::ReadModuleConfig()).release());
	// The log line, steam_appid.txt and the members; the window's style set and tab; then the
	// project-map object, the mod.io client, the mod directory and the streaming fix.
	Core->StartupModule([this]
	{
		RegisterStyleSet();
		RegisterTab();
	});
	UseGameInstall();
	EnginePreExitHandle = FCoreDelegates::OnEnginePreExit.AddRaw(this, &FMaptornModule::OnEnginePreExit);
}

void FMaptornModule::ShutdownModule()
{
	FCoreDelegates::OnEnginePreExit.Remove(EnginePreExitHandle);
	FGlobalTabmanager::Get()->UnregisterNomadTabSpawner(FName(Maptorn::FMaptornModule::TabId));

	check(StyleSet.IsValid());
	FSlateStyleRegistry::UnRegisterSlateStyle(*StyleSet);
	check(StyleSet.IsUnique());
	StyleSet.Reset();

	if (Core)
	{
		Core->ShutdownModule();
	}
	// The HTTP module outlives this one: requests still in flight must not call into the core.
	if (Http)
	{
		Http->Shutdown();
	}
	Core.Reset();
}

void FMaptornModule::Tick(float DeltaTime)
{
	if (Core)
	{
		Core->Tick(DeltaTime);
	}
}

bool FMaptornModule::IsTickable() const
{
	return Core.IsValid() && Core->IsTickable();
}

TStatId FMaptornModule::GetStatId() const
{
	RETURN_QUICK_DECLARE_CYCLE_STAT(FMaptornModule, STATGROUP_Tickables);
}

void FMaptornModule::RegisterStyleSet()
{
	// Made and registered once; shutdown unregisters and releases it.
	if (StyleSet.IsValid())
	{
		return;
	}
	StyleSet = FSlateGameResources::New(MaptornWorkshopStyle::GetStyleSetName(), TEXT("/Maptorn/UI"), TEXT("/Maptorn/UI"));
	check(StyleSet.IsValid());
	MaptornWorkshopStyle::AddImages(*StyleSet);
	FSlateStyleRegistry::RegisterSlateStyle(*StyleSet);
}

void FMaptornModule::RegisterTab()
{
	FGlobalTabmanager::Get()
		->RegisterNomadTabSpawner(FName(Maptorn::FMaptornModule::TabId), FOnSpawnTab::CreateRaw(this, &FMaptornModule::OnSpawnPluginTab))
		.SetDisplayName(FText::FromString(FString(Maptorn::FMaptornModule::TabDisplayName)))
		.SetGroup(WorkspaceMenu::GetMenuStructure().GetToolsCategory())
		.SetIcon(FSlateIcon(FAppStyle::GetAppStyleSetName(), "Log.TabIcon"));
}

// A folder set in the settings (KelvorInstallDir) wins; otherwise the game's Steam install, found
// through Steam's library folders. Staging into the game and the Steam deploy need it.
void FMaptornModule::UseGameInstall()
{
	const FString Preferred = MaptornModuleSettings::Read(TEXT("KelvorInstallDir"));
	const std::string InstallDir = !Preferred.IsEmpty()
		? MaptornString::ToStd(Preferred)
		: Maptorn::GameInstall::FindGameInstallDir(Maptorn::GameInstall::FindSteamRoot(), Core->GetConfig().SteamAppId);
	if (Maptorn::GameInstall::UseGameInstall(*Core, InstallDir))
	{
		UE_LOG(MaptornLog, Log, TEXT("Kelvor installation: %s"), *MaptornString::ToFString(InstallDir));
	}
	else
	{
		UE_LOG(MaptornLog, Warning, TEXT("Kelvor installation not found: install the game through Steam or set KelvorInstallDir in [%s] of %s"),
			MaptornModuleSettings::Section, *GEditorPerProjectIni);
	}
}

// The mod.io subsystem must close its session before the engine tears down the HTTP stack; the
// module's own shutdown later finds it closed and does not close it twice.
void FMaptornModule::OnEnginePreExit()
{
	if (Core && Core->ModioClient)
	{
		Core->ModioClient->Shutdown();
	}
}

TSharedRef<SDockTab> FMaptornModule::OnSpawnPluginTab(const FSpawnTabArgs& /*SpawnTabArgs*/)
{
	return SNew(SDockTab)
		.TabRole(ETabRole::NomadTab)
		.Label(LOCTEXT("TabTitle", "Kelvor Workshop"))
		.ContentPadding(5)
		[
			SNew(SBorder)
			.Padding(4)
			[
				SNew(SKelvorWorkshopWindow)
			]
		];
}

#undef LOCTEXT_NAMESPACE
