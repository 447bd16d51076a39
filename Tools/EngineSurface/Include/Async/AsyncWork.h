#pragma once
// Reference: Runtime/Core/Public/Async/AsyncWork.h (FAsyncTask, FNonAbandonableTask)

#include "CoreMinimal.h"
#include "Misc/QueuedThreadPool.h"
#include "Stats/Stats.h"

#include <atomic>
#include <thread>

class FNonAbandonableTask
{
public:
	bool CanAbandon() { return false; }
	void Abandon() {}
};

// Owns a TTask and runs its DoWork on the pool. This surface runs it on a thread of its own.
template <typename TTask>
class FAsyncTask
{
public:
	template <typename... ArgTypes>
	explicit FAsyncTask(ArgTypes&&... Args) : Task(Forward<ArgTypes>(Args)...) {}
	~FAsyncTask() { EnsureCompletion(); }

	void StartBackgroundTask(FQueuedThreadPool* InQueuedPool = GThreadPool, EQueuedWorkPriority InQueuedWorkPriority = EQueuedWorkPriority::Normal)
	{
		(void)InQueuedPool;
		(void)InQueuedWorkPriority;
		Worker = std::thread([this] { Task.DoWork(); bDone = true; });
	}
	void StartSynchronousTask() { Task.DoWork(); bDone = true; }
	void EnsureCompletion(bool bDoWorkOnThisThreadIfNotStarted = true, bool bIsLatencySensitive = false)
	{
		(void)bIsLatencySensitive;
		if (Worker.joinable()) { Worker.join(); }
		else if (!bDone && bDoWorkOnThisThreadIfNotStarted) { StartSynchronousTask(); }
	}
	bool IsDone() const { return bDone; }
	bool IsWorkDone() const { return bDone; }
	TTask& GetTask() { return Task; }

private:
	TTask Task;
	std::thread Worker;
	std::atomic<bool> bDone{false};
};
