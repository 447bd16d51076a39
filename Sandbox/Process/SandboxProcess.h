#pragma once

#include <sys/types.h>

#include <string>

namespace Maptorn::Sandbox
{
// The mod.io sandbox as its own `maptorn-sandbox` process: for benchmarks, so that the memory it
// spends serving and receiving files is never counted as theirs, and for end-to-end tests that
// run the tool against the service as a user would.
class FSandboxProcess
{
public:
    static constexpr const char* ApiKey = "0123456789abcdef0123456789abcdef";
    static constexpr const char* ModderEmail = "modder@example.com";

    FSandboxProcess() = default;
    ~FSandboxProcess();
    FSandboxProcess(const FSandboxProcess&) = delete;
    FSandboxProcess& operator=(const FSandboxProcess&) = delete;

    // Starts the seeded service on a free loopback port, keeping its files in DataDir and its
    // console output in LogPath, and returns once it listens.
    bool Start(const std::string& DataDir, const std::string& LogPath, std::string& OutError);
    const std::string& BaseUrl() const { return Url; }
    // The last lines the service printed (its requests and their statuses), to explain a failure.
    std::string LogTail(int LineCount) const;

    // Logs the seeded modder in the way a person does: asks for an e-mail code, reads it where
    // the sandbox shows codes, exchanges it for a bearer token.
    bool LogInModder(std::string& OutError);
    const std::string& Token() const { return AccessToken; }

    // The first mod the logged-in modder owns.
    bool FindOwnMod(std::string& OutModId, std::string& OutError) const;
    std::string ModFilesUrl(const std::string& ModId) const;

    // Start, LogInModder and FindOwnMod in one: the service ready for a benchmark's transfers.
    bool StartWithModder(const std::string& DataDir, const std::string& LogPath, std::string& OutModId, std::string& OutError);

    // Adds ZipPath to the mod's files with `curl -F`, as a person would from a shell: curl's
    // command line, writing the answer's body to BodyPath and printing only the status code.
    std::string CurlFormUploadCommand(const std::string& ModId, const std::string& ZipPath, const std::string& BodyPath) const;
    // Runs that command and answers the new mod file's download URL (the answer stays in
    // AnswerPath), then fetches the file once untimed: the service's first read of a freshly
    // stored file is slower than any later one and would be charged to whoever went first.
    bool PublishArchive(const std::string& ModId, const std::string& ZipPath, const std::string& AnswerPath, std::string& OutUrl,
                        std::string& OutError) const;

private:
    bool WaitUntilListening(const std::string& LogPath, std::string& OutError);

    pid_t Pid = -1;
    std::string LogFile;
    std::string Url;
    std::string AccessToken;
};

// Runs a shell command and collects its standard output; false when it does not exit with 0.
// OutSeconds, when given, is the wall time from start to exit.
bool RunCommand(const std::string& Command, std::string& OutStdOut, double* OutSeconds = nullptr);

// Text as one single-quoted shell word.
std::string ShellQuote(const std::string& Text);
}
