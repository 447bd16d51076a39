#pragma once

#include "Common/CoreTypes.h"

#include <map>
#include <string>

namespace Maptorn::Sandbox
{
// mod.io's error refs the service answers with.
namespace ErrorRef
{
inline constexpr int32 None = 0;
inline constexpr int32 ServiceOutage = 10000;
inline constexpr int32 ApiKeyMissing = 11000;
inline constexpr int32 ApiKeyMalformed = 11001;
inline constexpr int32 ApiKeyInvalid = 11002;
inline constexpr int32 TokenExpiredOrRevoked = 11005;
inline constexpr int32 RateLimited = 11008;
inline constexpr int32 SecurityCodeUsed = 11011;
inline constexpr int32 SecurityCodeExpired = 11012;
inline constexpr int32 SecurityCodeInvalid = 11014;
inline constexpr int32 LoginRequired = 11059;
inline constexpr int32 UnsupportedContentType = 13001; // our pick for 415
inline constexpr int32 ValidationFailed = 13009;
inline constexpr int32 NotFound = 14000;
inline constexpr int32 GameNotFound = 14001;
inline constexpr int32 ModfileNotFound = 15010;
inline constexpr int32 ModNotFound = 15022;
inline constexpr int32 ModDeleted = 15023;
inline constexpr int32 NoPermission = 15024;
inline constexpr int32 AdminOnlyFilter = 15025;
inline constexpr int32 MethodNotAllowed = 14002; // our pick for 405
inline constexpr int32 NonceOfCompletedSession = 29002;
inline constexpr int32 RangeMissing = 29008;
inline constexpr int32 RangeUnitNotBytes = 29009;
inline constexpr int32 RangeWildcard = 29010;
inline constexpr int32 RangeNotNumeric = 29011;
inline constexpr int32 RangeBadPattern = 29012;
inline constexpr int32 RangeWrongPartSize = 29013;
inline constexpr int32 RangeEndNotAfterStart = 29014;
inline constexpr int32 RangeAlreadyUploaded = 29015;
inline constexpr int32 RangeFinalEndNotTotal = 29026;
}

struct FApiError
{
    int32 Status = 500;
    int32 Ref = ErrorRef::None;
    std::string Message;
    std::map<std::string, std::string> Fields; // the `errors` object; sent on 422 only
};

FApiError MakeError(int32 Status, int32 Ref, std::string Message);
// 422 ref 13009 with no invalid input named yet; routes add a field per problem.
FApiError ValidationFailure();
// 422 ref 13009 with one invalid input.
FApiError ValidationError(const std::string& Field, const std::string& Message);
// What an injected status fault answers: the ref mod.io uses for that status.
FApiError FaultError(int32 Status);

// {"error":{"code":..,"error_ref":..,"message":"..","errors":{..}}}
std::string ErrorBodyOf(const FApiError& Error);
}
