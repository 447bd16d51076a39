#include "Modio/ModioRetryPolicy.h"

#include "Common/StringUtil.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace Maptorn::ModioRetry
{
float RetryAfterSeconds(const std::string& HeaderValue)
{
    const std::string Text = TrimWhitespace(HeaderValue);
    char* End = nullptr;
    const double Seconds = std::strtod(Text.c_str(), &End);
    if (Text.empty() || End == Text.c_str() || *End != '\0' || !std::isfinite(Seconds))
    {
        return 1.0f;
    }
    return static_cast<float>(std::clamp(std::ceil(Seconds), 0.0, static_cast<double>(MaxWaitSeconds)));
}

float BackoffSeconds(int32 RetryIndex)
{
    return 0.25f * static_cast<float>(1 << std::clamp(RetryIndex, 0, 6));
}

EVerdict Judge(int32 Status, bool bConnected, bool bRepeatableRead, const FAttempts& Attempts)
{
    if (bConnected && Status == 429)
    {
        return Attempts.RateLimitWaits < MaxRateLimitWaits ? EVerdict::WaitForRateLimit : EVerdict::Done;
    }
    const bool bTransient = !bConnected || Status == 502 || Status == 503 || Status == 504;
    return bTransient && bRepeatableRead && Attempts.TransientRetries < MaxTransientRetries ? EVerdict::RetryTransient : EVerdict::Done;
}

std::string WaitText(float Seconds)
{
    return Printf("mod.io asks to wait %d s", static_cast<int>(std::lround(Seconds)));
}
}
