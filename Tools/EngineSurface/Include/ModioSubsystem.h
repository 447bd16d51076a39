#pragma once
// Reference: modio-ue Source/Modio/Public/ModioSubsystem.h (UModioSubsystem and its native delegates), the 2024
// releases, whose last for UE 5.1 is 2024.6. Only the members the workshop calls are declared.

#include "CoreMinimal.h"
#include "Subsystems/EngineSubsystem.h"
#include "Types/ModioCommonTypes.h"
#include "Types/ModioCreateModFileParams.h"
#include "Types/ModioCreateModParams.h"
#include "Types/ModioEditModParams.h"
#include "Types/ModioErrorCode.h"
#include "Types/ModioFilterParams.h"
#include "Types/ModioImageWrapper.h"
#include "Types/ModioInitializeOptions.h"
#include "Types/ModioModCreationHandle.h"
#include "Types/ModioModInfo.h"
#include "Types/ModioModInfoList.h"
#include "Types/ModioModManagementEvent.h"
#include "Types/ModioModProgressInfo.h"

#include "ModioSubsystem.generated.h"

DECLARE_DELEGATE_OneParam(FOnErrorOnlyDelegateFast, FModioErrorCode);
DECLARE_DELEGATE_OneParam(FOnModManagementDelegateFast, FModioModManagementEvent);
DECLARE_DELEGATE_TwoParams(FOnGetModInfoDelegateFast, FModioErrorCode, TOptional<FModioModInfo>);
DECLARE_DELEGATE_TwoParams(FOnSubmitNewModDelegateFast, FModioErrorCode, TOptional<FModioModID>);
DECLARE_DELEGATE_TwoParams(FOnListUserCreatedModsDelegateFast, FModioErrorCode, TOptional<FModioModInfoList>);
DECLARE_DELEGATE_TwoParams(FOnGetMediaDelegateFast, FModioErrorCode, TOptional<FModioImageWrapper>);

// Every completion runs inside RunPendingHandlers, which the host calls every frame, also while
// InitializeAsync and ShutdownAsync run.
UCLASS(MinimalAPI)
class UModioSubsystem : public UEngineSubsystem
{
	GENERATED_BODY()

public:
	MODIO_API void InitializeAsync(const FModioInitializeOptions& InitializeOptions, FOnErrorOnlyDelegateFast OnInitComplete);
	MODIO_API void SetLogLevel(EModioLogLevel UnrealLogLevel);
	MODIO_API void RunPendingHandlers();
	MODIO_API void ShutdownAsync(FOnErrorOnlyDelegateFast OnShutdownComplete);

	MODIO_API FModioErrorCode EnableModManagement(FOnModManagementDelegateFast Callback);
	MODIO_API TOptional<FModioModProgressInfo> QueryCurrentModUpdate();

	MODIO_API FModioModCreationHandle GetModCreationHandle();
	MODIO_API void SubmitNewModAsync(FModioModCreationHandle Handle, FModioCreateModParams Params, FOnSubmitNewModDelegateFast Callback);
	// Queues the upload; its end arrives as an Uploaded mod-management event.
	MODIO_API void SubmitNewModFileForMod(FModioModID Mod, FModioCreateModFileParams Params);
	MODIO_API void SubmitModChangesAsync(FModioModID Mod, FModioEditModParams Params, FOnGetModInfoDelegateFast Callback);

	MODIO_API void RequestEmailAuthCodeAsync(const FModioEmailAddress& EmailAddress, FOnErrorOnlyDelegateFast Callback);
	MODIO_API void AuthenticateUserEmailAsync(const FModioEmailAuthCode& AuthenticationCode, FOnErrorOnlyDelegateFast Callback);
	MODIO_API void VerifyUserAuthenticationAsync(FOnErrorOnlyDelegateFast Callback);
	MODIO_API void ClearUserDataAsync(FOnErrorOnlyDelegateFast Callback);

	// The mods the logged-in user submitted or is a team member of, for the current game.
	MODIO_API void ListUserCreatedModsAsync(FModioFilterParams Filter, FOnListUserCreatedModsDelegateFast Callback);

	// Downloads the mod's logo into the plug-in's cache, or answers the file already there.
	MODIO_API void GetModMediaAsync(FModioModID ModId, EModioLogoSize LogoSize, FOnGetMediaDelegateFast Callback);
};
