#pragma once

// The core's mod.io client over the editor's session adapter, on the recording UModioSubsystem:
// what the editor runs, with the plug-in replaced by its recording stand-in and the other ports
// by the core's in-process fakes. Time passes only by Tick.

#include "Platform/EngineModioSession.h"
#include "Platform/StringConversion.h"
#include "Surface/RecordingModioSubsystem.h"

#include "Module/MaptornModule.h"
#include "Support/FakePlatform.h"

#include <gtest/gtest.h>

#include <memory>

class FEditorModioSessionTest : public ::testing::Test
{
protected:
	FEditorModioSessionTest()
	{
		RecordingModio::Reset();
		SurfaceEngine::SetEngineRunning(true);
		SurfaceEngine::SetModioSubsystem(&Subsystem);
		StartEditor();
	}

	~FEditorModioSessionTest() override
	{
		StopEditor();
		SurfaceEngine::SetModioSubsystem(nullptr);
		SurfaceEngine::SetEngineRunning(false);
	}

	// The editor module's start-up: a session adapter, the core's module and its mod.io client.
	void StartEditor()
	{
		Session = std::make_unique<FEngineModioSession>();
		Platform = std::make_unique<Maptorn::FMaptornPlatform>(Maptorn::FMaptornPlatform{Fakes.Log, Fakes.Dialogs, Fakes.Engine,
			Fakes.Definitions, Fakes.Processes, Fakes.Tasks, Fakes.Http, Fakes.Archive, Session.get()});
		Module = std::make_unique<Maptorn::FMaptornModule>(*Platform, Config);
		Module->ModioClient = std::make_unique<Maptorn::FModioInterface>(*Platform, Config);
		Client = Module->ModioClient.get();
		Client->InitializeSession();
	}

	// The module's shutdown, then the adapter goes, as when the editor closes.
	void StopEditor()
	{
		if (Module)
		{
			Module->ShutdownModule();
		}
		Client = nullptr;
		Module.reset();
		Platform.reset();
		Session.reset();
	}

	void Tick(float DeltaTime = 1.0f / 60.0f)
	{
		Module->Tick(DeltaTime);
	}

	// With a stored login: the plug-in answers the start-up, the verification and the own-mod list.
	void StartLoggedIn()
	{
		RecordingModio::Get().bLoggedIn = true;
		Tick();
		Tick();
		Tick();
	}

	int32 MessageBoxesReading(const std::string& Text) const
	{
		int32 Count = 0;
		for (const Maptorn::Testing::FMessageBoxCall& Box : Fakes.Dialogs.MessageBoxes)
		{
			Count += Box.Text == Text ? 1 : 0;
		}
		return Count;
	}

	Maptorn::FMaptornConfig Config{"", "https://g-7.modapi.io", 7, "SECRET-KEY"};
	Maptorn::Testing::FFakePlatform Fakes;
	UModioSubsystem Subsystem;
	std::unique_ptr<FEngineModioSession> Session;
	std::unique_ptr<Maptorn::FMaptornPlatform> Platform;
	std::unique_ptr<Maptorn::FMaptornModule> Module;
	Maptorn::FModioInterface* Client = nullptr;
};
