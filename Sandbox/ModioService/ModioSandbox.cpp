#include "ModioService/ModioSandbox.h"

#include "Common/FileHelper.h"
#include "Common/StringUtil.h"
#include "ModioService/SandboxRoutes.h"
#include "ModioService/SandboxSeed.h"
#include "ModioService/SandboxState.h"

#include <httplib.h>

#include <chrono>

namespace Maptorn::Sandbox
{
namespace
{
constexpr size_t WorkerThreads = 64; // stalled requests and idle keep-alive connections each hold one

bool LoadSavedState(FSandboxState& State, std::string& OutError)
{
    const std::string Path = State.Blobs.StatePath();
    if (Path.empty() || !FileSystem::FileExists(Path))
    {
        return true;
    }
    const std::optional<std::string> Text = FileHelper::LoadFileToString(Path);
    if (!Text || !LoadStoreText(*Text, State.Store))
    {
        OutError = "the sandbox's saved state " + Path + " cannot be read";
        return false;
    }
    return true;
}

void RegisterRoutes(FSandboxRouter& Router)
{
    RegisterAuthRoutes(Router);
    RegisterModRoutes(Router);
    RegisterModEditRoutes(Router);
    RegisterModfileRoutes(Router);
    RegisterMultipartRoutes(Router);
    RegisterDependencyRoutes(Router);
    RegisterDownloadRoutes(Router);
    Router.NotFoundForTheRest();
}

int BindLoopback(httplib::Server& Server, int Port)
{
    // httplib's default also sets SO_REUSEPORT, which lets a second sandbox share a busy port unnoticed.
    Server.set_socket_options(
        [](socket_t Socket)
        {
            const int Yes = 1;
            setsockopt(Socket, SOL_SOCKET, SO_REUSEADDR, &Yes, sizeof(Yes));
        });
    if (Port == 0)
    {
        return Server.bind_to_any_port("127.0.0.1");
    }
    return Server.bind_to_port("127.0.0.1", Port) ? Port : -1;
}
}

FModioSandbox::FModioSandbox(FSandboxOptions Options) : State(std::make_unique<FSandboxState>(std::move(Options))) {}

FModioSandbox::~FModioSandbox()
{
    Stop();
}

bool FModioSandbox::Start(std::string& OutError)
{
    if (State->bStarted)
    {
        return true;
    }
    if (!State->Blobs.IsOpen())
    {
        std::scoped_lock Lock(State->Mutex);
        if (!State->Blobs.Open(State->Options.DataDir, OutError) || !LoadSavedState(*State, OutError))
        {
            return false;
        }
    }
    if (State->Options.bSeed)
    {
        Seed();
    }
    State->Server = std::make_unique<httplib::Server>();
    State->Server->new_task_queue = [] { return new httplib::ThreadPool(WorkerThreads); };
    State->Router = std::make_unique<FSandboxRouter>(*State->Server, *State);
    RegisterRoutes(*State->Router);
    const int Port = BindLoopback(*State->Server, State->Options.Port);
    if (Port <= 0)
    {
        OutError = "cannot listen on 127.0.0.1:" + std::to_string(State->Options.Port);
        State->Server.reset();
        State->Router.reset();
        return false;
    }
    State->Port = Port;
    State->bStopping = false;
    State->ServerThread = std::thread([Server = State->Server.get()] { Server->listen_after_bind(); });
    while (!State->Server->is_running())
    {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    State->bStarted = true;
    return true;
}

void FModioSandbox::Stop()
{
    if (!State->bStarted)
    {
        return;
    }
    {
        std::scoped_lock Lock(State->StopMutex);
        State->bStopping = true;
    }
    State->StopSignal.notify_all();
    State->Server->stop();
    State->ServerThread.join();
    State->Server.reset();
    State->Router.reset();
    State->bStarted = false;
    std::scoped_lock Lock(State->Mutex);
    State->SaveLocked();
}

int FModioSandbox::GetPort() const
{
    return State->Port.load();
}

std::string FModioSandbox::GetBaseUrl() const
{
    return State->BaseUrl();
}

const FSandboxOptions& FModioSandbox::GetOptions() const
{
    return State->Options;
}

void FModioSandbox::Seed()
{
    std::scoped_lock Lock(State->Mutex);
    if (!State->Blobs.IsOpen())
    {
        std::string Error;
        if (!State->Blobs.Open(State->Options.DataDir, Error) || !LoadSavedState(*State, Error))
        {
            return;
        }
    }
    SeedStore(*State);
}

std::string FModioSandbox::LastCodeFor(const std::string& Email) const
{
    std::scoped_lock Lock(State->Mutex);
    for (auto Code = State->Store.Codes.rbegin(); Code != State->Store.Codes.rend(); ++Code)
    {
        if (EqualsIgnoreCase(Code->Email, Email))
        {
            return Code->Code;
        }
    }
    return {};
}

std::string FModioSandbox::IssueTokenFor(const std::string& Email)
{
    std::scoped_lock Lock(State->Mutex);
    const int64 Now = State->Now();
    const FSandboxUser& User = State->Store.FindOrAddUser(Email, Now);
    const std::string Token = State->IssueTokenLocked(User.Id, Now + TokenLifetimeSeconds);
    State->SaveLocked();
    return Token;
}

void FModioSandbox::ExpireToken(const std::string& Token)
{
    std::scoped_lock Lock(State->Mutex);
    const auto Found = State->Store.Tokens.find(Token);
    if (Found != State->Store.Tokens.end())
    {
        Found->second.DateExpires = State->Now() - 1;
        State->SaveLocked();
    }
}

void FModioSandbox::InjectFault(const FFault& Fault)
{
    State->Faults.Add(Fault);
}

std::vector<FRecordedRequest> FModioSandbox::RequestLog() const
{
    return State->Log.Entries();
}

void FModioSandbox::ClearRequestLog()
{
    State->Log.Clear();
}

void FModioSandbox::SetAcceptLegacyContentRange(bool bAccept)
{
    State->bAcceptLegacyContentRange = bAccept;
}

std::vector<FSeededMod> FModioSandbox::SeededMods() const
{
    std::scoped_lock Lock(State->Mutex);
    return State->Store.Mods.count(FirstSeededModId) > 0 ? SeededModList() : std::vector<FSeededMod>{};
}

int64_t FModioSandbox::OwnerModIdFor(const std::string& Email) const
{
    std::scoped_lock Lock(State->Mutex);
    const FSandboxUser* User = State->Store.FindUserByEmail(Email);
    for (const auto& [Id, Mod] : State->Store.Mods)
    {
        if (User && Mod.SubmittedBy == User->Id)
        {
            return Id;
        }
    }
    return 0;
}

void FModioSandbox::AdvanceClock(int64_t Seconds)
{
    State->ClockOffset += Seconds;
}
}
