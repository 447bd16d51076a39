#pragma once

#include "Platform/TasksPort.h"

#include <atomic>
#include <functional>
#include <memory>

namespace Maptorn
{
// The one way the HTTP adapter reaches the game thread. Work posted before Close but run after
// it is dropped, so no callback outlives the adapter.
class FCurlDelivery
{
public:
    explicit FCurlDelivery(IMaptornTasks& InTasks) : Tasks(InTasks) {}

    // Any thread, while the adapter lives.
    void Post(std::function<void()> Work)
    {
        Tasks.AsyncTask(ENamedThreads::GameThread, [bOpen = bOpen, Work = std::move(Work)] {
            if (bOpen->load())
            {
                Work();
            }
        });
    }

    void Close() { bOpen->store(false); }

private:
    IMaptornTasks& Tasks;
    std::shared_ptr<std::atomic<bool>> bOpen = std::make_shared<std::atomic<bool>>(true);
};
}
