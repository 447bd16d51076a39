#include "Platform/StandaloneTasks.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

using namespace Maptorn;

TEST(StandaloneTasks, BackgroundWorkPostsItsResultToTheGameThreadQueue)
{
    FStandaloneTasks Tasks(2);
    const std::thread::id GameThread = std::this_thread::get_id();
    std::atomic<bool> bWorkerWasElsewhere = false;
    std::vector<int> Results;

    Tasks.AsyncTask(ENamedThreads::AnyBackgroundThreadNormalTask, [&] {
        bWorkerWasElsewhere = std::this_thread::get_id() != GameThread;
        Tasks.AsyncTask(ENamedThreads::GameThread, [&] { Results.push_back(42); });
    });
    while (Results.empty())
    {
        Tasks.PumpGameThread();
        std::this_thread::yield();
    }
    EXPECT_TRUE(bWorkerWasElsewhere);
    EXPECT_EQ(Results, std::vector<int>{42});
}

TEST(StandaloneTasks, GameThreadWorkRunsOnlyWhenPumpedAndInOrder)
{
    FStandaloneTasks Tasks(1);
    std::vector<int> Order;
    Tasks.AsyncTask(ENamedThreads::GameThread, [&] {
        Order.push_back(1);
        // Queued from inside a pump: waits for the next one.
        Tasks.AsyncTask(ENamedThreads::GameThread, [&] { Order.push_back(3); });
    });
    Tasks.AsyncTask(ENamedThreads::GameThread, [&] { Order.push_back(2); });
    EXPECT_TRUE(Order.empty());
    Tasks.PumpGameThread();
    EXPECT_EQ(Order, (std::vector<int>{1, 2}));
    Tasks.PumpGameThread();
    EXPECT_EQ(Order, (std::vector<int>{1, 2, 3}));
}

TEST(StandaloneTasks, APoolTaskHandleTellsWhenItsWorkIsDone)
{
    FStandaloneTasks Tasks(2);
    std::atomic<bool> bRelease = false;
    std::shared_ptr<ITaskHandle> Handle = Tasks.StartPoolTask([&] {
        while (!bRelease)
        {
            std::this_thread::yield();
        }
    });
    EXPECT_FALSE(Handle->IsWorkDone());
    EXPECT_TRUE(Tasks.HasBackgroundWork());
    bRelease = true;
    while (!Handle->IsWorkDone())
    {
        std::this_thread::yield();
    }
    EXPECT_TRUE(Handle->IsWorkDone());
}

TEST(StandaloneTasks, QueuedWorkIsFinishedBeforeThePoolGoesAway)
{
    std::atomic<int> Done = 0;
    {
        FStandaloneTasks Tasks(1);
        for (int Index = 0; Index < 50; ++Index)
        {
            Tasks.AsyncTask(ENamedThreads::AnyBackgroundThreadNormalTask, [&] { ++Done; });
        }
    }
    EXPECT_EQ(Done, 50);
}
