#include "EditorEngine/Driver/StandInEditor.h"

#include "EditorEngine/SurfaceEditor.h"
#include "EditorEngine/SurfaceTestState.h"

#include "Misc/ConfigCacheIni.h"
#include "Platform/StringConversion.h"

#include <algorithm>
#include <chrono>
#include <fstream>
#include <thread>

namespace
{
const TCHAR* const WorkshopSection = TEXT("/Script/Maptorn.MaptornSettings");
const FName WorkshopTab(TEXT("KelvorWorkshopTab"));

void SetSetting(const TCHAR* Key, const std::string& Value, const FString& File)
{
	GConfig->SetString(WorkshopSection, Key, *MaptornString::ToFString(Value), File);
}
}

FStandInEditor::~FStandInEditor()
{
	Exit();
}

bool FStandInEditor::Start(const FStandInEditorOptions& InOptions, std::string& OutError)
{
	return Prepare(InOptions, OutError) && Launch(OutError);
}

bool FStandInEditor::Prepare(const FStandInEditorOptions& InOptions, std::string& OutError)
{
	Options = InOptions;
	Maptorn::Sample::FSampleOptions Sample;
	Sample.StandinBinary = Options.StandinBinary;
	Sample.bWithGameInstall = true;
	SampleLayout = Maptorn::Sample::CreateSampleLayout(Options.Root, Sample);
	if (!SampleLayout.bCreated)
	{
		OutError = SampleLayout.FailReason;
		return false;
	}
	StoredLoginFile = SampleLayout.UserSettingsDir + "mod.io/login.json";
	return true;
}

bool FStandInEditor::Restart(std::string& OutError)
{
	Exit();
	return Launch(OutError);
}

bool FStandInEditor::Launch(std::string& OutError)
{
	// The editor runs in the engine's binaries folder; steam_appid.txt lands in its working folder.
	PreviousWorkingDirectory = std::filesystem::current_path();
	std::filesystem::current_path(Options.Root);

	SurfaceTestState::Reset();
	SurfaceEditor::OpenProject({SampleLayout.ProjectFile, SampleLayout.EngineRoot, SampleLayout.UserSettingsDir});

	// Shared values in the project's defaults; the secret key only in the user's own settings file.
	const FString Defaults = MaptornString::ToFString(SampleLayout.ProjectDir + "Config/DefaultEditorPerProjectUserSettings.ini");
	SetSetting(TEXT("SteamAppId"), Options.SteamAppId, Defaults);
	SetSetting(TEXT("ModioGameId"), std::to_string(Options.ModioGameId), Defaults);
	SetSetting(TEXT("ModioApiBaseUrl"), Options.ModioBaseUrl, Defaults);
	GConfig->Flush(false, Defaults);
	SetSetting(TEXT("ModioApiKey"), Options.ModioApiKey, GEditorPerProjectIni);
	if (!Options.GameInstallDir.empty())
	{
		SetSetting(TEXT("KelvorInstallDir"), Options.GameInstallDir, GEditorPerProjectIni);
	}
	GConfig->Flush(false, GEditorPerProjectIni);

	// The mod.io plug-in is an engine subsystem: it exists before any editor module starts.
	Modio = std::make_unique<FRestModioBackend>(Options.ModioBaseUrl, StoredLoginFile);
	Subsystem = std::make_unique<UModioSubsystem>();
	SurfaceEngine::SetModioBackend(Modio.get());
	SurfaceEngine::SetEngineRunning(true);
	SurfaceEngine::SetModioSubsystem(Subsystem.get());

	SurfaceEditor::LoadEditorModule();
	bRunning = true;
	const TSharedPtr<SDockTab> Tab = SurfaceEditor::InvokeTab(WorkshopTab);
	if (!Tab.IsValid())
	{
		OutError = "the editor module registered no \"KelvorWorkshopTab\" tab";
		Exit();
		return false;
	}
	Driver.SetRoot(Tab);
	Frame();
	return true;
}

int32 FStandInEditor::Exit()
{
	if (!bRunning)
	{
		return 0;
	}
	bRunning = false;
	Driver.SetRoot(nullptr);
	SurfaceEditor::Exit();
	SurfaceEngine::SetModioSubsystem(nullptr);
	SurfaceEngine::SetEngineRunning(false);
	SurfaceEngine::SetModioBackend(nullptr);
	const int32 Shutdowns = Modio->GetShutdownCount();
	Subsystem.reset();
	Modio.reset();
	std::filesystem::current_path(PreviousWorkingDirectory);
	return Shutdowns;
}

FWidgetDriver FStandInEditor::OpenAssetDetails(const std::string& ObjectPath)
{
	return FWidgetDriver(SurfaceEditor::OpenAssetDetails(MaptornString::ToFString(ObjectPath)));
}

void FStandInEditor::Frame()
{
	const auto Now = std::chrono::steady_clock::now();
	// A stall (a debugger, a slow machine) counts as a tenth of a second at most, as a hitch would.
	const float DeltaSeconds = std::min(std::chrono::duration<float>(Now - LastFrame).count(), 0.1f);
	LastFrame = Now;
	SurfaceEditor::Frame(DeltaSeconds);
	// Leaves the transfer and process threads time to move, as a frame's 16 ms would.
	std::this_thread::sleep_for(std::chrono::milliseconds(2));
}

bool FStandInEditor::RunUntil(const std::function<bool()>& Done, double TimeoutSeconds)
{
	const auto Deadline = std::chrono::steady_clock::now() + std::chrono::duration<double>(TimeoutSeconds);
	while (!Done())
	{
		if (std::chrono::steady_clock::now() > Deadline)
		{
			return false;
		}
		Frame();
	}
	return true;
}

void FStandInEditor::RunFor(double Seconds)
{
	const auto Until = std::chrono::steady_clock::now() + std::chrono::duration<double>(Seconds);
	while (std::chrono::steady_clock::now() < Until)
	{
		Frame();
	}
}
