#include "Platform/CurlTransferThread.h"

#include "Platform/CurlTransfer.h"

namespace Maptorn
{
namespace
{
// curl wakes sooner for its own timers (stall and connect timeouts) and for new commands.
constexpr int MaxPollMilliseconds = 1000;
constexpr long MaxConnectionsPerHost = 8;
}

FCurlTransferThread::FCurlTransferThread(IMaptornTasks& Tasks, FCurlHttpOptions InOptions)
    : Options(std::move(InOptions)), Delivery(Tasks), Multi(curl_multi_init())
{
    if (Multi != nullptr)
    {
        // As browsers do: a burst of requests to one server waits for a few connections
        // instead of opening one each.
        curl_multi_setopt(Multi, CURLMOPT_MAX_HOST_CONNECTIONS, MaxConnectionsPerHost);
        Thread = std::thread([this] { Run(); });
    }
}

FCurlTransferThread::~FCurlTransferThread()
{
    Delivery.Close();
    {
        std::lock_guard Lock(Mutex);
        bStopping = true;
        if (Multi != nullptr)
        {
            curl_multi_wakeup(Multi);
        }
    }
    if (Thread.joinable())
    {
        Thread.join();
    }
    Abandoned.clear();
    if (Multi != nullptr)
    {
        curl_multi_cleanup(Multi);
    }
}

uint64 FCurlTransferThread::Start(std::unique_ptr<FCurlTransfer> Transfer)
{
    uint64 TransferId = 0;
    {
        std::lock_guard Lock(Mutex);
        if (bStopping || Multi == nullptr)
        {
            return 0;
        }
        TransferId = NextTransferId++;
        Commands.push_back({TransferId, std::move(Transfer)});
        // Under the lock, so no wake-up can reach a multi handle the destructor is cleaning up.
        curl_multi_wakeup(Multi);
    }
    return TransferId;
}

void FCurlTransferThread::Cancel(uint64 TransferId)
{
    {
        std::lock_guard Lock(Mutex);
        if (bStopping || Multi == nullptr)
        {
            return;
        }
        Commands.push_back({TransferId, nullptr});
        curl_multi_wakeup(Multi);
    }
}

void FCurlTransferThread::Run()
{
    for (;;)
    {
        std::deque<FCommand> Batch;
        {
            std::lock_guard Lock(Mutex);
            Batch.swap(Commands);
            if (bStopping)
            {
                AbandonAll(Batch);
                return;
            }
        }
        // In order, so a cancel queued right after its start finds the transfer running.
        for (FCommand& Command : Batch)
        {
            if (Command.Transfer)
            {
                Begin(Command.TransferId, std::move(Command.Transfer));
            }
            else
            {
                CancelActive(Command.TransferId);
            }
        }
        int Running = 0;
        curl_multi_perform(Multi, &Running);
        FinishDoneTransfers();
        curl_multi_poll(Multi, nullptr, 0, MaxPollMilliseconds, nullptr);
    }
}

void FCurlTransferThread::Begin(uint64 TransferId, std::unique_ptr<FCurlTransfer> Transfer)
{
    CURL* Easy = Transfer->Prepare(Options);
    if (Easy == nullptr || curl_multi_add_handle(Multi, Easy) != CURLM_OK)
    {
        Transfer->Finish(CURLE_FAILED_INIT);
        return;
    }
    IdsByHandle.emplace(Easy, TransferId);
    Active.emplace(TransferId, std::move(Transfer));
}

void FCurlTransferThread::CancelActive(uint64 TransferId)
{
    const auto Found = Active.find(TransferId);
    if (Found == Active.end())
    {
        return;
    }
    CURL* Easy = Found->second->GetEasy();
    curl_multi_remove_handle(Multi, Easy);
    IdsByHandle.erase(Easy);
    Found->second->Finish(CURLE_ABORTED_BY_CALLBACK);
    Active.erase(Found);
}

void FCurlTransferThread::FinishDoneTransfers()
{
    int Remaining = 0;
    while (CURLMsg* Message = curl_multi_info_read(Multi, &Remaining))
    {
        if (Message->msg != CURLMSG_DONE)
        {
            continue;
        }
        CURL* Easy = Message->easy_handle;
        const CURLcode Result = Message->data.result;
        curl_multi_remove_handle(Multi, Easy);
        const auto Handle = IdsByHandle.find(Easy);
        if (Handle == IdsByHandle.end())
        {
            continue;
        }
        const auto Found = Active.find(Handle->second);
        IdsByHandle.erase(Handle);
        if (Found != Active.end())
        {
            Found->second->Finish(Result);
            Active.erase(Found);
        }
    }
}

void FCurlTransferThread::AbandonAll(std::deque<FCommand>& Unstarted)
{
    for (auto& [Easy, TransferId] : IdsByHandle)
    {
        curl_multi_remove_handle(Multi, Easy);
    }
    IdsByHandle.clear();
    for (auto& [TransferId, Transfer] : Active)
    {
        Transfer->Abandon();
        Abandoned.push_back(std::move(Transfer));
    }
    Active.clear();
    for (FCommand& Command : Unstarted)
    {
        if (Command.Transfer)
        {
            Command.Transfer->Abandon();
            Abandoned.push_back(std::move(Command.Transfer));
        }
    }
}
}
