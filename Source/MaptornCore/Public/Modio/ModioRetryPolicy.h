#pragma once

#include "Common/CoreTypes.h"

#include <string>

namespace Maptorn::ModioRetry
{
// mod.io's rate limit answers 429 with "retry-after" seconds; a request that did not happen may
// be sent again whatever its verb. Idle servers and broken connections are worth another try
// only for reads, which change nothing when repeated.
inline constexpr float MaxWaitSeconds = 60.0f;
inline constexpr int32 MaxRateLimitWaits = 5;
inline constexpr int32 MaxTransientRetries = 3;

// The wait a "retry-after" value asks for: whole seconds, at most MaxWaitSeconds; 1 s when the
// value is missing or not a number.
MAPTORNCORE_API float RetryAfterSeconds(const std::string& HeaderValue);

// The pause before the transient retry of that index: 0.25 s, 0.5 s, 1 s.
MAPTORNCORE_API float BackoffSeconds(int32 RetryIndex);

enum class EVerdict
{
    Done,
    WaitForRateLimit,
    RetryTransient,
};

struct FAttempts
{
    int32 RateLimitWaits = 0;
    int32 TransientRetries = 0;
};

// What to do with an answer (Status 0 when the transfer got none). bRepeatableRead: a read that
// leaves nothing behind when it breaks off, so sending it again is the same request.
MAPTORNCORE_API EVerdict Judge(int32 Status, bool bConnected, bool bRepeatableRead, const FAttempts& Attempts);

// "mod.io asks to wait 3 s".
MAPTORNCORE_API std::string WaitText(float Seconds);
}
