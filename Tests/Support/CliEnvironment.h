#pragma once

#include "Support/TempDir.h"

#include <string>

namespace Maptorn::Testing
{
// A `maptorn` started by a test sees only what the test gives it: a config home of its own under
// Temp, none of the MAPTORN_* settings of whoever runs the tests, and ApiKey in Temp/api-key for
// --modio-api-key-file.
void IsolateCliEnvironment(const FTempDir& Temp, const std::string& ApiKey);
}
