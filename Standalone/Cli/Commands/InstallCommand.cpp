// `maptorn install`: a shared source plug-in fetched from the catalogue and downloaded through
// the browser's download button, with its overwrite question and its dependencies (installed too
// with --with-dependencies), then ticked until everything is installed.

#include "Cli/Commands/Commands.h"
#include "Cli/Commands/DependencyReport.h"
#include "Cli/ProgressLine.h"
#include "Cli/WorkshopRun.h"

#include "Common/Paths.h"
#include "Common/StringUtil.h"
#include "Content/ModDefinitions.h"

#include <nlohmann/json.hpp>

#include <ostream>
#include <sstream>
#include <unistd.h>

namespace Maptorn::Cli
{
namespace
{
// What --with-dependencies brought, once the downloads are over: each dependency the project
// got, and each it did not (a failed download, or one mod.io cannot give).
struct FDependencyOutcome
{
    std::vector<FSourceModInfo> Installed;
    std::vector<std::string> NotInstalled;
};

FDependencyOutcome DependencyOutcome(const FModioInterface& Client, const std::optional<FDependencyResolution>& Resolution, bool bWithDependencies)
{
    FDependencyOutcome Outcome;
    if (!Resolution || !bWithDependencies)
    {
        return Outcome;
    }
    for (const FSourceModInfo& Dependency : Resolution->Missing())
    {
        if (Client.FinishedDownloads.count(Dependency.PluginName.substr(3)) != 0)
        {
            Outcome.Installed.push_back(Dependency);
        }
        else
        {
            Outcome.NotInstalled.push_back(Dependency.PluginName);
        }
    }
    for (const FUnavailableDependency& Dependency : Resolution->Unavailable)
    {
        Outcome.NotInstalled.push_back(MakeUGCPluginName(Dependency.ModId));
    }
    return Outcome;
}

std::string JoinNames(const std::vector<std::string>& Names)
{
    std::string Text;
    for (const std::string& Name : Names)
    {
        Text += (Text.empty() ? "" : ", ") + Name;
    }
    return Text;
}

// The list a modder reads before the downloads start, and how to get what is left out.
void ShowDependencies(const FCommandContext& Context, const FSourceModInfo& Record, const FDependencyResolution& Resolution, bool bWithDependencies)
{
    PrintDependencies(Context.Out, Record, Resolution);
    if (!bWithDependencies && !Resolution.Missing().empty())
    {
        const std::string ModId = Record.PluginName.substr(3);
        Context.Out << "Only " << Record.PluginName << " is installed: run `maptorn install " << ModId
                    << " --with-dependencies` to install what it needs too, or `maptorn install <id>` for each.\n";
    }
}

// Ticks until every queued download has ended, with one progress line per plug-in.
void WaitForDownloads(const FCommandContext& Context, FWorkshopRun& Run, const FSourceModInfo& Record, bool bJson)
{
    FModioInterface& Client = Run.Client();
    // JSON output stays one document: no progress lines then.
    std::ostringstream Quiet;
    FProgressLine Progress(bJson ? static_cast<std::ostream&>(Quiet) : Context.Out, !bJson && isatty(STDOUT_FILENO) != 0);
    int64 Total = 0;
    Run.TickUntil([&Client] { return !Client.ActiveDownload && Client.DownloadQueue.empty(); }, [&] {
        if (Client.ActiveDownload)
        {
            int64 Received = 0;
            Client.ActiveDownload->GetProgressBytes(Received, Total);
            Progress.Show("Downloading " + MakeUGCPluginName(Client.ActiveDownload->ModId), Client.ActiveDownload->GetProgress(), Received, Total);
        }
    });
    // A small archive can arrive and install between two frames: the line still ends at its end.
    if (Client.FinishedDownloads.count(Record.PluginName.substr(3)) != 0)
    {
        Progress.Show("Downloading " + Record.PluginName, 1.0f, Total, Total);
    }
    Progress.End();
}
}

int RunInstall(const FCommandContext& Context, const std::string& ModId, bool bJson, bool bWithDependencies)
{
    int ExitCode = ExitFailed;
    std::unique_ptr<FWorkshopRun> Run = FWorkshopRun::StartForMod(Context, ModId, ExitCode);
    if (!Run)
    {
        return ExitCode;
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

    // The row the user clicks in the browser; the dependency question is answered by the options.
    Client.LastSourceModList.Mods = {*Record};
    std::optional<FDependencyResolution> Resolution;
    Run->Controller->DependencyAnswer = [&](const FSourceModInfo&, const FDependencyResolution& Answer) {
        Resolution = Answer;
        return bWithDependencies;
    };
    Run->Controller->OnDownloadSourceModClicked(*Record);
    Run->TickUntil([&Run] { return !Run->Controller->IsCheckingDependencies(); });
    if (!Client.ActiveDownload && Client.DownloadQueue.empty())
    {
        return Fail(Context, ExitFailed, "Nothing was downloaded; your plug-in " + Record->PluginName + " is unchanged.");
    }
    if (Resolution && !bJson)
    {
        ShowDependencies(Context, *Record, *Resolution, bWithDependencies);
    }
    WaitForDownloads(Context, *Run, *Record, bJson);

    // Each plug-in is installed on its own: one that failed takes nothing else away.
    const FDependencyOutcome Outcome = DependencyOutcome(Client, Resolution, bWithDependencies);
    std::vector<std::string> InstalledNames;
    for (const FSourceModInfo& Dependency : Outcome.Installed)
    {
        InstalledNames.push_back(Dependency.PluginName);
    }
    if (Client.FinishedDownloads.count(ModId) == 0)
    {
        // What the connection did, when the download itself failed.
        const std::optional<std::string> Why = Run->RecentMessage("[MOD] Failed to download mod " + Record->PluginName + ": ");
        return Fail(Context, ExitFailed, "The download or install of " + Record->PluginName + " failed" + (Why ? ": " + *Why : std::string()) +
            " (run with --verbose for the log). " + (InstalledNames.empty() ? std::string("The project's plug-ins are as they were.")
                : "Only what it needs was installed: " + JoinNames(InstalledNames) + "; the rest of the project's plug-ins are as they were."));
    }
    const std::string PluginDir =
        Paths::Combine(Paths::ConvertRelativePathToFull(Run->Host->Engine.GetBaseDir(), Run->Host->Engine.ProjectPluginsDir()), Record->PluginName);
    if (bJson)
    {
        nlohmann::json Answer{{"mod_id", ModId}, {"plugin", Record->PluginName}, {"plugin_dir", PluginDir},
                              {"version", Client.FinishedDownloads[ModId]}};
        if (Resolution)
        {
            Answer["dependencies"] = DependenciesJson(*Resolution);
        }
        Answer["dependencies_installed"] = InstalledNames;
        Answer["dependencies_not_installed"] = Outcome.NotInstalled;
        Context.Out << Answer.dump(2) << "\n";
        return Outcome.NotInstalled.empty() ? ExitSuccess : ExitFailed;
    }
    for (const FSourceModInfo& Dependency : Outcome.Installed)
    {
        Context.Out << "Installed " << Dependency.PluginName << " (" << Dependency.Name << "), which " << Record->PluginName << " needs.\n";
    }
    Context.Out << "Installed " << Record->PluginName << " into " << PluginDir << "; restart the editor to load it.\n";
    if (!Outcome.NotInstalled.empty())
    {
        return Fail(Context, ExitFailed, "Not installed: " + JoinNames(Outcome.NotInstalled) + ", which " + Record->PluginName +
            " needs (see above). What was installed stays installed.");
    }
    return ExitSuccess;
}
}
