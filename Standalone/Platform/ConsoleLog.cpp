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
    Recent.push_back(Message);
    if (Recent.size() > RecentLimit)
    {
        Recent.pop_front();
    }
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

std::optional<std::string> FConsoleLog::FindRecent(const std::string& Prefix)
{
    std::lock_guard Lock(Mutex);
    for (auto Message = Recent.rbegin(); Message != Recent.rend(); ++Message)
    {
        if (Message->rfind(Prefix, 0) == 0)
        {
            return Message->substr(Prefix.size());
        }
    }
    return std::nullopt;
}
}
