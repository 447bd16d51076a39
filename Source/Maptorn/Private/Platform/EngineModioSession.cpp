#include "Platform/EngineModioSession.h"

#include "Platform/EngineModioConversion.h"
#include "Platform/StringConversion.h"

#include "Engine/Engine.h"
#include "HAL/PlatformProcess.h"

using namespace EngineModioConversion;

UModioSubsystem* FEngineModioSession::FindSubsystem()
{
	return GEngine ? GEngine->GetEngineSubsystem<UModioSubsystem>() : nullptr;
}

Maptorn::FModioErrorCode FEngineModioSession::NoSubsystemError()
{
	return Maptorn::FModioErrorCode{Maptorn::ModioErrorValue::SdkNotInitialized, "The mod.io plug-in's subsystem is not available"};
}

FOnErrorOnlyDelegateFast FEngineModioSession::ErrorOnly(Maptorn::FOnErrorOnlyDelegate Callback) const
{
	return FOnErrorOnlyDelegateFast::CreateLambda(
		[Alive = std::weak_ptr<bool>(Lifetime), Callback = std::move(Callback)](FModioErrorCode Result) {
			if (!Alive.expired() && Callback)
			{
				Callback(ToCore(Result));
			}
		});
}

void FEngineModioSession::Post(std::function<void()> Handler)
{
	PendingHandlers.push_back(std::move(Handler));
}

void FEngineModioSession::FailLater(Maptorn::FOnErrorOnlyDelegate Callback)
{
	Post([Callback = std::move(Callback)] {
		if (Callback)
		{
			Callback(NoSubsystemError());
		}
	});
}

void FEngineModioSession::InitializeAsync(const Maptorn::FModioInitializeOptions& Options, Maptorn::FOnErrorOnlyDelegate OnInitComplete)
{
	if (UModioSubsystem* Subsystem = FindSubsystem())
	{
		Subsystem->InitializeAsync(ToEngine(Options), ErrorOnly(std::move(OnInitComplete)));
		return;
	}
	FailLater(std::move(OnInitComplete));
}

void FEngineModioSession::SetLogLevel(Maptorn::EModioLogLevel Level)
{
	if (UModioSubsystem* Subsystem = FindSubsystem())
	{
		Subsystem->SetLogLevel(ToEngine(Level));
	}
}

Maptorn::FModioErrorCode FEngineModioSession::EnableModManagement(Maptorn::FOnModManagementDelegate Callback)
{
	ModManagementCallback = Callback;
	UModioSubsystem* Subsystem = FindSubsystem();
	if (!Subsystem)
	{
		return NoSubsystemError();
	}
	return ToCore(Subsystem->EnableModManagement(FOnModManagementDelegateFast::CreateLambda(
		[Alive = std::weak_ptr<bool>(Lifetime), Callback = std::move(Callback)](FModioModManagementEvent Event) {
			if (!Alive.expired() && Callback)
			{
				Callback(ToCore(Event));
			}
		})));
}

void FEngineModioSession::VerifyUserAuthenticationAsync(Maptorn::FOnErrorOnlyDelegate Callback)
{
	if (UModioSubsystem* Subsystem = FindSubsystem())
	{
		Subsystem->VerifyUserAuthenticationAsync(ErrorOnly(std::move(Callback)));
		return;
	}
	FailLater(std::move(Callback));
}

void FEngineModioSession::RequestEmailAuthCodeAsync(const std::string& EmailAddress, Maptorn::FOnErrorOnlyDelegate Callback)
{
	if (UModioSubsystem* Subsystem = FindSubsystem())
	{
		Subsystem->RequestEmailAuthCodeAsync(FModioEmailAddress(MaptornString::ToFString(EmailAddress)), ErrorOnly(std::move(Callback)));
		return;
	}
	FailLater(std::move(Callback));
}

void FEngineModioSession::AuthenticateUserEmailAsync(const std::string& AuthCode, Maptorn::FOnErrorOnlyDelegate Callback)
{
	if (UModioSubsystem* Subsystem = FindSubsystem())
	{
		Subsystem->AuthenticateUserEmailAsync(FModioEmailAuthCode(MaptornString::ToFString(AuthCode)), ErrorOnly(std::move(Callback)));
		return;
	}
	FailLater(std::move(Callback));
}

void FEngineModioSession::ClearUserDataAsync(Maptorn::FOnErrorOnlyDelegate Callback)
{
	if (UModioSubsystem* Subsystem = FindSubsystem())
	{
		Subsystem->ClearUserDataAsync(ErrorOnly(std::move(Callback)));
		return;
	}
	FailLater(std::move(Callback));
}

void FEngineModioSession::ShutdownAsync(Maptorn::FOnErrorOnlyDelegate Callback)
{
	const auto bDone = std::make_shared<bool>(false);
	Maptorn::FOnErrorOnlyDelegate Finish = [bDone, Callback = std::move(Callback)](Maptorn::FModioErrorCode Result) {
		*bDone = true;
		if (Callback)
		{
			Callback(Result);
		}
	};
	if (UModioSubsystem* Subsystem = FindSubsystem())
	{
		Subsystem->ShutdownAsync(ErrorOnly(std::move(Finish)));
	}
	else
	{
		FailLater(std::move(Finish));
	}
	for (int32 Pump = 0; !*bDone && Pump < MaxShutdownPumps; ++Pump)
	{
		RunPendingHandlers();
		if (!*bDone)
		{
			FPlatformProcess::Sleep(ShutdownPumpSeconds);
		}
	}
}

void FEngineModioSession::RunPendingHandlers()
{
	if (UModioSubsystem* Subsystem = FindSubsystem())
	{
		Subsystem->RunPendingHandlers();
	}
	// Handlers queued while these run wait for the next round.
	std::vector<std::function<void()>> Ready;
	Ready.swap(PendingHandlers);
	for (std::function<void()>& Handler : Ready)
	{
		Handler();
	}
}

std::optional<Maptorn::FModioModProgressInfo> FEngineModioSession::QueryCurrentModUpdate()
{
	UModioSubsystem* Subsystem = FindSubsystem();
	if (!Subsystem)
	{
		return std::nullopt;
	}
	const TOptional<FModioModProgressInfo> Progress = Subsystem->QueryCurrentModUpdate();
	if (!Progress.IsSet())
	{
		return std::nullopt;
	}
	return ToCore(Progress.GetValue());
}

std::string FEngineModioSession::GetAuthTokenAsString()
{
	return {};
}

bool FEngineModioSession::ListUserCreatedModsAsync(Maptorn::FOnListUserCreatedModsDelegate Callback)
{
	UModioSubsystem* Subsystem = FindSubsystem();
	if (!Subsystem)
	{
		return false;
	}
	Subsystem->ListUserCreatedModsAsync(FModioFilterParams(), FOnListUserCreatedModsDelegateFast::CreateLambda(
		[Alive = std::weak_ptr<bool>(Lifetime), Callback = std::move(Callback)](FModioErrorCode Result, TOptional<FModioModInfoList> Mods) {
			if (Alive.expired() || !Callback)
			{
				return;
			}
			std::optional<std::vector<Maptorn::FModioModInfo>> Converted;
			if (!Result && Mods.IsSet())
			{
				Converted = ToCore(Mods.GetValue());
			}
			Callback(ToCore(Result), std::move(Converted));
		}));
	return true;
}

bool FEngineModioSession::GetModLogoAsync(Maptorn::FModioModID Mod, Maptorn::FOnGetModLogoDelegate Callback)
{
	UModioSubsystem* Subsystem = FindSubsystem();
	if (!Subsystem)
	{
		return false;
	}
	Subsystem->GetModMediaAsync(FModioModID(Mod), EModioLogoSize::Thumb320, FOnGetMediaDelegateFast::CreateLambda(
		[Alive = std::weak_ptr<bool>(Lifetime), Callback = std::move(Callback)](FModioErrorCode Result, TOptional<FModioImageWrapper> Image) {
			if (Alive.expired() || !Callback)
			{
				return;
			}
			std::optional<std::string> Path;
			if (!Result && Image.IsSet())
			{
				Path = MaptornString::ToStd(Image.GetValue().ImagePath);
			}
			Callback(ToCore(Result), std::move(Path));
		}));
	return true;
}

Maptorn::FModioModCreationHandle FEngineModioSession::GetModCreationHandle()
{
	const Maptorn::FModioModCreationHandle Handle{++LastCreationHandle};
	if (UModioSubsystem* Subsystem = FindSubsystem())
	{
		CreationHandles[Handle.Value] = Subsystem->GetModCreationHandle();
	}
	return Handle;
}

void FEngineModioSession::SubmitNewModAsync(Maptorn::FModioModCreationHandle Handle, const Maptorn::FModioCreateModParams& Params,
	Maptorn::FOnSubmitNewModDelegate Callback)
{
	UModioSubsystem* Subsystem = FindSubsystem();
	const auto Found = CreationHandles.find(Handle.Value);
	if (!Subsystem || Found == CreationHandles.end())
	{
		Post([Callback = std::move(Callback)] {
			if (Callback)
			{
				Callback(NoSubsystemError(), std::nullopt);
			}
		});
		return;
	}
	// A handle serves one submission.
	const FModioModCreationHandle EngineHandle = Found->second;
	CreationHandles.erase(Found);
	Subsystem->SubmitNewModAsync(EngineHandle, ToEngine(Params), FOnSubmitNewModDelegateFast::CreateLambda(
		[Alive = std::weak_ptr<bool>(Lifetime), Callback = std::move(Callback)](FModioErrorCode Result, TOptional<FModioModID> NewId) {
			if (!Alive.expired() && Callback)
			{
				Callback(ToCore(Result), NewId.IsSet() ? std::optional<Maptorn::FModioModID>(ToCore(NewId.GetValue())) : std::nullopt);
			}
		}));
}

void FEngineModioSession::SubmitModChangesAsync(Maptorn::FModioModID Mod, const Maptorn::FModioEditModParams& Params,
	Maptorn::FOnSubmitModChangesDelegate Callback)
{
	UModioSubsystem* Subsystem = FindSubsystem();
	if (!Subsystem)
	{
		Post([Callback = std::move(Callback)] {
			if (Callback)
			{
				Callback(NoSubsystemError(), std::nullopt);
			}
		});
		return;
	}
	Subsystem->SubmitModChangesAsync(ToEngine(Mod), ToEngine(Params), FOnGetModInfoDelegateFast::CreateLambda(
		[Alive = std::weak_ptr<bool>(Lifetime), Callback = std::move(Callback)](FModioErrorCode Result, TOptional<FModioModInfo> Info) {
			if (!Alive.expired() && Callback)
			{
				Callback(ToCore(Result), Info.IsSet() ? std::optional<Maptorn::FModioModInfo>(ToCore(Info.GetValue())) : std::nullopt);
			}
		}));
}

void FEngineModioSession::SubmitNewModFileForMod(Maptorn::FModioModID Mod, const Maptorn::FModioCreateModFileParams& Params)
{
	if (UModioSubsystem* Subsystem = FindSubsystem())
	{
		Subsystem->SubmitNewModFileForMod(ToEngine(Mod), ToEngine(Params));
		return;
	}
	// The upload's end is always an Uploaded event, also when it could not start.
	Post([this, Mod] {
		if (ModManagementCallback)
		{
			ModManagementCallback(Maptorn::FModioModManagementEvent{Mod, Maptorn::EModioModManagementEventType::Uploaded, NoSubsystemError()});
		}
	});
}
