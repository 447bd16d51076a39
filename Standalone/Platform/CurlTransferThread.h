#pragma once

#include "Common/CoreTypes.h"
#include "Platform/CurlDelivery.h"
#include "Platform/CurlHttp.h"

#include <curl/curl.h>

#include <deque>
#include <memory>
#include <mutex>
#include <thread>
#include <unordered_map>
#include <vector>

namespace Maptorn
{
class FCurlTransfer;

// The one I/O thread: drives every transfer through a libcurl multi handle. Requests reach it
// through a locked queue and a wake-up, so the game thread never waits on the network.
class FCurlTransferThread
{
public:
    FCurlTransferThread(IMaptornTasks& Tasks, FCurlHttpOptions Options);
    // Abandons every transfer still running, without a callback, and joins the thread.
    ~FCurlTransferThread();
    FCurlTransferThread(const FCurlTransferThread&) = delete;
    FCurlTransferThread& operator=(const FCurlTransferThread&) = delete;

    // Queues the transfer; its id for Cancel, or 0 when it cannot start.
    uint64 Start(std::unique_ptr<FCurlTransfer> Transfer);
    // Ends the transfer with a failed completion, unless it has already finished.
    void Cancel(uint64 TransferId);

    FCurlDelivery& GetDelivery() { return Delivery; }

private:
    struct FCommand
    {
        uint64 TransferId = 0;
        // Set to start a transfer; empty to cancel one.
        std::unique_ptr<FCurlTransfer> Transfer;
    };

    void Run();
    void Begin(uint64 TransferId, std::unique_ptr<FCurlTransfer> Transfer);
    void CancelActive(uint64 TransferId);
    void FinishDoneTransfers();
    void AbandonAll(std::deque<FCommand>& Unstarted);

    const FCurlHttpOptions Options;
    FCurlDelivery Delivery;
    CURLM* Multi = nullptr;

    std::mutex Mutex;
    std::deque<FCommand> Commands;
    uint64 NextTransferId = 1;
    bool bStopping = false;

    // I/O thread only.
    std::unordered_map<uint64, std::unique_ptr<FCurlTransfer>> Active;
    std::unordered_map<CURL*, uint64> IdsByHandle;
    // Left for the destructor, so the requests they hold are released on the thread that owns them.
    std::vector<std::unique_ptr<FCurlTransfer>> Abandoned;

    std::thread Thread;
};
}
