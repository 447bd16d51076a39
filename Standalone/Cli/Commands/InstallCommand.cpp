// `maptorn install`: a shared source plug-in fetched from the catalogue and downloaded through
// the browser's download button, with its overwrite question, then ticked until installed.

#include "Cli/Commands/Commands.h"
#include "Cli/ProgressLine.h"
#include "Cli/WorkshopRun.h"

#include "Common/Paths.h"
#include "Common/StringUtil.h"

#include <nlohmann/json.hpp>

#include <ostream>
#include <sstream>
#include <unistd.h>

namespace Maptorn::Cli
{
int RunInstall(const FCommandContext& Context, const std::string& ModId, bool bJson)
{
    if (!IsPlainModId(ModId))
    {
        return Fail(Context, ExitBadInput, "The mod id must be the number mod.io gave the mod, e.g. 4711 (got \"" + ModId + "\").");
    }
    std::string Error;
    std::unique_ptr<FWorkshopRun> Run = FWorkshopRun::Start(Context, false, Error);
    if (!Run)
    {
        return Fail(Context, ExitNoEnvironment, Error);
    }
    FModioInterface& Client = Run->Client();

    std::optional<FSourceModInfo> Record;
    std::string FetchError;
    bool bAnswered = false;
    Client.FetchSourceMod(ModId, [&](bool bFound, FSourceModInfo Info, std::string Why) {
        bAnswered = true;
        Record = bFound ? std::optional<FSourceModInfo>(Info) : std::nullopt;
        FetchError = std::move(Why);
    });
    Run->TickUntil([&] { return bAnswered; });
    if (!Record)
    {
        return Fail(Context, ExitFailed, "Cannot install mod " + ModId + ": " + FetchError + ". The project's plug-ins are as they were.");
    }
    if (Record->BinaryUrl.empty())
    {
        return Fail(Context, ExitFailed, "mod.io's mod " + ModId + " has no file to download. The project's plug-ins are as they were.");
    }

    // The row the user clicks in the browser.
    Client.LastSourceModList.Mods = {*Record};
    Run->Controller->OnDownloadSourceModClicked(*Record);
    if (!Client.ActiveDownload && Client.DownloadQueue.empty())
    {
        return Fail(Context, ExitFailed, "Nothing was downloaded; your plug-in " + Record->PluginName + " is unchanged.");
    }
    // JSON output stays one document: no progress lines then.
    std::ostringstream Quiet;
    FProgressLine Progress(bJson ? static_cast<std::ostream&>(Quiet) : Context.Out, !bJson && isatty(STDOUT_FILENO) != 0);
    int64 Total = 0;
    Run->TickUntil([&Client] { return !Client.ActiveDownload && Client.DownloadQueue.empty(); }, [&] {
        if (Client.ActiveDownload)
        {
            int64 Received = 0;
            Client.ActiveDownload->GetProgressBytes(Received, Total);
            Progress.Show("Downloading " + Record->PluginName, Client.ActiveDownload->GetProgress(), Received, Total);
        }
    });
    // A small archive can arrive and install between two frames: the line still ends at its end.
    if (Client.FinishedDownloads.count(ModId) != 0)
    {
        Progress.Show("Downloading " + Record->PluginName, 1.0f, Total, Total);
    }
    Progress.End();
    if (Client.FinishedDownloads.count(ModId) == 0)
    {
        // What the connection did, when the download itself failed.
        const std::optional<std::string> Why = Run->RecentMessage("[MOD] Failed to download mod " + Record->PluginName + ": ");
        return Fail(Context, ExitFailed, "The download or install of " + Record->PluginName + " failed" + (Why ? ": " + *Why : std::string()) +
            " (run with --verbose for the log). The project's plug-ins are as they were.");
    }
    const std::string PluginDir =
        Paths::Combine(Paths::ConvertRelativePathToFull(Run->Host->Engine.GetBaseDir(), Run->Host->Engine.ProjectPluginsDir()), Record->PluginName);
    if (bJson)
    {
        Context.Out << nlohmann::json{{"mod_id", ModId}, {"plugin", Record->PluginName}, {"plugin_dir", PluginDir},
                                      {"version", Client.FinishedDownloads[ModId]}}.dump(2) << "\n";
        return ExitSuccess;
    }
    Context.Out << "Installed " << Record->PluginName << " into " << PluginDir << "; restart the editor to load it.\n";
    return ExitSuccess;
}
}
