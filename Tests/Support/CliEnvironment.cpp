#include "Support/CliEnvironment.h"

#include <cstdlib>

namespace Maptorn::Testing
{
void IsolateCliEnvironment(const FTempDir& Temp, const std::string& ApiKey)
{
    setenv("XDG_CONFIG_HOME", (Temp.Dir() + "config-home").c_str(), 1);
    for (const char* Name : {"MAPTORN_CONFIG", "MAPTORN_PROJECT", "MAPTORN_ENGINE", "MAPTORN_MODIO_URL", "MAPTORN_MODIO_GAME_ID", "MAPTORN_MODIO_API_KEY"})
    {
        unsetenv(Name);
    }
    WriteTextFile(Temp.Path() / "api-key", ApiKey + "\n");
}
}
