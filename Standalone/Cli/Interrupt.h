#pragma once

namespace Maptorn::Cli
{
// The exit code of a run stopped by SIGINT or SIGTERM, as shells report a Ctrl-C.
inline constexpr int ExitInterrupted = 130;

// SIGINT and SIGTERM only set a flag; the tick loop reads it and stops the work through the core.
void InstallInterruptHandlers();
bool IsInterruptRequested();
}
