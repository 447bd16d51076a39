#pragma once

// Lookups and text helpers shared by the window controller's files and its rows.

#include "Common/CoreTypes.h"
#include "Modio/SourceModInfo.h"
#include "Platform/LogPort.h"

#include <string>

namespace Maptorn
{
class FMaptornModule;
class FModioInterface;
class IMaptornEngine;

namespace WorkshopSupport
{
// The module, or null while none is loaded.
FMaptornModule* FindModule();
// The module's mod.io client, or null.
FModioInterface* FindClient();

// The own-mod record whose plug-in is "UGC" + ModId (ignoring case); null for an empty id.
const FSourceModInfo* FindOwnMod(const FModioInterface& Client, const std::string& ModId);

// A plug-in name without its leading "UGC" (any case).
std::string ModIdOf(const std::string& PluginName);

// The first MaxCharacters characters (code points) of UTF-8 text.
std::string TruncateCharacters(const std::string& Utf8Text, std::size_t MaxCharacters);

// A 0..1 fraction as a whole percent, truncated. The fractions hold whole percents times 0.01,
// which a float cannot hold exactly, so 0.29 must not show as 28.
int32 WholePercent(float Fraction);

// The running upload's progress line: "Uploading 2/5 - 40%" (or "Compressing …").
std::string UploadProgressText(const FModioInterface& Client);
// The active download's progress line, with its size and the downloads still queued; the client
// must have an active download.
std::string DownloadProgressText(const FModioInterface& Client);

// A line of the window in MaptornLog; dropped while no module is loaded.
void LogWindow(ELogVerbosity Verbosity, const std::string& Message);

// The folder holding the project file, where the window's file dialogs open.
std::string ProjectFolder(IMaptornEngine& Engine);
}
}
