#pragma once

#include "Platform/HttpPort.h"

#include <deque>
#include <memory>
#include <string>
#include <vector>

namespace Maptorn::Testing
{
// An in-process HTTP port for unit tests: each request is recorded and answered, on Pump(), with
// the next canned answer (status and body) or a transport failure.
class FCannedHttp final : public IMaptornHttp
{
public:
    struct FAnswer
    {
        bool bConnected = true;
        int32 Status = 200;
        std::string Body;
        std::string ContentRange = {};   // the answer's "Content-Range", none when empty
        std::string RetryAfter = {};     // the answer's "retry-after", none when empty
    };

    FHttpRequestPtr CreateRequest() override;
    // Completes every request started so far, in order.
    void Pump();

    std::deque<FAnswer> Answers;                    // a transport failure once they run out
    std::vector<FHttpRequestPtr> Sent;

private:
    std::vector<FHttpRequestPtr> InFlight;
};
}
