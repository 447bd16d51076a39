#pragma once

#include "Common/CoreTypes.h"
#include "Common/TickTimers.h"
#include "Platform/HttpPort.h"
#include "Platform/LogPort.h"

#include <memory>

namespace Maptorn
{
// The host's HTTP with mod.io's rate limit and passing faults ridden out, so that every request
// of the client gets the same patience. A request answered 429 is sent again after the
// "retry-after" seconds, whatever its verb (it did not happen); a read that met a broken
// connection or a 502/503/504 is sent again after a short backoff, unless its body was going
// into a file (the caller knows what arrived and resumes itself). Bounded both ways; the last
// answer then reaches the caller as it came. Waits run on Timers, that is on the owner's tick.
class MAPTORNCORE_API FRetryingHttp final : public IMaptornHttp
{
public:
    // Log, when given, hears of every wait ("mod.io asks to wait 3 s").
    FRetryingHttp(IMaptornHttp& InInner, FTickTimers& InTimers, IMaptornLog* InLog);
    ~FRetryingHttp() override;
    FRetryingHttp(const FRetryingHttp&) = delete;
    FRetryingHttp& operator=(const FRetryingHttp&) = delete;

    FHttpRequestPtr CreateRequest() override;

    // What the requests share; they hold it weakly, so none outlives the ports it uses.
    struct FShared;

private:
    std::shared_ptr<FShared> Shared;
};
}
