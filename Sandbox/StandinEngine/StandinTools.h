#pragma once

// The three engine tools the stand-in can play. Each prints its progress, does (or, when the
// control file says so, skips) its writes, and returns the exit code of its own work; main adds
// the control file's texts and exit code afterwards.

#include "StandinCommon.h"

namespace Maptorn::Standin
{
// UnrealEditor <project>.uproject -run=cook -targetplatform=A+B (-map=... | -cookdir=...)
int RunEditorCook(const FToolRun& Run);

// UnrealPak <pak> -create=<response file> ...
int RunPakTool(const FToolRun& Run);

// RunUAT ... KelvorUGCPak ... (script form) or RunUAT BuildCookRun ... (DLC form)
int RunAutomationTool(const FToolRun& Run);
}
