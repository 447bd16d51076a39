#pragma once

#include "Platform/ProcessesPort.h"

#include <functional>
#include <mutex>
#include <string>

namespace Maptorn
{
// Runs a program on a POSIX system the way the engine runs it on Windows: the command line is
// built and split by the Windows rules, so each child receives the arguments the engine would pass.
// Safe to call from several worker threads at once.
class FStandaloneProcesses final : public IMaptornProcesses
{
public:
    using FOutputEcho = std::function<void(const std::string& Line, bool bIsStdErr)>;

    bool ExecProcess(const std::string& Url, const std::string& Params, int32& OutReturnCode,
        std::string& OutStdOut, std::string& OutStdErr) override;

    // Lets the command-line tool show a child tool's progress while it runs. Each complete line
    // (without its line break) is passed as it arrives, one call at a time even when several
    // children run; the outputs are still captured in full. An empty function turns it off.
    // The echo runs under a lock, so it must not call SetOutputEcho itself.
    void SetOutputEcho(FOutputEcho InOutputEcho);

private:
    struct FCapturedStream;

    void EchoLines(FCapturedStream& Stream, bool bFlushPartialLine);
    bool CaptureOutputs(int StdOutFd, int StdErrFd, std::string& OutStdOut, std::string& OutStdErr);

    std::mutex EchoMutex;
    FOutputEcho OutputEcho;
};
}
