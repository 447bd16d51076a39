#pragma once

#include "Common/CoreTypes.h"
#include "Modio/ModioSdkTypes.h"

#include <optional>
#include <string>

namespace Maptorn::ModioRest
{
// SDK error values the REST session answers with besides ModioErrorValue's, from the public SDK's
// error categories. Errors the service reports carry its error_ref as their value.
namespace ErrorValue
{
inline constexpr int32 NoAuthToken = 20994;      // UserAuthError: no user is logged in
inline constexpr int32 BadParameter = 21761;     // GenericError: a game id, API key, logo or folder missing or unusable
inline constexpr int32 SdkNotInitialized = 21769; // GenericError: not initialised, or shut down
// mod.io's error_ref for a multipart nonce whose session has completed.
inline constexpr int32 NonceOfCompletedSession = 29002;
// Ours, numbered apart from the SDK's categories and mod.io's error refs.
inline constexpr int32 UploadAlreadyRunning = 31001; // a mod file is being submitted already
inline constexpr int32 ArchiveFailed = 31002;        // the folder could not be packed, or its temporary files written
inline constexpr int32 ChecksumMismatch = 31003;     // the modfile mod.io answered is not the archive sent
}

// Request builders: pure, so tests can compare what goes on the wire byte for byte.

// mod.io's own origin for a game: "https://g-<gameid>.modapi.io".
std::string DefaultBaseUrl(int64 GameId);
// The configured origin without trailing "/" and without one "/v1" (a game's API page shows the
// URL with it; every path here starts with "/v1"), or the default one when empty.
std::string ResolveBaseUrl(const std::string& ConfiguredBaseUrl, int64 GameId);

std::string EmailRequestUrl(const std::string& BaseUrl, const std::string& ApiKey);
std::string EmailRequestBody(const std::string& EmailAddress);
std::string EmailExchangeUrl(const std::string& BaseUrl, const std::string& ApiKey);
std::string EmailExchangeBody(const std::string& SecurityCode);
std::string MeUrl(const std::string& BaseUrl);
std::string LogoutUrl(const std::string& BaseUrl);

// Answer readers: a malformed answer is an error, never a crash.

struct FAccessToken
{
    std::string Token;
    int64 DateExpires = 0;
};

// The token of an e-mail exchange answer; empty when there is none.
std::optional<FAccessToken> ReadAccessToken(const std::string& Body);

// True when the body is a user object (a JSON object with an id).
bool IsUserObject(const std::string& Body);

// The error an answer other than 2xx stands for: its error_ref as the value (HttpRequestFailed
// when the body is not a mod.io error), and as message mod.io's message, the status, the ref and
// each field error of a 422. Never quotes the request.
FModioErrorCode ErrorFromAnswer(int32 Status, const std::string& Body);

// A transfer that never got an answer.
FModioErrorCode TransportFailure();
// A 2xx answer whose body is not what the request gives.
FModioErrorCode UnexpectedAnswer();
}
