#pragma once

#include "Cli/StandaloneHost.h"

#include <string>

namespace Maptorn::Cli
{
// Each command answers its process exit code (EExitCode).
int RunEnv(const FCommandContext& Context);
int RunMapCreate(const FCommandContext& Context, const std::string& MapId, const std::string& MapName);
int RunPluginCreate(const FCommandContext& Context, const std::string& ModId, const std::string& TypeWord);
int RunSampleCreate(const FCommandContext& Context, const std::string& Folder);
int RunDemo(const FCommandContext& Context, const std::string& Folder, bool bKeep);
}
