#pragma once

#include "Platform/HttpPort.h"
#include "Platform/TasksPort.h"

#include <memory>
#include <string>

namespace Maptorn
{
class FCurlTransferThread;

struct FCurlHttpOptions
{
    long ConnectTimeoutSeconds = 15;
    // A transfer that moves no byte for this long is given up; a request's SetTimeout overrides it.
    long StallTimeoutSeconds = 60;
    // Certificate authorities to trust instead of the system's; empty keeps the system's.
    std::string CaBundle;
};

// The HTTP port over libcurl: one I/O thread drives every transfer with a multi handle, and every
// callback is posted to the game thread through the task port. Destroying it cancels what is still
// running; no callback runs afterwards.
class FCurlHttp final : public IMaptornHttp
{
public:
    explicit FCurlHttp(IMaptornTasks& Tasks, FCurlHttpOptions Options = {});
    ~FCurlHttp() override;
    FCurlHttp(const FCurlHttp&) = delete;
    FCurlHttp& operator=(const FCurlHttp&) = delete;

    FHttpRequestPtr CreateRequest() override;

private:
    std::shared_ptr<FCurlTransferThread> TransferThread;
};
}
