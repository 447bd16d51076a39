#pragma once

#include "ModioService/ModioSandbox.h"

#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace Maptorn::Sandbox
{
// Faults waiting for the requests they spoil, each for its next Count matching requests.
class FFaultTable
{
public:
    void Add(const FFault& Fault);
    // The first fault matching the request, used up by one; none when nothing matches.
    std::optional<FFault> Take(const std::string& Method, const std::string& Path);

private:
    std::mutex Mutex;
    std::vector<FFault> Pending;
};

// Masks all but the first four characters of a secret: "0123456789abcdef" → "0123…".
std::string MaskSecret(const std::string& Secret);

// The requests the service answered, in order, with secrets masked.
class FRequestLog
{
public:
    void Add(FRecordedRequest Entry);
    std::vector<FRecordedRequest> Entries() const;
    void Clear();

private:
    mutable std::mutex Mutex;
    std::vector<FRecordedRequest> Recorded;
};
}
