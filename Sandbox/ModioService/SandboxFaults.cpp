#include "ModioService/SandboxFaults.h"

#include "Common/StringUtil.h"

namespace Maptorn::Sandbox
{
void FFaultTable::Add(const FFault& Fault)
{
    if (Fault.Count > 0)
    {
        std::scoped_lock Lock(Mutex);
        Pending.push_back(Fault);
    }
}

std::optional<FFault> FFaultTable::Take(const std::string& Method, const std::string& Path)
{
    std::scoped_lock Lock(Mutex);
    for (auto It = Pending.begin(); It != Pending.end(); ++It)
    {
        if (Path.starts_with(It->PathPrefix) && (It->Method.empty() || EqualsIgnoreCase(It->Method, Method)))
        {
            const FFault Fault = *It;
            if (--It->Count <= 0)
            {
                Pending.erase(It);
            }
            return Fault;
        }
    }
    return std::nullopt;
}

std::string MaskSecret(const std::string& Secret)
{
    return Secret.size() <= 4 ? std::string(Secret.size(), '*') : Secret.substr(0, 4) + "…";
}

void FRequestLog::Add(FRecordedRequest Entry)
{
    std::scoped_lock Lock(Mutex);
    Recorded.push_back(std::move(Entry));
}

std::vector<FRecordedRequest> FRequestLog::Entries() const
{
    std::scoped_lock Lock(Mutex);
    return Recorded;
}

void FRequestLog::Clear()
{
    std::scoped_lock Lock(Mutex);
    Recorded.clear();
}
}
