#include "Support/SandboxFixture.h"

#include <chrono>
#include <thread>

namespace Maptorn::Testing
{
FSandboxTest::FSandboxTest()
    : Sandbox(Sandbox::FSandboxOptions{0, "", 1, ApiKey, true, true})
{
    bStarted = Sandbox.Start(StartError);
    Fakes.Engine.Project = Temp.Dir() + "Project/";
    Fakes.Engine.BaseDir = Temp.Dir();
}

void FSandboxTest::SetUp()
{
    ASSERT_TRUE(bStarted) << StartError;
}

FMaptornConfig FSandboxTest::ModioConfig() const
{
    return FMaptornConfig{"", Sandbox.GetBaseUrl(), 1, ApiKey};
}

void FSandboxTest::TickUntil(const std::function<bool()>& Done, const std::function<void()>& OnFrame)
{
    for (int Frame = 0; Frame < 60 * 120 && !Done(); ++Frame)
    {
        Tasks.PumpGameThread();
        if (OnFrame)
        {
            OnFrame();
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    ASSERT_TRUE(Done());
}
}
