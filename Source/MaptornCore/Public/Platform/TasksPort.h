#pragma once

#include "Common/CoreTypes.h"

#include <functional>
#include <memory>

namespace Maptorn
{
enum class ENamedThreads
{
    GameThread,
    AnyBackgroundThreadNormalTask,
};

// A task started on the thread pool; the game thread polls it.
class MAPTORNCORE_API ITaskHandle
{
public:
    virtual ~ITaskHandle() = default;
    virtual bool IsWorkDone() const = 0;
};

// Stands for the engine's task graph (AsyncTask) and its global thread pool.
class MAPTORNCORE_API IMaptornTasks
{
public:
    virtual ~IMaptornTasks() = default;

    // Runs Work on the named thread. GameThread work runs inside the host's tick.
    virtual void AsyncTask(ENamedThreads Thread, std::function<void()> Work) = 0;

    virtual std::shared_ptr<ITaskHandle> StartPoolTask(std::function<void()> Work) = 0;
};
}
