#include "Platform/ConsoleLog.h"

#include <iostream>

namespace Maptorn
{
std::string FConsoleLog::FormatLine(const char* Category, ELogVerbosity Verbosity, const std::string& Message)
{
    std::string Line = std::string(Category) + ": ";
    if (Verbosity != ELogVerbosity::Log)
    {
        Line += std::string(ToString(Verbosity)) + ": ";
    }
    return Line + Message;
}

bool FConsoleLog::OpenFile(const std::string& FilePath)
{
    std::lock_guard Lock(Mutex);
    File.open(FilePath, std::ios::app);
    return File.is_open();
}

void FConsoleLog::Log(const char* Category, ELogVerbosity Verbosity, const std::string& Message)
{
    const std::string Line = FormatLine(Category, Verbosity, Message);
    std::lock_guard Lock(Mutex);
    if (File.is_open())
    {
        File << Line << '\n';
        File.flush();
    }
    if (bVerbose || Verbosity != ELogVerbosity::Log)
    {
        std::cerr << Line << '\n';
    }
}
}
