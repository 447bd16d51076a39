#pragma once

#include <string>

namespace Maptorn::Sample
{
// Copies the stand-in engine binary under the six names a real engine's tools have
// (Engine/Binaries/Win64/UnrealEditor.exe and UnrealPak.exe, Engine/Build/BatchFiles/RunUAT.bat,
// and the native Linux names), executable by everyone, and writes the control file
// Engine/Binaries/StandinControl.ini with its [Standin] section. An existing control file is
// replaced, so a fresh install always starts with every tool behaving normally.
// AutomationLogsDir may be empty: the automation tool then keeps no log.
// Never throws; false with OutError filled on the first step that fails.
bool InstallStandinEngine(const std::string& EngineRoot, const std::string& StandinBinary,
    const std::string& AutomationLogsDir, std::string& OutError);

// The folder of ExecutablePath + "/maptorn-standin" when that file exists, else empty: the build
// puts the stand-in beside the tools that install it.
std::string FindStandinBinaryBeside(const std::string& ExecutablePath);
}
