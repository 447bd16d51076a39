// The recording UModioSubsystem and the plug-in's small value types, for the editor tests.

#include "Surface/RecordingModioSubsystem.h"

#include "Platform/StringConversion.h"

#include <algorithm>

namespace
{
FModioErrorCode Success()
{
	return FModioErrorCode();
}

// The scripted error of Call, once; success otherwise.
FModioErrorCode TakeResult(const std::string& Call)
{
	auto& Errors = RecordingModio::Get().ScriptedErrors;
	const auto Found = Errors.find(Call);
	if (Found == Errors.end())
	{
		return Success();
	}
	const FModioErrorCode Result(Found->second);
	Errors.erase(Found);
	return Result;
}

void Record(const std::string& Call)
{
	RecordingModio::Get().Calls.push_back(Call);
}

void Queue(std::function<void()> Completion)
{
	RecordingModio::Get().Pending.push_back(std::move(Completion));
}

void CompleteErrorOnly(const std::string& Call, FOnErrorOnlyDelegateFast Callback, std::function<void(bool)> OnResult = {})
{
	Record(Call);
	const FModioErrorCode Result = TakeResult(Call);
	Queue([Callback, Result, OnResult] {
		if (OnResult)
		{
			OnResult(!Result);
		}
		Callback.ExecuteIfBound(Result);
	});
}

}

namespace RecordingModio
{
FState& Get()
{
	static FState State;
	return State;
}

void Reset()
{
	Get() = FState();
	static FRecordingModioBackend Backend;
	SurfaceEngine::SetModioBackend(&Backend);
}

void FinishUpload(int64 Mod, std::optional<Modio::ErrorCode> Error)
{
	Get().Progress.reset();
	const FModioErrorCode Status = Error ? FModioErrorCode(*Error) : Success();
	Queue([Mod, Status] {
		FModioModManagementEvent Event;
		Event.ID = FModioModID(Mod);
		Event.Event = EModioModManagementEventType::Uploaded;
		Event.Status = Status;
		Get().ModManagement.ExecuteIfBound(Event);
	});
}

int32 CountCalls(const std::string& Name)
{
	return static_cast<int32>(std::count(Get().Calls.begin(), Get().Calls.end(), Name));
}
}

// The recording backend.

void FRecordingModioBackend::InitializeAsync(const FModioInitializeOptions& InitializeOptions, FOnErrorOnlyDelegateFast OnInitComplete)
{
	RecordingModio::Get().InitOptions = InitializeOptions;
	CompleteErrorOnly("InitializeAsync", OnInitComplete, [](bool bOk) { RecordingModio::Get().bInitialized = bOk; });
}

void FRecordingModioBackend::SetLogLevel(EModioLogLevel UnrealLogLevel)
{
	Record("SetLogLevel");
	RecordingModio::Get().LogLevel = UnrealLogLevel;
}

void FRecordingModioBackend::RunPendingHandlers()
{
	RecordingModio::FState& State = RecordingModio::Get();
	++State.PumpCount;
	std::vector<std::function<void()>> Ready;
	Ready.swap(State.Pending);
	for (std::function<void()>& Completion : Ready)
	{
		Completion();
	}
}

void FRecordingModioBackend::ShutdownAsync(FOnErrorOnlyDelegateFast OnShutdownComplete)
{
	CompleteErrorOnly("ShutdownAsync", OnShutdownComplete, [](bool) { RecordingModio::Get().bInitialized = false; });
}

FModioErrorCode FRecordingModioBackend::EnableModManagement(FOnModManagementDelegateFast Callback)
{
	Record("EnableModManagement");
	RecordingModio::Get().ModManagement = Callback;
	return TakeResult("EnableModManagement");
}

TOptional<FModioModProgressInfo> FRecordingModioBackend::QueryCurrentModUpdate()
{
	const auto& Progress = RecordingModio::Get().Progress;
	return Progress ? TOptional<FModioModProgressInfo>(ToUnreal(*Progress)) : TOptional<FModioModProgressInfo>();
}

FModioModCreationHandle FRecordingModioBackend::GetModCreationHandle()
{
	Record("GetModCreationHandle");
	return ToUnreal(Modio::ModCreationHandle{++RecordingModio::Get().LastHandle * 100});
}

void FRecordingModioBackend::SubmitNewModAsync(FModioModCreationHandle Handle, FModioCreateModParams Params, FOnSubmitNewModDelegateFast Callback)
{
	Record("SubmitNewModAsync");
	RecordingModio::FState& State = RecordingModio::Get();
	State.HandlesSubmitted.push_back(ToModio(Handle).Value);
	State.CreateParams.push_back(Params);
	const FModioErrorCode Result = TakeResult("SubmitNewModAsync");
	const int64 NewId = State.NextNewModId;
	Queue([Callback, Result, NewId] {
		Callback.ExecuteIfBound(Result, Result ? TOptional<FModioModID>() : TOptional<FModioModID>(FModioModID(NewId)));
	});
}

void FRecordingModioBackend::SubmitNewModFileForMod(FModioModID Mod, FModioCreateModFileParams Params)
{
	Record("SubmitNewModFileForMod");
	const int64 Id = FCString::Atoi64(*Mod.ToString());
	RecordingModio::Get().ModFiles.emplace_back(Id, Params);
	RecordingModio::Get().Progress = Modio::ModProgressInfo{Id, EModioModProgressState::Compressing, 0, 1};
}

void FRecordingModioBackend::SubmitModChangesAsync(FModioModID Mod, FModioEditModParams Params, FOnGetModInfoDelegateFast Callback)
{
	Record("SubmitModChangesAsync");
	RecordingModio::Get().EditParams.emplace_back(FCString::Atoi64(*Mod.ToString()), Params);
	const FModioErrorCode Result = TakeResult("SubmitModChangesAsync");
	Queue([Callback, Result, Mod] {
		TOptional<FModioModInfo> Info;
		if (!Result)
		{
			Info.Emplace().ModId = Mod;
		}
		Callback.ExecuteIfBound(Result, Info);
	});
}

void FRecordingModioBackend::RequestEmailAuthCodeAsync(const FModioEmailAddress& EmailAddress, FOnErrorOnlyDelegateFast Callback)
{
	RecordingModio::Get().Emails.push_back(MaptornString::ToStd(EmailAddress.ToString()));
	CompleteErrorOnly("RequestEmailAuthCodeAsync", Callback);
}

void FRecordingModioBackend::AuthenticateUserEmailAsync(const FModioEmailAuthCode& AuthenticationCode, FOnErrorOnlyDelegateFast Callback)
{
	RecordingModio::Get().Codes.push_back(MaptornString::ToStd(AuthenticationCode.ToString()));
	CompleteErrorOnly("AuthenticateUserEmailAsync", Callback, [](bool bOk) { RecordingModio::Get().bLoggedIn |= bOk; });
}

void FRecordingModioBackend::VerifyUserAuthenticationAsync(FOnErrorOnlyDelegateFast Callback)
{
	// Without a stored login the plug-in answers as mod.io's SDK does: no authenticated user.
	if (!RecordingModio::Get().bLoggedIn && !RecordingModio::Get().ScriptedErrors.count("VerifyUserAuthenticationAsync"))
	{
		RecordingModio::Get().ScriptedErrors["VerifyUserAuthenticationAsync"] = Modio::ErrorCode{21773, "User is not authenticated"};
	}
	CompleteErrorOnly("VerifyUserAuthenticationAsync", Callback);
}

void FRecordingModioBackend::ClearUserDataAsync(FOnErrorOnlyDelegateFast Callback)
{
	CompleteErrorOnly("ClearUserDataAsync", Callback, [](bool bOk) { RecordingModio::Get().bLoggedIn &= !bOk; });
}

void FRecordingModioBackend::ListUserCreatedModsAsync(FModioFilterParams /*Filter*/, FOnListUserCreatedModsDelegateFast Callback)
{
	Record("ListUserCreatedModsAsync");
	const FModioErrorCode Result = TakeResult("ListUserCreatedModsAsync");
	FModioModInfoList Mods;
	for (const FModioModInfo& Mod : RecordingModio::Get().UserMods)
	{
		Mods.InternalList.Add(Mod);
	}
	Queue([Callback, Result, Mods] {
		Callback.ExecuteIfBound(Result, Result ? TOptional<FModioModInfoList>() : TOptional<FModioModInfoList>(Mods));
	});
}

void FRecordingModioBackend::GetModMediaAsync(FModioModID /*ModId*/, EModioLogoSize /*LogoSize*/, FOnGetMediaDelegateFast Callback)
{
	Record("GetModMediaAsync");
	Queue([Callback] {
		Callback.ExecuteIfBound(FModioErrorCode(Modio::ErrorCode{21506, "Mod media could not be found"}), TOptional<FModioImageWrapper>());
	});
}
