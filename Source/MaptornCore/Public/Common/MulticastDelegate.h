#pragma once

#include <functional>
#include <utility>
#include <vector>

namespace Maptorn
{
// A list of observers called in the order they were added (the engine's multicast delegate).
template <typename... TArgs>
class TMulticastDelegate
{
public:
    using FHandle = int;

    FHandle Add(std::function<void(TArgs...)> Callback)
    {
        Bindings.push_back({NextHandle, std::move(Callback)});
        return NextHandle++;
    }

    void Remove(FHandle Handle)
    {
        std::erase_if(Bindings, [Handle](const FBinding& Binding) { return Binding.Handle == Handle; });
    }

    void Broadcast(TArgs... Args) const
    {
        // A copy, so that an observer may remove itself while being called.
        const std::vector<FBinding> Current = Bindings;
        for (const FBinding& Binding : Current)
        {
            Binding.Callback(Args...);
        }
    }

    bool IsBound() const { return !Bindings.empty(); }

private:
    struct FBinding
    {
        FHandle Handle;
        std::function<void(TArgs...)> Callback;
    };
    std::vector<FBinding> Bindings;
    FHandle NextHandle = 1;
};
}
