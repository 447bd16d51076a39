#pragma once

#include "Platform/LogPort.h"

#include <fstream>
#include <mutex>
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

private:
    std::mutex Mutex;
    std::ofstream File;
    bool bVerbose = false;
};
}
