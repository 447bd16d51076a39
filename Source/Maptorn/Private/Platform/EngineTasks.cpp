#include "Platform/EngineTasks.h"

#include "Async/Async.h"
#include "Async/AsyncWork.h"
#include "Misc/QueuedThreadPool.h"

// One piece of the core's blocking work on the global thread pool.
class FMaptornPoolTask : public FNonAbandonableTask
{
	friend class FAsyncTask<FMaptornPoolTask>;

public:
	explicit FMaptornPoolTask(TFunction<void()> InWork)
		: Work(MoveTemp(InWork))
	{
	}

	void DoWork() { Work(); }

	FORCEINLINE TStatId GetStatId() const { RETURN_QUICK_DECLARE_CYCLE_STAT(FMaptornPoolTask, STATGROUP_ThreadPoolAsyncTasks); }

private:
	TFunction<void()> Work;
};

// The core polls the handle; dropping it waits for the work, so the task never outlives its owner.
class FMaptornPoolTaskHandle final : public Maptorn::ITaskHandle
{
public:
	explicit FMaptornPoolTaskHandle(FAsyncTask<FMaptornPoolTask>* InTask)
		: Task(InTask)
	{
	}

	~FMaptornPoolTaskHandle() override
	{
		Task->EnsureCompletion();
		delete Task;
	}

	bool IsWorkDone() const override { return Task->IsDone(); }

private:
	FAsyncTask<FMaptornPoolTask>* Task;
};

void FEngineTasks::AsyncTask(Maptorn::ENamedThreads Thread, std::function<void()> Work)
{
	const ENamedThreads::Type EngineThread = Thread == Maptorn::ENamedThreads::GameThread
		? ENamedThreads::GameThread
		: ENamedThreads::AnyBackgroundThreadNormalTask;
	// The member hides the engine's free function of the same name.
	::AsyncTask(EngineThread, [Work = MoveTemp(Work)]() { Work(); });
}

std::shared_ptr<Maptorn::ITaskHandle> FEngineTasks::StartPoolTask(std::function<void()> Work)
{
	auto* Task = new FAsyncTask<FMaptornPoolTask>(TFunction<void()>(MoveTemp(Work)));
	Task->StartBackgroundTask(GThreadPool);
	return std::make_shared<FMaptornPoolTaskHandle>(Task);
}
