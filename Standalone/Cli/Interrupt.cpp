#include "Cli/Interrupt.h"

#include <csignal>

namespace Maptorn::Cli
{
namespace
{
volatile std::sig_atomic_t bInterruptRequested = 0;

extern "C" void OnInterruptSignal(int)
{
    bInterruptRequested = 1;
}
}

void InstallInterruptHandlers()
{
    struct sigaction Action = {};
    Action.sa_handler = OnInterruptSignal;
    sigemptyset(&Action.sa_mask);
    sigaction(SIGINT, &Action, nullptr);
    sigaction(SIGTERM, &Action, nullptr);
}

bool IsInterruptRequested()
{
    return bInterruptRequested != 0;
}
}
