#include "Platform/LogPort.h"

namespace Maptorn
{
const char* ToString(ELogVerbosity Verbosity)
{
    switch (Verbosity)
    {
    case ELogVerbosity::Error:
        return "Error";
    case ELogVerbosity::Warning:
        return "Warning";
    case ELogVerbosity::Log:
        return "Log";
    }
    return "";
}
}
