#pragma once

#include "Platform/ArchivePort.h"
#include "Platform/HttpPort.h"

namespace Maptorn
{
// Stand-ins for the network and ZIP adapters until this host carries them: every request fails
// as a transfer that could not connect, every extraction fails with a reason.
class FUnavailableHttp final : public IMaptornHttp
{
public:
    FHttpRequestPtr CreateRequest() override { return nullptr; }
};

class FUnavailableArchive final : public IMaptornArchive
{
public:
    bool ExtractAll(const std::string&, const std::string&, std::string& OutError) override
    {
        OutError = "ZIP extraction is not available in this build";
        return false;
    }
};
}
