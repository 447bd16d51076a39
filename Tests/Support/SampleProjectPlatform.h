#pragma once

#include "Platform/JsonDefinitions.h"
#include "Platform/StandaloneEngine.h"
#include "Platform/StandaloneProcesses.h"
#include "Sample/SampleProject.h"
#include "Support/FakePlatform.h"

#include <memory>
#include <string>

namespace Maptorn::Testing
{
// A sample project laid out on disk in Root, served by the standalone host's engine, definition
// and process adapters, with the in-process fakes for everything else.
struct FSampleProjectPlatform
{
    FSampleProjectPlatform(const std::string& Root, const Sample::FSampleOptions& Options = {});

    // The project-relative path, normalised: InProject("Config/DefaultEngine.ini").
    std::string InProject(const std::string& Relative) const;

    Sample::FSampleLayout Layout;
    FFakePlatform Fakes;
    std::unique_ptr<FStandaloneEngine> Engine;
    std::unique_ptr<FJsonDefinitions> Definitions;
    FStandaloneProcesses Processes;
    std::unique_ptr<FMaptornPlatform> Platform;
};
}
