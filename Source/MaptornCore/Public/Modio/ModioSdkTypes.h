#pragma once

#include "Common/CoreTypes.h"

#include <optional>
#include <string>
#include <vector>

namespace Maptorn
{
// The SDK's error values the workshop reacts to.
namespace ModioErrorValue
{
inline constexpr int32 UserAlreadyAuthenticated = 20993;
inline constexpr int32 HttpRequestFailed = 20489;
// GenericError: the SDK is not initialised, or has been shut down.
inline constexpr int32 SdkNotInitialized = 21769;
}

// An SDK result: true (an error) when Value is not zero.
struct MAPTORNCORE_API FModioErrorCode
{
    int32 Value = 0;
    std::string Message;

    explicit operator bool() const { return Value != 0; }
    int32 GetValue() const { return Value; }
    const std::string& GetErrorMessage() const { return Message; }
};

using FModioModID = int64;

enum class EModioEnvironment : uint8
{
    Test = 0,
    Live = 1,
};

enum class EModioLogLevel : uint8
{
    Trace = 0,
    Info = 1,
    Warning = 2,
    Error = 3,
};

// The SDK's mod-file platforms.
enum class EModioModfilePlatform : uint8
{
    Windows = 0,
    Mac = 1,
    Linux = 2,
    Android = 3,
    iOS = 4,
    XboxOne = 5,
    XboxSeriesX = 6,
    PS4 = 7,
    PS5 = 8,
    Switch = 9,
    Oculus = 10,
    Source = 11,
};

struct MAPTORNCORE_API FModioInitializeOptions
{
    int64 GameId = 0;
    std::string ApiKey;
    EModioEnvironment Environment = EModioEnvironment::Live;
    // The REST origin; mod.io's own per-game origin when empty.
    std::string BaseUrl;
};

struct MAPTORNCORE_API FModioCreateModParams
{
    std::string PathToLogoFile;
    std::string Name;
    std::string Summary;
    std::optional<std::vector<std::string>> Tags;
    std::optional<std::string> MetadataBlob;
};

struct MAPTORNCORE_API FModioEditModParams
{
    std::optional<std::string> Name;
    std::optional<std::string> Summary;
    std::optional<std::string> LogoPath;
    std::optional<std::vector<std::string>> Tags;
    std::optional<std::string> MetadataBlob;
};

struct MAPTORNCORE_API FModioCreateModFileParams
{
    std::string RootDirectory;
    std::optional<std::string> VersionString;
    std::optional<std::string> Changelog;
    std::optional<bool> bSetAsActive;
    std::optional<std::string> MetadataBlob;
    std::optional<std::vector<EModioModfilePlatform>> ModfilePlatforms;
};

struct MAPTORNCORE_API FModioModInfo
{
    FModioModID ModId = 0;
    std::string Name;
    std::string MetadataBlob;
    // Filled by a session that lists the user's mods itself (ListUserCreatedModsAsync); the
    // initialisers let the REST session keep its three-member aggregate form.
    std::string Summary{};
    std::string ProfileUrl{};
    std::string SubmittedBy{};
    std::vector<std::string> Tags{};
    // The current release's version text and size; empty and 0 without one.
    std::string FileVersion{};
    int64 FileSize = 0;
    // mod.io's status: 0 not accepted, 1 accepted, 3 deleted.
    int32 Status = 1;
};

// An opaque ticket for one mod creation.
struct MAPTORNCORE_API FModioModCreationHandle
{
    int64 Value = 0;
};

enum class EModioModManagementEventType : uint8
{
    Installed = 0,
    Uninstalled = 1,
    Updated = 2,
    Uploaded = 3,
};

struct MAPTORNCORE_API FModioModManagementEvent
{
    FModioModID ID = 0;
    EModioModManagementEventType Event = EModioModManagementEventType::Installed;
    FModioErrorCode Status;
};

enum class EModioModProgressState : uint8
{
    Initializing = 0,
    Downloading = 1,
    Extracting = 2,
    Compressing = 3,
    Uploading = 4,
};

struct MAPTORNCORE_API FModioModProgressInfo
{
    FModioModID ID = 0;
    EModioModProgressState State = EModioModProgressState::Initializing;
    int64 Current = 0;
    int64 Total = 0;

    EModioModProgressState GetCurrentState() const { return State; }
};

// The SDK library's percent helper: Current ÷ Total × 100, 0 when Total is 0.
MAPTORNCORE_API float Pct_Int64Int64(int64 Current, int64 Total);
}
