#pragma once

#include "Platform/LogPort.h"

#include <deque>
#include <fstream>
#include <mutex>
#include <optional>
#include <string>

namespace Maptorn
{
// Log lines on the console and, when asked, in a file. The console shows errors and warnings,
// and progress lines too when verbose; the file gets every line.
class FConsoleLog final : public IMaptornLog
{
public:
    void Log(const char* Category, ELogVerbosity Verbosity, const std::string& Message) override;

    void SetVerbose(bool bInVerbose) { bVerbose = bInVerbose; }
    bool OpenFile(const std::string& FilePath);

    // "LogTemp: Error: text", or "LogTemp: text" at Log verbosity, as the engine prints them.
    static std::string FormatLine(const char* Category, ELogVerbosity Verbosity, const std::string& Message);

    // The rest of the newest message that begins with Prefix, e.g. the service's reason after
    // "Error Modio Login, the error code was "; nothing when none of the recent lines does.
    std::optional<std::string> FindRecent(const std::string& Prefix);

private:
    static constexpr std::size_t RecentLimit = 200;
    std::deque<std::string> Recent;
    std::mutex Mutex;
    std::ofstream File;
    bool bVerbose = false;
};
}
