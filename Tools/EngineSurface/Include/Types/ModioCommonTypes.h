#pragma once
// Reference: modio-ue Source/Modio/Public/Types/ModioCommonTypes.h (2024 releases: EModioEnvironment, EModioLogLevel,
// EModioModfilePlatform, EModioLogoSize, FModioModID, FModioGameID, FModioApiKey, FModioEmailAddress, FModioEmailAuthCode)

#include "CoreMinimal.h"
#include "UObject/ObjectMacros.h"

#include "ModioCommonTypes.generated.h"

UENUM(BlueprintType)
enum class EModioEnvironment : uint8
{
	Test,
	Live
};

UENUM(BlueprintType)
enum class EModioLogLevel : uint8
{
	Trace = 0,
	Info = 1,
	Warning = 2,
	Error = 3
};

UENUM(BlueprintType)
enum class EModioModfilePlatform : uint8
{
	Windows,
	Mac,
	Linux,
	Android,
	iOS,
	XboxOne,
	XboxSeriesX,
	PS4,
	PS5,
	Switch,
	Oculus,
	Source
};

UENUM(BlueprintType)
enum class EModioLogoSize : uint8
{
	Thumb320 = 0,
	Thumb640 = 1,
	Thumb1280 = 2,
	Original = 3
};

// The id's number is private in the plug-in: ToString ("InvalidModID" below 0) is the way out.
USTRUCT(BlueprintType)
struct MODIO_API FModioModID
{
	GENERATED_BODY()

public:
	FModioModID();
	explicit FModioModID(int64 InModId);
	FString ToString() const;

private:
	int64 ModID;
};

USTRUCT(BlueprintType)
struct MODIO_API FModioGameID
{
	GENERATED_BODY()

public:
	FModioGameID();
	explicit FModioGameID(int64 InGameId);
	FString ToString() const;

private:
	int64 GameId;
};

USTRUCT(BlueprintType)
struct MODIO_API FModioApiKey
{
	GENERATED_BODY()

public:
	FModioApiKey() = default;
	explicit FModioApiKey(const FString& InApiKey);
	const FString& ToString() const;

private:
	FString ApiKey;
};

USTRUCT(BlueprintType)
struct MODIO_API FModioEmailAddress
{
	GENERATED_BODY()

public:
	FModioEmailAddress() = default;
	FModioEmailAddress(const FString& InEmailAddress);
	const FString& ToString() const;

private:
	FString EmailAddress;
};

USTRUCT(BlueprintType)
struct MODIO_API FModioEmailAuthCode
{
	GENERATED_BODY()

public:
	FModioEmailAuthCode() = default;
	FModioEmailAuthCode(const FString& InEmailAuthCode);
	const FString& ToString() const;

private:
	FString EmailAuthCode;
};
