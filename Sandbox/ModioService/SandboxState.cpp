#include "ModioService/SandboxState.h"

#include "Common/FileHelper.h"
#include "ModioService/SandboxRandom.h"
#include "ModioService/SandboxRouter.h"

#include <httplib.h>

#include <chrono>
#include <cstdio>
#include <fstream>

namespace Maptorn::Sandbox
{
FSandboxState::FSandboxState(FSandboxOptions InOptions) : Options(std::move(InOptions)) {}

FSandboxState::~FSandboxState() = default;

int64 FSandboxState::Now() const
{
    const auto SinceEpoch = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::seconds>(SinceEpoch).count() + ClockOffset.load();
}

std::string FSandboxState::BaseUrl() const
{
    return "http://127.0.0.1:" + std::to_string(Port.load());
}

void FSandboxState::SaveLocked() const
{
    const std::string Path = Blobs.StatePath();
    if (Path.empty())
    {
        return;
    }
    // Written aside and renamed, so that a crash never leaves half a state behind.
    const std::string Temporary = Path + ".new";
    {
        std::ofstream File(Temporary, std::ios::binary | std::ios::trunc);
        File << SaveStoreText(Store);
    }
    FileSystem::MoveFile(Temporary, Path);
}

void FSandboxState::Say(const std::string& Line) const
{
    if (!Options.bQuiet)
    {
        std::printf("%s\n", Line.c_str());
        std::fflush(stdout);
    }
}

void FSandboxState::WaitUnlessStopping(int Milliseconds)
{
    std::unique_lock Lock(StopMutex);
    StopSignal.wait_for(Lock, std::chrono::milliseconds(Milliseconds), [this] { return bStopping; });
}

std::string FSandboxState::IssueCodeLocked(const std::string& Email)
{
    FSecurityCode Code;
    Code.Code = RandomText(5, UpperAlphanumerics);
    Code.Email = Email;
    Code.DateIssued = Now();
    Store.Codes.push_back(Code);
    Say("Security code for " + Email + ": " + Code.Code);
    return Code.Code;
}

std::string FSandboxState::IssueTokenLocked(int64 UserId, int64 DateExpires)
{
    FAccessToken Token;
    Token.Value = "sbx." + RandomText(60, Alphanumerics);
    Token.UserId = UserId;
    Token.DateExpires = DateExpires;
    Store.Tokens[Token.Value] = Token;
    return Token.Value;
}
}
