#include "Common/TickTimers.h"

#include <utility>

namespace Maptorn
{
void FTickTimers::After(float Seconds, std::function<void()> Work)
{
    Pending.push_back({Seconds, std::move(Work)});
}

void FTickTimers::Tick(float DeltaTime)
{
    // Work may put off more work: what it adds waits for the next tick.
    std::vector<std::function<void()>> Due;
    for (auto It = Pending.begin(); It != Pending.end();)
    {
        It->Remaining -= DeltaTime;
        if (It->Remaining <= 0.0f)
        {
            Due.push_back(std::move(It->Work));
            It = Pending.erase(It);
        }
        else
        {
            ++It;
        }
    }
    for (std::function<void()>& Work : Due)
    {
        Work();
    }
}
}
