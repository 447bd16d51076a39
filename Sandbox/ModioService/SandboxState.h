#pragma once

#include "ModioService/ModioSandbox.h"
#include "ModioService/SandboxBlobs.h"
#include "ModioService/SandboxFaults.h"
#include "ModioService/SandboxStore.h"

#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace httplib
{
class Server;
}

namespace Maptorn::Sandbox
{
class FSandboxRouter;

// How long an access token lives, as mod.io issues them.
constexpr int64 TokenLifetimeSeconds = 365 * 24 * 60 * 60;

// Everything one running sandbox holds; routes get it through their context.
struct FSandboxState
{
    explicit FSandboxState(FSandboxOptions InOptions);
    ~FSandboxState();

    // Unix seconds on the sandbox's clock (tests move it forward).
    int64 Now() const;
    std::string BaseUrl() const;
    // Writes state.json when a data folder keeps it; the caller holds Mutex.
    void SaveLocked() const;
    // A console line for people running the sandbox; tests keep it quiet.
    void Say(const std::string& Line) const;
    // Waits Milliseconds, or less when the sandbox stops meanwhile.
    void WaitUnlessStopping(int Milliseconds);

    // The caller holds Mutex for these.
    // A fresh 5-character code for Email, shown on the console (the sandbox sends no mail).
    std::string IssueCodeLocked(const std::string& Email);
    std::string IssueTokenLocked(int64 UserId, int64 DateExpires);

    const FSandboxOptions Options;
    mutable std::mutex Mutex; // guards Store
    FSandboxStore Store;
    FBlobFolder Blobs;
    FFaultTable Faults;
    FRequestLog Log;
    std::atomic<bool> bAcceptLegacyContentRange{ false };
    std::atomic<int> Port{ 0 };
    std::atomic<int64> ClockOffset{ 0 };

    std::unique_ptr<httplib::Server> Server;
    std::unique_ptr<FSandboxRouter> Router;
    std::thread ServerThread;
    bool bStarted = false;
    std::mutex StopMutex;
    std::condition_variable StopSignal;
    bool bStopping = false;
};
}
