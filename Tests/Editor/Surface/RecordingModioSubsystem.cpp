// The recording UModioSubsystem and the plug-in's small value types, for the editor tests.

#include "Surface/RecordingModioSubsystem.h"

#include "Engine/Engine.h"
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

UModioSubsystem* GModioSubsystem = nullptr;
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

namespace SurfaceEngine
{
void SetModioSubsystem(UModioSubsystem* Subsystem)
{
	GModioSubsystem = Subsystem;
}

void SetEngineRunning(bool bRunning)
{
	static UEngine Engine;
	GEngine = bRunning ? &Engine : nullptr;
}
}

// The engine.

UEngine* GEngine = nullptr;

UEngineSubsystem* UEngine::GetEngineSubsystemBase(UClass* SubsystemClass) const
{
	return SubsystemClass == UModioSubsystem::StaticClass() ? GModioSubsystem : nullptr;
}

UClass* UModioSubsystem::StaticClass()
{
	static UClass Class;
	return &Class;
}

// The plug-in's value types.

FModioErrorCode::FModioErrorCode() = default;

FModioErrorCode::FModioErrorCode(const FModioErrorCode& Other)
{
	*this = Other;
}

FModioErrorCode::FModioErrorCode(Modio::ErrorCode ec)
{
	if (ec.Value != 0)
	{
		InternalError = MakeUnique<Modio::ErrorCode>(ec);
	}
}

FModioErrorCode& FModioErrorCode::operator=(const FModioErrorCode& ec)
{
	if (this != &ec)
	{
		InternalError = ec.InternalError ? MakeUnique<Modio::ErrorCode>(*ec.InternalError) : TUniquePtr<Modio::ErrorCode>();
	}
	return *this;
}

FModioErrorCode::~FModioErrorCode() = default;

FModioErrorCode::operator bool() const
{
	return InternalError.IsValid();
}

int FModioErrorCode::GetValue() const
{
	return InternalError ? InternalError->Value : 0;
}

FString FModioErrorCode::GetErrorMessage() const
{
	// The plug-in words a success too; the adapter must not pass it on as an error text.
	return MaptornString::ToFString(InternalError ? InternalError->Message : std::string("Success"));
}

FModioModID::FModioModID() : ModID(-1) {}
FModioModID::FModioModID(int64 InModId) : ModID(InModId) {}
FString FModioModID::ToString() const
{
	return ModID < 0 ? FString(TEXT("InvalidModID")) : MaptornString::ToFString(std::to_string(ModID));
}

FModioGameID::FModioGameID() : GameId(-1) {}
FModioGameID::FModioGameID(int64 InGameId) : GameId(InGameId) {}
FString FModioGameID::ToString() const
{
	return GameId < 0 ? FString(TEXT("InvalidGameID")) : MaptornString::ToFString(std::to_string(GameId));
}

FModioApiKey::FModioApiKey(const FString& InApiKey) : ApiKey(InApiKey) {}
const FString& FModioApiKey::ToString() const { return ApiKey; }
FModioEmailAddress::FModioEmailAddress(const FString& InEmailAddress) : EmailAddress(InEmailAddress) {}
const FString& FModioEmailAddress::ToString() const { return EmailAddress; }
FModioEmailAuthCode::FModioEmailAuthCode(const FString& InEmailAuthCode) : EmailAuthCode(InEmailAuthCode) {}
const FString& FModioEmailAuthCode::ToString() const { return EmailAuthCode; }

FModioUnsigned64::FModioUnsigned64() : Underlying(0) {}
FModioUnsigned64::FModioUnsigned64(uint64 Value) : Underlying(Value) {}

EModioModProgressState FModioModProgressInfo::GetCurrentState() const
{
	return CurrentState;
}

FModioUnsigned64 FModioModProgressInfo::GetCurrentProgress(EModioModProgressState State) const
{
	switch (State)
	{
	case EModioModProgressState::Downloading: return FModioUnsigned64(DownloadCurrent);
	case EModioModProgressState::Extracting: return FModioUnsigned64(ExtractCurrent);
	case EModioModProgressState::Compressing: return FModioUnsigned64(CompressCurrent);
	case EModioModProgressState::Uploading: return FModioUnsigned64(UploadCurrent);
	default: return FModioUnsigned64(0);
	}
}

FModioUnsigned64 FModioModProgressInfo::GetTotalProgress(EModioModProgressState State) const
{
	switch (State)
	{
	case EModioModProgressState::Downloading: return FModioUnsigned64(DownloadTotal);
	case EModioModProgressState::Extracting: return FModioUnsigned64(ExtractTotal);
	case EModioModProgressState::Compressing: return FModioUnsigned64(CompressTotal);
	case EModioModProgressState::Uploading: return FModioUnsigned64(UploadTotal);
	default: return FModioUnsigned64(0);
	}
}

// Only the running state has figures; the others read 0, so a mixed-up state shows.
FModioModProgressInfo ToUnreal(const Modio::ModProgressInfo& In)
{
	FModioModProgressInfo Out;
	Out.ID = FModioModID(In.Mod);
	Out.DownloadCurrent = Out.DownloadTotal = Out.ExtractCurrent = Out.ExtractTotal = 0;
	Out.CompressCurrent = Out.CompressTotal = Out.UploadCurrent = Out.UploadTotal = 0;
	Out.CurrentState = In.State;
	switch (In.State)
	{
	case EModioModProgressState::Downloading: Out.DownloadCurrent = In.Current; Out.DownloadTotal = In.Total; break;
	case EModioModProgressState::Extracting: Out.ExtractCurrent = In.Current; Out.ExtractTotal = In.Total; break;
	case EModioModProgressState::Compressing: Out.CompressCurrent = In.Current; Out.CompressTotal = In.Total; break;
	case EModioModProgressState::Uploading: Out.UploadCurrent = In.Current; Out.UploadTotal = In.Total; break;
	default: break;
	}
	return Out;
}

FModioModCreationHandle ToUnreal(const Modio::ModCreationHandle& In)
{
	FModioModCreationHandle Out;
	Out.Underlying = In.Value;
	return Out;
}

Modio::ModCreationHandle ToModio(const FModioModCreationHandle& In)
{
	return Modio::ModCreationHandle{In.Underlying};
}

// The subsystem.

void UModioSubsystem::InitializeAsync(const FModioInitializeOptions& InitializeOptions, FOnErrorOnlyDelegateFast OnInitComplete)
{
	RecordingModio::Get().InitOptions = InitializeOptions;
	CompleteErrorOnly("InitializeAsync", OnInitComplete, [](bool bOk) { RecordingModio::Get().bInitialized = bOk; });
}

void UModioSubsystem::SetLogLevel(EModioLogLevel UnrealLogLevel)
{
	Record("SetLogLevel");
	RecordingModio::Get().LogLevel = UnrealLogLevel;
}

void UModioSubsystem::RunPendingHandlers()
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

void UModioSubsystem::ShutdownAsync(FOnErrorOnlyDelegateFast OnShutdownComplete)
{
	CompleteErrorOnly("ShutdownAsync", OnShutdownComplete, [](bool) { RecordingModio::Get().bInitialized = false; });
}

FModioErrorCode UModioSubsystem::EnableModManagement(FOnModManagementDelegateFast Callback)
{
	Record("EnableModManagement");
	RecordingModio::Get().ModManagement = Callback;
	return TakeResult("EnableModManagement");
}

TOptional<FModioModProgressInfo> UModioSubsystem::QueryCurrentModUpdate()
{
	const auto& Progress = RecordingModio::Get().Progress;
	return Progress ? TOptional<FModioModProgressInfo>(ToUnreal(*Progress)) : TOptional<FModioModProgressInfo>();
}

FModioModCreationHandle UModioSubsystem::GetModCreationHandle()
{
	Record("GetModCreationHandle");
	return ToUnreal(Modio::ModCreationHandle{++RecordingModio::Get().LastHandle * 100});
}

void UModioSubsystem::SubmitNewModAsync(FModioModCreationHandle Handle, FModioCreateModParams Params, FOnSubmitNewModDelegateFast Callback)
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

void UModioSubsystem::SubmitNewModFileForMod(FModioModID Mod, FModioCreateModFileParams Params)
{
	Record("SubmitNewModFileForMod");
	const int64 Id = FCString::Atoi64(*Mod.ToString());
	RecordingModio::Get().ModFiles.emplace_back(Id, Params);
	RecordingModio::Get().Progress = Modio::ModProgressInfo{Id, EModioModProgressState::Compressing, 0, 1};
}

void UModioSubsystem::SubmitModChangesAsync(FModioModID Mod, FModioEditModParams Params, FOnGetModInfoDelegateFast Callback)
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

void UModioSubsystem::RequestEmailAuthCodeAsync(const FModioEmailAddress& EmailAddress, FOnErrorOnlyDelegateFast Callback)
{
	RecordingModio::Get().Emails.push_back(MaptornString::ToStd(EmailAddress.ToString()));
	CompleteErrorOnly("RequestEmailAuthCodeAsync", Callback);
}

void UModioSubsystem::AuthenticateUserEmailAsync(const FModioEmailAuthCode& AuthenticationCode, FOnErrorOnlyDelegateFast Callback)
{
	RecordingModio::Get().Codes.push_back(MaptornString::ToStd(AuthenticationCode.ToString()));
	CompleteErrorOnly("AuthenticateUserEmailAsync", Callback, [](bool bOk) { RecordingModio::Get().bLoggedIn |= bOk; });
}

void UModioSubsystem::VerifyUserAuthenticationAsync(FOnErrorOnlyDelegateFast Callback)
{
	// Without a stored login the plug-in answers as mod.io's SDK does: no authenticated user.
	if (!RecordingModio::Get().bLoggedIn && !RecordingModio::Get().ScriptedErrors.count("VerifyUserAuthenticationAsync"))
	{
		RecordingModio::Get().ScriptedErrors["VerifyUserAuthenticationAsync"] = Modio::ErrorCode{21773, "User is not authenticated"};
	}
	CompleteErrorOnly("VerifyUserAuthenticationAsync", Callback);
}

void UModioSubsystem::ClearUserDataAsync(FOnErrorOnlyDelegateFast Callback)
{
	CompleteErrorOnly("ClearUserDataAsync", Callback, [](bool bOk) { RecordingModio::Get().bLoggedIn &= !bOk; });
}

void UModioSubsystem::ListUserCreatedModsAsync(FModioFilterParams /*Filter*/, FOnListUserCreatedModsDelegateFast Callback)
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
