#pragma once

#include "Common/CoreTypes.h"

#include <functional>
#include <vector>

namespace Maptorn
{
// Work put off for some seconds of the host's tick time. Nothing sleeps: the owner's tick hands
// the frame's delta time to Tick, which runs what is due, so tests decide how fast time passes.
class MAPTORNCORE_API FTickTimers
{
public:
    void After(float Seconds, std::function<void()> Work);
    void Tick(float DeltaTime);
    bool IsEmpty() const { return Pending.empty(); }

private:
    struct FTimer
    {
        float Remaining = 0.0f;
        std::function<void()> Work;
    };
    std::vector<FTimer> Pending;
};
}
