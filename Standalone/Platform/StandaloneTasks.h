#pragma once

#include "Platform/TasksPort.h"

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace Maptorn
{
// A pool of worker threads for background and pool tasks, and a queue of game-thread work that
// the host's tick drains with PumpGameThread.
class FStandaloneTasks final : public IMaptornTasks
{
public:
    explicit FStandaloneTasks(unsigned WorkerCount = 2);
    // Finishes the work already queued, then joins the workers.
    ~FStandaloneTasks() override;

    void AsyncTask(ENamedThreads Thread, std::function<void()> Work) override;
    std::shared_ptr<ITaskHandle> StartPoolTask(std::function<void()> Work) override;

    // Runs the game-thread work queued so far; work it queues in turn waits for the next pump.
    void PumpGameThread();
    // True while a worker runs or waits for work that was handed to it.
    bool HasBackgroundWork() const;

private:
    void WorkerLoop();

    mutable std::mutex Mutex;
    std::condition_variable WorkAvailable;
    std::deque<std::function<void()>> BackgroundQueue;
    std::deque<std::function<void()>> GameThreadQueue;
    std::vector<std::thread> Workers;
    int RunningCount = 0;
    bool bStopping = false;
};
}
