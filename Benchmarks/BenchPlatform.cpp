#include "BenchPlatform.h"

#include "Common/FileHelper.h"
#include "Common/Paths.h"

#include <chrono>
#include <iostream>
#include <thread>

namespace Maptorn::Bench
{
namespace
{
FStandaloneEngineSettings ProjectSettings(const std::string& ProjectDir)
{
    const std::string ProjectFile = Paths::Combine(ProjectDir, "Bench.uproject");
    FileHelper::SaveStringToFile("{ \"FileVersion\": 3, \"Plugins\": [] }\n", ProjectFile);
    FStandaloneEngineSettings Settings;
    Settings.ProjectFile = ProjectFile;
    Settings.UserSettingsDir = Paths::Combine(ProjectDir, "UserSettings") + "/";
    Settings.BaseDir = ProjectDir + "/";
    return Settings;
}
}

FBenchPlatform::FBenchPlatform(const std::string& ProjectDir)
    : Dialogs(std::cout, std::cin, false)
    , Engine(ProjectSettings(ProjectDir))
    , Definitions(Engine)
    , Platform{ Log, Dialogs, Engine, Definitions, Processes, Tasks, Http, Archive, nullptr }
{
}

bool FBenchPlatform::TickUntil(const std::function<bool()>& Done, double TimeoutSeconds)
{
    const auto Deadline = std::chrono::steady_clock::now() + std::chrono::duration<double>(TimeoutSeconds);
    while (!Done())
    {
        if (std::chrono::steady_clock::now() > Deadline)
        {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
        Tasks.PumpGameThread();
    }
    return true;
}
}
