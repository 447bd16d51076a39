#include "Platform/StandaloneTasks.h"

#include <atomic>

namespace Maptorn
{
namespace
{
class FPoolTaskHandle final : public ITaskHandle
{
public:
    bool IsWorkDone() const override { return bDone.load(); }
    std::atomic<bool> bDone = false;
};
}

FStandaloneTasks::FStandaloneTasks(unsigned WorkerCount)
{
    for (unsigned Index = 0; Index < (WorkerCount == 0 ? 1 : WorkerCount); ++Index)
    {
        Workers.emplace_back([this] { WorkerLoop(); });
    }
}

FStandaloneTasks::~FStandaloneTasks()
{
    {
        std::lock_guard Lock(Mutex);
        bStopping = true;
    }
    WorkAvailable.notify_all();
    for (std::thread& Worker : Workers)
    {
        Worker.join();
    }
}

void FStandaloneTasks::AsyncTask(ENamedThreads Thread, std::function<void()> Work)
{
    {
        std::lock_guard Lock(Mutex);
        (Thread == ENamedThreads::GameThread ? GameThreadQueue : BackgroundQueue).push_back(std::move(Work));
    }
    if (Thread != ENamedThreads::GameThread)
    {
        WorkAvailable.notify_one();
    }
}

std::shared_ptr<ITaskHandle> FStandaloneTasks::StartPoolTask(std::function<void()> Work)
{
    auto Handle = std::make_shared<FPoolTaskHandle>();
    AsyncTask(ENamedThreads::AnyBackgroundThreadNormalTask, [Handle, Work = std::move(Work)] {
        Work();
        Handle->bDone = true;
    });
    return Handle;
}

void FStandaloneTasks::PumpGameThread()
{
    std::deque<std::function<void()>> Batch;
    {
        std::lock_guard Lock(Mutex);
        Batch.swap(GameThreadQueue);
    }
    for (std::function<void()>& Work : Batch)
    {
        Work();
    }
}

bool FStandaloneTasks::HasBackgroundWork() const
{
    std::lock_guard Lock(Mutex);
    return RunningCount > 0 || !BackgroundQueue.empty();
}

void FStandaloneTasks::WorkerLoop()
{
    for (;;)
    {
        std::function<void()> Work;
        {
            std::unique_lock Lock(Mutex);
            WorkAvailable.wait(Lock, [this] { return bStopping || !BackgroundQueue.empty(); });
            if (BackgroundQueue.empty())
            {
                return;
            }
            Work = std::move(BackgroundQueue.front());
            BackgroundQueue.pop_front();
            ++RunningCount;
        }
        Work();
        std::lock_guard Lock(Mutex);
        --RunningCount;
    }
}
}
