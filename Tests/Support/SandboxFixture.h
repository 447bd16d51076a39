#pragma once

#include "Module/MaptornConfig.h"
#include "ModioService/ModioSandbox.h"
#include "Platform/CurlHttp.h"
#include "Platform/StandaloneTasks.h"
#include "Platform/ZipArchive.h"
#include "Support/FakePlatform.h"
#include "Support/TempDir.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

namespace Maptorn::Testing
{
// A test against the seeded sandbox service on loopback, through the real HTTP adapter, task
// pool and ZIP adapter; the project is Temp/Project/, the other ports are fakes.
class FSandboxTest : public ::testing::Test
{
protected:
    static constexpr const char* ApiKey = "0123456789abcdef0123456789abcdef";

    FSandboxTest();
    void SetUp() override;

    // The client's configuration for this sandbox.
    FMaptornConfig ModioConfig() const;

    // Pumps the game thread (then OnFrame) like the host's tick until Done, with a cap far beyond
    // any stall timeout.
    void TickUntil(const std::function<bool()>& Done, const std::function<void()>& OnFrame = {});

    FTempDir Temp;
    Sandbox::FModioSandbox Sandbox;
    bool bStarted = false;
    std::string StartError;
    FFakePlatform Fakes;
    FStandaloneTasks Tasks;
    FCurlHttp Http{Tasks, FCurlHttpOptions{5, 2, ""}};
    FZipArchive Archive;
    FMaptornPlatform Platform{Fakes.Log, Fakes.Dialogs, Fakes.Engine, Fakes.Definitions, Fakes.Processes, Tasks, Http, Archive, &Fakes.Session};
};
}
