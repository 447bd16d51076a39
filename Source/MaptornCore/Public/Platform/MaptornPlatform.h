#pragma once

#include "Common/CoreTypes.h"

#include "Platform/ArchivePort.h"
#include "Platform/DefinitionsPort.h"
#include "Platform/DialogsPort.h"
#include "Platform/EnginePort.h"
#include "Platform/HttpPort.h"
#include "Platform/LogPort.h"
#include "Platform/ModioSessionPort.h"
#include "Platform/NotificationsPort.h"
#include "Platform/ProcessesPort.h"
#include "Platform/TasksPort.h"

namespace Maptorn
{
// Everything the core asks of its host, handed over once at construction.
struct MAPTORNCORE_API FMaptornPlatform
{
    IMaptornLog& Log;
    IMaptornDialogs& Dialogs;
    IMaptornEngine& Engine;
    IMaptornDefinitions& Definitions;
    IMaptornProcesses& Processes;
    IMaptornTasks& Tasks;
    IMaptornHttp& Http;
    IMaptornArchive& Archive;
    // Null when the mod.io subsystem is not present; every session step is then a silent no-op.
    IModioSession* ModioSession = nullptr;
    // Null when the host shows no toasts (the standalone tool).
    IMaptornNotifications* Notifications = nullptr;
};
}
