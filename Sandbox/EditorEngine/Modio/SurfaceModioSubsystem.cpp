// The stand-in engine's GEngine and the mod.io plug-in's value types; UModioSubsystem forwards every
// call to the backend in use.

#include "EditorEngine/Modio/SurfaceModio.h"

#include "Engine/Engine.h"
#include "Platform/StringConversion.h"

namespace
{
UModioSubsystem* GModioSubsystem = nullptr;
IModioSubsystemBackend* GModioBackend = nullptr;

IModioSubsystemBackend& Backend()
{
	check(GModioBackend);
	return *GModioBackend;
}
}

namespace SurfaceEngine
{
void SetModioSubsystem(UModioSubsystem* Subsystem)
{
	GModioSubsystem = Subsystem;
}

void SetModioBackend(IModioSubsystemBackend* Backend)
{
	GModioBackend = Backend;
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
	Backend().InitializeAsync(InitializeOptions, OnInitComplete);
}

void UModioSubsystem::SetLogLevel(EModioLogLevel UnrealLogLevel)
{
	Backend().SetLogLevel(UnrealLogLevel);
}

void UModioSubsystem::RunPendingHandlers()
{
	Backend().RunPendingHandlers();
}

void UModioSubsystem::ShutdownAsync(FOnErrorOnlyDelegateFast OnShutdownComplete)
{
	Backend().ShutdownAsync(OnShutdownComplete);
}

FModioErrorCode UModioSubsystem::EnableModManagement(FOnModManagementDelegateFast Callback)
{
	return Backend().EnableModManagement(Callback);
}

TOptional<FModioModProgressInfo> UModioSubsystem::QueryCurrentModUpdate()
{
	return Backend().QueryCurrentModUpdate();
}

FModioModCreationHandle UModioSubsystem::GetModCreationHandle()
{
	return Backend().GetModCreationHandle();
}

void UModioSubsystem::SubmitNewModAsync(FModioModCreationHandle Handle, FModioCreateModParams Params, FOnSubmitNewModDelegateFast Callback)
{
	Backend().SubmitNewModAsync(Handle, Params, Callback);
}

void UModioSubsystem::SubmitNewModFileForMod(FModioModID Mod, FModioCreateModFileParams Params)
{
	Backend().SubmitNewModFileForMod(Mod, Params);
}

void UModioSubsystem::SubmitModChangesAsync(FModioModID Mod, FModioEditModParams Params, FOnGetModInfoDelegateFast Callback)
{
	Backend().SubmitModChangesAsync(Mod, Params, Callback);
}

void UModioSubsystem::RequestEmailAuthCodeAsync(const FModioEmailAddress& EmailAddress, FOnErrorOnlyDelegateFast Callback)
{
	Backend().RequestEmailAuthCodeAsync(EmailAddress, Callback);
}

void UModioSubsystem::AuthenticateUserEmailAsync(const FModioEmailAuthCode& AuthenticationCode, FOnErrorOnlyDelegateFast Callback)
{
	Backend().AuthenticateUserEmailAsync(AuthenticationCode, Callback);
}

void UModioSubsystem::VerifyUserAuthenticationAsync(FOnErrorOnlyDelegateFast Callback)
{
	Backend().VerifyUserAuthenticationAsync(Callback);
}

void UModioSubsystem::ClearUserDataAsync(FOnErrorOnlyDelegateFast Callback)
{
	Backend().ClearUserDataAsync(Callback);
}

void UModioSubsystem::ListUserCreatedModsAsync(FModioFilterParams Filter, FOnListUserCreatedModsDelegateFast Callback)
{
	Backend().ListUserCreatedModsAsync(Filter, Callback);
}

void UModioSubsystem::GetModMediaAsync(FModioModID ModId, EModioLogoSize LogoSize, FOnGetMediaDelegateFast Callback)
{
	Backend().GetModMediaAsync(ModId, LogoSize, Callback);
}
