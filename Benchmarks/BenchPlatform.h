#pragma once

#include "Platform/ConsoleDialogs.h"
#include "Platform/ConsoleLog.h"
#include "Platform/CurlHttp.h"
#include "Platform/JsonDefinitions.h"
#include "Platform/MaptornPlatform.h"
#include "Platform/StandaloneEngine.h"
#include "Platform/StandaloneProcesses.h"
#include "Platform/StandaloneTasks.h"

#include <functional>
#include <string>

namespace Maptorn::Bench
{
// Refuses every archive at once: the benchmarks time transfers, and unpacking a gigabyte after
// each download would only add minutes and disk traffic.
class FSkippedExtraction final : public IMaptornArchive
{
public:
    bool ExtractAll(const std::string&, const std::string&, std::string& OutError) override
    {
        OutError = "extraction is not part of the transfer benchmarks";
        return false;
    }
};

// The standalone host's adapters over an empty project in ProjectDir, as `maptorn` builds them,
// with extraction left out.
class FBenchPlatform
{
public:
    explicit FBenchPlatform(const std::string& ProjectDir);

    // Drains the game thread every millisecond (finer than the host's 60 Hz tick, so that the
    // tick does not blur the timings) until Done; false when TimeoutSeconds pass first.
    bool TickUntil(const std::function<bool()>& Done, double TimeoutSeconds);

    FConsoleLog Log;
    FConsoleDialogs Dialogs;
    FStandaloneEngine Engine;
    FJsonDefinitions Definitions;
    FStandaloneProcesses Processes;
    FStandaloneTasks Tasks;
    FCurlHttp Http{ Tasks };
    FSkippedExtraction Archive;
    FMaptornPlatform Platform;
};
}
