// Random bytes into the readers of mod.io answers: they must never crash, hang or overflow.

#include "Modio/ModioInterface.h"
#include "Modio/SourceModReader.h"
#include "Support/FakePlatform.h"

#include <cstddef>
#include <cstdint>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* Data, size_t Size)
{
    static Maptorn::Testing::FFakePlatform Fakes;
    static Maptorn::FModioInterface Client(Fakes.Platform, Maptorn::FMaptornConfig{});
    Fakes.Log.Lines.clear();

    const std::string Body(reinterpret_cast<const char*>(Data), Size);
    Maptorn::FSourceModList List;
    Maptorn::ReadSourceModList(Fakes.Platform, Client, Body, List);

    const nlohmann::json Object = nlohmann::json::parse(Body, nullptr, false);
    if (!Object.is_discarded())
    {
        Maptorn::ReadSourceModInfo(Fakes.Platform, Client, Object);
    }
    return 0;
}
