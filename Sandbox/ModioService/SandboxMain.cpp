// maptorn-sandbox: the local mod.io-compatible service for people, running until Ctrl+C.

#include "ModioService/ModioSandbox.h"
#include "ModioService/SandboxFaults.h"

#include <CLI/CLI.hpp>

#include <csignal>
#include <cstdio>
#include <pthread.h>

int main(int ArgumentCount, char** Arguments)
{
    Maptorn::Sandbox::FSandboxOptions Options;
    CLI::App App{ "A local mod.io-compatible service on 127.0.0.1, for the workshop and its tests." };
    App.add_option("--port", Options.Port, "Port to listen on (0: a free one, printed)");
    App.add_option("--data-dir", Options.DataDir, "Folder that keeps users, mods and files across runs");
    App.add_flag("--seed", Options.bSeed, "Add the sample users, mods and shared source plug-ins");
    App.add_option("--game-id", Options.GameId, "The game the service serves");
    App.add_option("--api-key", Options.ApiKey, "The 32-character api_key clients must send");
    bool bLegacyMultipart = false;
    App.add_flag("--legacy-multipart", bLegacyMultipart,
                 "Also take multipart parts ranged \"<offset>-<size>/<total>\" and answer their completion with 201 (mod.io itself does not)");
    CLI11_PARSE(App, ArgumentCount, Arguments);

    // Blocked here, so that the service's threads inherit the mask and only sigwait sees them.
    sigset_t StopSignals;
    sigemptyset(&StopSignals);
    sigaddset(&StopSignals, SIGINT);
    sigaddset(&StopSignals, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &StopSignals, nullptr);

    Maptorn::Sandbox::FModioSandbox Sandbox(Options);
    Sandbox.SetAcceptLegacyContentRange(bLegacyMultipart);
    std::string Error;
    if (!Sandbox.Start(Error))
    {
        std::fprintf(stderr, "maptorn-sandbox: %s\n", Error.c_str());
        return 1;
    }
    std::printf("mod.io sandbox listening on %s (game %lld)\n", Sandbox.GetBaseUrl().c_str(),
                static_cast<long long>(Options.GameId));
    std::printf("api_key %s; security codes appear below and at %s/sandbox/last-code?email=<address>\n",
                Maptorn::Sandbox::MaskSecret(Options.ApiKey).c_str(), Sandbox.GetBaseUrl().c_str());
    std::fflush(stdout);

    int Signal = 0;
    sigwait(&StopSignals, &Signal);
    std::printf("Stopping the mod.io sandbox.\n");
    Sandbox.Stop();
    return 0;
}
