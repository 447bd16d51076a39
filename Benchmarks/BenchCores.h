#pragma once

#include <sched.h>

#include <string>

namespace Maptorn::Bench
{
// Splits the cores between the loopback service and the clients timed against it. A service
// that shares the clients' cores is slowed by whatever the client beside it does, so the
// comparison would time the scheduler as much as the clients; the real service runs on another
// machine. Here it gets a core of its own and the clients the others. Affinity is inherited by
// the threads and processes a thread starts after choosing it, so the order is: ServiceSide(),
// start the service, ClientSide(), then everything that is timed. One core: nothing changes.
class FCoreSplit
{
public:
    FCoreSplit();

    void ServiceSide() const;
    void ClientSide() const;
    // "the sandbox on CPU 1, the clients on CPU 0", or why the cores are shared.
    std::string Describe() const;

private:
    cpu_set_t Service;
    cpu_set_t Clients;
    bool bSplit = false;
};
}
