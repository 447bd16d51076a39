#pragma once

#include "Common/CoreTypes.h"

#include <string>

namespace Maptorn
{
// Stands for FPlatformProcess::ExecProcess: runs a program and waits for it.
// The command line is the executable quoted ("exe" params) unless Url already starts with a
// quote, then `Url Params`; the host splits it into arguments by the Windows rules.
class MAPTORNCORE_API IMaptornProcesses
{
public:
    virtual ~IMaptornProcesses() = default;

    // False when the process could not be created; otherwise true with its exit code and both
    // outputs, decoded as UTF-8.
    virtual bool ExecProcess(const std::string& Url, const std::string& Params, int32& OutReturnCode,
        std::string& OutStdOut, std::string& OutStdErr) = 0;
};
}
