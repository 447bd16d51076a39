#include "Platform/CurlHttp.h"

#include "Platform/CurlHttpRequest.h"
#include "Platform/CurlTransferThread.h"

#include <curl/curl.h>

#include <mutex>

namespace Maptorn
{
namespace
{
void InitialiseCurlOnce()
{
    // Not thread-safe in every libcurl build, so it runs once, before any handle exists.
    static std::once_flag Initialised;
    std::call_once(Initialised, [] { curl_global_init(CURL_GLOBAL_DEFAULT); });
}
}

FCurlHttp::FCurlHttp(IMaptornTasks& Tasks, FCurlHttpOptions Options)
{
    InitialiseCurlOnce();
    TransferThread = std::make_shared<FCurlTransferThread>(Tasks, std::move(Options));
}

FCurlHttp::~FCurlHttp() = default;

FHttpRequestPtr FCurlHttp::CreateRequest()
{
    return std::make_shared<FCurlHttpRequest>(TransferThread);
}
}
