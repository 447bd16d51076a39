#pragma once

#include "Common/CoreTypes.h"

#include <string>

namespace Maptorn
{
enum class ELogVerbosity
{
    Error,
    Warning,
    Log,
};

// The two log categories the workshop writes to.
namespace LogCategory
{
inline constexpr const char* MaptornLog = "MaptornLog";
inline constexpr const char* LogTemp = "LogTemp";
}

// Stands for the engine's logging macros: one line in a category at a verbosity.
class MAPTORNCORE_API IMaptornLog
{
public:
    virtual ~IMaptornLog() = default;
    virtual void Log(const char* Category, ELogVerbosity Verbosity, const std::string& Message) = 0;
};

MAPTORNCORE_API const char* ToString(ELogVerbosity Verbosity);
}
