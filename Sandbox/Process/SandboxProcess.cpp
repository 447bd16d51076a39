#include "Process/SandboxProcess.h"

#include "Common/FileHelper.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <nlohmann/json.hpp>

#include <chrono>
#include <cstdio>
#include <thread>
#include <vector>

namespace Maptorn::Sandbox
{
namespace
{
constexpr std::chrono::seconds StartTimeout(15);
constexpr const char* ListeningLine = "mod.io sandbox listening on ";

nlohmann::json ParseJson(const std::string& Text)
{
    return nlohmann::json::parse(Text, nullptr, false);
}

// Runs a setup request through curl and answers its JSON body, or a discarded value.
nlohmann::json CurlJson(const std::string& Arguments, std::string& OutError)
{
    std::string Output;
    if (!RunCommand("curl -sS " + Arguments, Output))
    {
        OutError = "curl " + Arguments + " failed: " + Output;
        return nlohmann::json(nlohmann::json::value_t::discarded);
    }
    nlohmann::json Answer = ParseJson(Output);
    if (Answer.is_discarded() || !Answer.is_object())
    {
        OutError = "curl " + Arguments + " answered no JSON object: " + Output;
    }
    return Answer;
}
}

FSandboxProcess::~FSandboxProcess()
{
    if (Pid > 0)
    {
        kill(Pid, SIGTERM);
        int Status = 0;
        waitpid(Pid, &Status, 0);
    }
}

bool FSandboxProcess::Start(const std::string& DataDir, const std::string& LogPath, std::string& OutError)
{
    LogFile = LogPath;
    // Everything the child needs is prepared before fork: after it only exec-safe calls run.
    std::vector<std::string> Words = { MAPTORN_SANDBOX_PATH, "--seed", "--port", "0", "--data-dir", DataDir, "--api-key", ApiKey };
    std::vector<char*> Arguments;
    for (std::string& Word : Words)
    {
        Arguments.push_back(Word.data());
    }
    Arguments.push_back(nullptr);
    const pid_t Parent = getpid();
    Pid = fork();
    if (Pid < 0)
    {
        OutError = "cannot start " + Words[0];
        return false;
    }
    if (Pid == 0)
    {
        // The service goes when the benchmark goes, however it ends.
        prctl(PR_SET_PDEATHSIG, SIGTERM);
        if (getppid() != Parent)
        {
            _exit(1);
        }
        const int Log = open(LogPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        const int Null = open("/dev/null", O_RDONLY);
        if (Log < 0 || Null < 0 || dup2(Log, STDOUT_FILENO) < 0 || dup2(Log, STDERR_FILENO) < 0 || dup2(Null, STDIN_FILENO) < 0)
        {
            _exit(1);
        }
        execv(Arguments[0], Arguments.data());
        _exit(127);
    }
    return WaitUntilListening(LogPath, OutError);
}

bool FSandboxProcess::WaitUntilListening(const std::string& LogPath, std::string& OutError)
{
    const auto Deadline = std::chrono::steady_clock::now() + StartTimeout;
    while (std::chrono::steady_clock::now() < Deadline)
    {
        const std::string Log = FileHelper::LoadFileToString(LogPath).value_or(std::string());
        const std::size_t Start = Log.find(ListeningLine);
        const std::size_t End = Start == std::string::npos ? Start : Log.find(' ', Start + std::char_traits<char>::length(ListeningLine));
        if (End != std::string::npos)
        {
            const std::size_t UrlStart = Start + std::char_traits<char>::length(ListeningLine);
            Url = Log.substr(UrlStart, End - UrlStart);
            return true;
        }
        int Status = 0;
        if (waitpid(Pid, &Status, WNOHANG) == Pid)
        {
            Pid = -1;
            OutError = "maptorn-sandbox ended before listening: " + Log;
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    OutError = "maptorn-sandbox did not listen within " + std::to_string(StartTimeout.count()) + " s";
    return false;
}

std::string FSandboxProcess::LogTail(int LineCount) const
{
    const std::string Log = FileHelper::LoadFileToString(LogFile).value_or(std::string());
    std::size_t Start = Log.size();
    for (int Line = 0; Line <= LineCount && Start > 0; ++Line)
    {
        const std::size_t Break = Log.rfind('\n', Start - 1);
        Start = Break == std::string::npos ? 0 : Break;
    }
    return Log.substr(Start == 0 ? 0 : Start + 1);
}

bool FSandboxProcess::LogInModder(std::string& OutError)
{
    const std::string Email = ShellQuote(std::string("email=") + ModderEmail);
    const std::string KeyQuery = std::string("?api_key=") + ApiKey;
    if (CurlJson("--data-urlencode " + Email + " " + ShellQuote(Url + "/v1/oauth/emailrequest" + KeyQuery), OutError).is_discarded())
    {
        return false;
    }
    const nlohmann::json Code = CurlJson("-G --data-urlencode " + Email + " " + ShellQuote(Url + "/sandbox/last-code"), OutError);
    if (Code.is_discarded() || !Code.contains("code") || !Code["code"].is_string())
    {
        OutError = OutError.empty() ? "the sandbox showed no security code" : OutError;
        return false;
    }
    const nlohmann::json Token = CurlJson("--data-urlencode " + ShellQuote("security_code=" + Code["code"].get<std::string>()) + " " +
                                              ShellQuote(Url + "/v1/oauth/emailexchange" + KeyQuery),
                                          OutError);
    if (Token.is_discarded() || !Token.contains("access_token") || !Token["access_token"].is_string())
    {
        OutError = OutError.empty() ? "the security code was not exchanged for a token: " + Token.dump() : OutError;
        return false;
    }
    AccessToken = Token["access_token"].get<std::string>();
    return true;
}

bool FSandboxProcess::FindOwnMod(std::string& OutModId, std::string& OutError) const
{
    const nlohmann::json Mods = CurlJson("-H " + ShellQuote("Authorization: Bearer " + AccessToken) + " " + ShellQuote(Url + "/v1/me/mods"), OutError);
    if (Mods.is_discarded() || !Mods.contains("data") || !Mods["data"].is_array() || Mods["data"].empty() ||
        !Mods["data"][0].contains("id") || !Mods["data"][0]["id"].is_number_integer())
    {
        OutError = OutError.empty() ? "the modder owns no mod: " + Mods.dump() : OutError;
        return false;
    }
    OutModId = std::to_string(Mods["data"][0]["id"].get<long long>());
    return true;
}

std::string FSandboxProcess::ModFilesUrl(const std::string& ModId) const
{
    return Url + "/v1/games/1/mods/" + ModId + "/files";
}

std::string FSandboxProcess::CurlFormUploadCommand(const std::string& ModId, const std::string& ZipPath, const std::string& BodyPath) const
{
    return "curl -s -o " + ShellQuote(BodyPath) + " -w '%{http_code}' -H " + ShellQuote("Authorization: Bearer " + AccessToken) +
           " -F version=1 -F changelog=x -F 'platforms[]=windows' -F " + ShellQuote("filedata=@" + ZipPath) + " " +
           ShellQuote(ModFilesUrl(ModId));
}

bool FSandboxProcess::StartWithModder(const std::string& DataDir, const std::string& LogPath, std::string& OutModId, std::string& OutError)
{
    return Start(DataDir, LogPath, OutError) && LogInModder(OutError) && FindOwnMod(OutModId, OutError);
}

bool FSandboxProcess::PublishArchive(const std::string& ModId, const std::string& ZipPath, const std::string& AnswerPath, std::string& OutUrl,
                                     std::string& OutError) const
{
    std::string Status;
    if (!RunCommand(CurlFormUploadCommand(ModId, ZipPath, AnswerPath), Status) || Status != "201")
    {
        OutError = "the archive was not accepted (HTTP " + Status + "): " + FileHelper::LoadFileToString(AnswerPath).value_or("");
        return false;
    }
    const nlohmann::json Modfile = ParseJson(FileHelper::LoadFileToString(AnswerPath).value_or(""));
    if (Modfile.is_discarded() || !Modfile.contains("download") || !Modfile["download"].contains("binary_url") ||
        !Modfile["download"]["binary_url"].is_string())
    {
        OutError = "the new mod file has no download URL";
        return false;
    }
    OutUrl = Modfile["download"]["binary_url"].get<std::string>();
    std::string Ignored;
    if (!RunCommand("curl -s -o /dev/null " + ShellQuote(OutUrl), Ignored))
    {
        OutError = "curl cannot fetch " + OutUrl;
        return false;
    }
    return true;
}

bool RunCommand(const std::string& Command, std::string& OutStdOut, double* OutSeconds)
{
    OutStdOut.clear();
    const auto Start = std::chrono::steady_clock::now();
    std::FILE* Pipe = popen(Command.c_str(), "r");
    if (!Pipe)
    {
        return false;
    }
    char Buffer[4096];
    for (std::size_t Read = 0; (Read = std::fread(Buffer, 1, sizeof(Buffer), Pipe)) > 0;)
    {
        OutStdOut.append(Buffer, Read);
    }
    const int Status = pclose(Pipe);
    if (OutSeconds)
    {
        *OutSeconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - Start).count();
    }
    return Status != -1 && WIFEXITED(Status) && WEXITSTATUS(Status) == 0;
}

std::string ShellQuote(const std::string& Text)
{
    std::string Quoted = "'";
    for (const char Character : Text)
    {
        Quoted += Character == '\'' ? std::string("'\\''") : std::string(1, Character);
    }
    return Quoted + "'";
}
}
