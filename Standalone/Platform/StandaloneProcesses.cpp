#include "Platform/StandaloneProcesses.h"

#include "Platform/WindowsCommandLine.h"

#include <cerrno>
#include <csignal>
#include <cstddef>
#include <vector>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

extern "C" char** environ;

namespace Maptorn
{
struct FStandaloneProcesses::FCapturedStream
{
    int Fd = -1;
    std::string& Text;
    bool bIsStdErr = false;
    std::size_t EchoedUpTo = 0;
};

namespace
{
// Not retried on EINTR: Linux has released the descriptor by then, and a retry could close
// one that another thread has just opened.
void CloseFd(int& Fd)
{
    if (Fd >= 0)
    {
        ::close(Fd);
        Fd = -1;
    }
}

struct FPipe
{
    int ReadFd = -1;
    int WriteFd = -1;

    FPipe() = default;
    FPipe(const FPipe&) = delete;
    FPipe& operator=(const FPipe&) = delete;
    ~FPipe()
    {
        CloseFd(ReadFd);
        CloseFd(WriteFd);
    }

    // Close-on-exec, so that children spawned by other threads at the same moment do not hold
    // our write ends open and keep us waiting for an end of output that never comes.
    bool Open()
    {
        int Fds[2];
        if (::pipe2(Fds, O_CLOEXEC) != 0)
        {
            return false;
        }
        ReadFd = Fds[0];
        WriteFd = Fds[1];
        return true;
    }
};

int WaitForExitCode(pid_t Pid)
{
    int Status = 0;
    while (::waitpid(Pid, &Status, 0) < 0)
    {
        if (errno != EINTR)
        {
            return -1;
        }
    }
    if (WIFEXITED(Status))
    {
        return WEXITSTATUS(Status);
    }
    // The shell's convention, so a crashed tool reads as a failure with a recognisable code.
    return WIFSIGNALED(Status) ? 128 + WTERMSIG(Status) : -1;
}

// Makes sure a spawned child is reaped even when capturing its output fails part-way.
class FChildGuard
{
public:
    explicit FChildGuard(pid_t InPid) : Pid(InPid) {}
    FChildGuard(const FChildGuard&) = delete;
    FChildGuard& operator=(const FChildGuard&) = delete;
    ~FChildGuard()
    {
        if (!bReaped)
        {
            ::kill(Pid, SIGKILL);
            WaitForExitCode(Pid);
        }
    }

    int Wait()
    {
        bReaped = true;
        return WaitForExitCode(Pid);
    }

private:
    pid_t Pid;
    bool bReaped = false;
};

// No shell: argv[0] is run directly (looked up in PATH when it has no slash, as Windows would
// find a bare program name). glibc reports a failed exec here, so it never shows up as exit code 127.
bool SpawnChild(const std::vector<std::string>& Arguments, int StdOutFd, int StdErrFd, pid_t& OutPid)
{
    std::vector<char*> Argv;
    for (const std::string& Argument : Arguments)
    {
        Argv.push_back(const_cast<char*>(Argument.c_str()));
    }
    Argv.push_back(nullptr);

    posix_spawn_file_actions_t Actions;
    posix_spawn_file_actions_init(&Actions);
    posix_spawn_file_actions_adddup2(&Actions, StdOutFd, STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&Actions, StdErrFd, STDERR_FILENO);
    // The child runs unattended on a worker: it must not wait on, or steal, the console's input.
    posix_spawn_file_actions_addopen(&Actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);

    // Worker threads may block signals and the host may ignore SIGPIPE; the child gets neither.
    posix_spawnattr_t Attributes;
    posix_spawnattr_init(&Attributes);
    sigset_t Signals;
    sigemptyset(&Signals);
    posix_spawnattr_setsigmask(&Attributes, &Signals);
    sigaddset(&Signals, SIGPIPE);
    posix_spawnattr_setsigdefault(&Attributes, &Signals);
    posix_spawnattr_setflags(&Attributes, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);

    const int Error = ::posix_spawnp(&OutPid, Argv[0], &Actions, &Attributes, Argv.data(), environ);
    posix_spawnattr_destroy(&Attributes);
    posix_spawn_file_actions_destroy(&Actions);
    return Error == 0;
}

// Reads what one pipe has ready; false at the end of the stream.
bool ReadAvailable(int Fd, std::string& Text)
{
    constexpr std::size_t ChunkSize = 64 * 1024;
    const std::size_t OldSize = Text.size();
    Text.resize(OldSize + ChunkSize);
    const ssize_t Count = ::read(Fd, Text.data() + OldSize, ChunkSize);
    Text.resize(OldSize + (Count > 0 ? static_cast<std::size_t>(Count) : 0));
    if (Count < 0)
    {
        return errno == EINTR || errno == EAGAIN;
    }
    return Count > 0;
}
}

bool FStandaloneProcesses::ExecProcess(const std::string& Url, const std::string& Params, int32& OutReturnCode,
    std::string& OutStdOut, std::string& OutStdErr)
{
    OutReturnCode = -1;
    OutStdOut.clear();
    OutStdErr.clear();
    try
    {
        const std::vector<std::string> Arguments =
            WindowsCommandLine::SplitCommandLine(WindowsCommandLine::BuildCommandLine(Url, Params));
        FPipe StdOutPipe;
        FPipe StdErrPipe;
        pid_t Pid = 0;
        if (Arguments.empty() || !StdOutPipe.Open() || !StdErrPipe.Open()
            || !SpawnChild(Arguments, StdOutPipe.WriteFd, StdErrPipe.WriteFd, Pid))
        {
            return false;
        }
        FChildGuard Child(Pid);
        // Only the child may hold the write ends, or the end of its output would never be seen.
        CloseFd(StdOutPipe.WriteFd);
        CloseFd(StdErrPipe.WriteFd);
        CaptureOutputs(StdOutPipe.ReadFd, StdErrPipe.ReadFd, OutStdOut, OutStdErr);
        // Should capturing have stopped early, a child still writing now fails instead of blocking.
        CloseFd(StdOutPipe.ReadFd);
        CloseFd(StdErrPipe.ReadFd);
        OutReturnCode = Child.Wait();
        return true;
    }
    catch (...)
    {
        return false;
    }
}

void FStandaloneProcesses::SetOutputEcho(FOutputEcho InOutputEcho)
{
    std::lock_guard<std::mutex> Lock(EchoMutex);
    OutputEcho = std::move(InOutputEcho);
}

// Both pipes are drained together: a child that fills one while we block on the other would
// otherwise wait on us forever.
bool FStandaloneProcesses::CaptureOutputs(int StdOutFd, int StdErrFd, std::string& OutStdOut, std::string& OutStdErr)
{
    FCapturedStream Streams[2] = {{StdOutFd, OutStdOut, false}, {StdErrFd, OutStdErr, true}};
    while (Streams[0].Fd >= 0 || Streams[1].Fd >= 0)
    {
        // poll skips negative descriptors, so a stream that has ended drops out by itself.
        pollfd PollFds[2] = {{Streams[0].Fd, POLLIN, 0}, {Streams[1].Fd, POLLIN, 0}};
        if (::poll(PollFds, 2, -1) < 0)
        {
            if (errno == EINTR)
            {
                continue;
            }
            return false;
        }
        for (int Index = 0; Index < 2; ++Index)
        {
            FCapturedStream& Stream = Streams[Index];
            if (PollFds[Index].revents == 0)
            {
                continue;
            }
            const bool bOpen = ReadAvailable(Stream.Fd, Stream.Text);
            EchoLines(Stream, !bOpen);
            if (!bOpen)
            {
                Stream.Fd = -1;
            }
        }
    }
    return true;
}

void FStandaloneProcesses::EchoLines(FCapturedStream& Stream, bool bFlushPartialLine)
{
    std::lock_guard<std::mutex> Lock(EchoMutex);
    const std::string& Text = Stream.Text;
    const auto Echo = [&](std::size_t LineEnd)
    {
        std::size_t Length = LineEnd - Stream.EchoedUpTo;
        if (Length > 0 && Text[Stream.EchoedUpTo + Length - 1] == '\r')
        {
            --Length;
        }
        try
        {
            if (OutputEcho)
            {
                OutputEcho(Text.substr(Stream.EchoedUpTo, Length), Stream.bIsStdErr);
            }
        }
        catch (...)
        {
            // Showing progress is a courtesy; a failing display must not lose the child's run.
        }
    };
    for (std::size_t LineEnd = Text.find('\n', Stream.EchoedUpTo); LineEnd != std::string::npos;
         LineEnd = Text.find('\n', Stream.EchoedUpTo))
    {
        Echo(LineEnd);
        Stream.EchoedUpTo = LineEnd + 1;
    }
    // A last line without a line break is still part of what the child said.
    if (bFlushPartialLine && Stream.EchoedUpTo < Text.size())
    {
        Echo(Text.size());
        Stream.EchoedUpTo = Text.size();
    }
}
}
