#pragma once

#include "CoreMinimal.h"
#include "Platform/TasksPort.h"

// The task graph for posted work and the global thread pool for the long builds.
class FEngineTasks final : public Maptorn::IMaptornTasks
{
public:
	void AsyncTask(Maptorn::ENamedThreads Thread, std::function<void()> Work) override;
	std::shared_ptr<Maptorn::ITaskHandle> StartPoolTask(std::function<void()> Work) override;
};
