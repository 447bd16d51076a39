#include "BenchCores.h"

#include <string>

namespace Maptorn::Bench
{
namespace
{
std::string ListCpus(const cpu_set_t& Set)
{
    std::string Text;
    for (int Cpu = 0; Cpu < CPU_SETSIZE; ++Cpu)
    {
        if (CPU_ISSET(Cpu, &Set))
        {
            Text += (Text.empty() ? "" : ",") + std::to_string(Cpu);
        }
    }
    return Text;
}
}

FCoreSplit::FCoreSplit()
{
    CPU_ZERO(&Service);
    CPU_ZERO(&Clients);
    cpu_set_t Allowed;
    if (sched_getaffinity(0, sizeof(Allowed), &Allowed) != 0 || CPU_COUNT(&Allowed) < 2)
    {
        return;
    }
    // The last allowed core for the service, the others for the clients.
    Clients = Allowed;
    for (int Cpu = CPU_SETSIZE - 1; Cpu >= 0; --Cpu)
    {
        if (CPU_ISSET(Cpu, &Allowed))
        {
            CPU_SET(Cpu, &Service);
            CPU_CLR(Cpu, &Clients);
            break;
        }
    }
    bSplit = true;
}

void FCoreSplit::ServiceSide() const
{
    if (bSplit)
    {
        sched_setaffinity(0, sizeof(Service), &Service);
    }
}

void FCoreSplit::ClientSide() const
{
    if (bSplit)
    {
        sched_setaffinity(0, sizeof(Clients), &Clients);
    }
}

std::string FCoreSplit::Describe() const
{
    return bSplit ? "the sandbox on CPU " + ListCpus(Service) + ", the clients on CPU " + ListCpus(Clients)
                  : "one core: the sandbox and the clients share it";
}
}
