#include "Cli/Commands/Commands.h"

#include "Common/ByteFormat.h"
#include "Common/Paths.h"
#include "Common/StringUtil.h"
#include "Modio/ModioInterface.h"
#include "Module/MaptornModule.h"

#include <chrono>
#include <ostream>
#include <unistd.h>

namespace Maptorn::Cli
{
namespace
{
using FClock = std::chrono::steady_clock;

// One progress line: rewritten in place on a terminal, printed every tenth otherwise.
class FProgressLine
{
public:
    FProgressLine(std::ostream& InOut, bool bInTerminal) : Out(InOut), bTerminal(bInTerminal) {}

    void Show(const FPluginModDownload& Download)
    {
        int64 Received = 0;
        int64 Total = 0;
        Download.GetProgressBytes(Received, Total);
        const int Percent = static_cast<int>(Download.GetProgress() * 100.0f);
        const double Seconds = std::chrono::duration<double>(FClock::now() - Started).count();
        const std::string Rate = Seconds > 0.2 ? FormatFileSize(static_cast<int64>(static_cast<double>(Received) / Seconds)) + "/s" : "";
        const std::string Line = Printf("Downloading %s - %s/%s %d%% %s", Download.ModName.c_str(), FormatFileSize(Received).c_str(),
            FormatFileSize(Total).c_str(), Percent, Rate.c_str());
        if (bTerminal)
        {
            Out << "\r" << Line << "   " << std::flush;
        }
        else if (Percent / 10 != LastTenth)
        {
            LastTenth = Percent / 10;
            Out << Line << "\n";
        }
    }

    void End()
    {
        if (bTerminal)
        {
            Out << "\n";
        }
    }

private:
    std::ostream& Out;
    bool bTerminal;
    int LastTenth = -1;
    FClock::time_point Started = FClock::now();
};

std::string OverwriteQuestion(const std::string& PluginName)
{
    return Printf("You are downloading %s this may be a plugin you're currently working on. This will OVERWRITE the files in your "
                  "Plugin %s with the ones from mod.io. Please create a backup first if you do not have one. \r\n \r\n Proceed with download?",
        PluginName.c_str(), PluginName.c_str());
}
}

int RunInstall(const FCommandContext& Context, const std::string& ModId)
{
    if (ModId.empty() || ModId.find_first_not_of("0123456789") != std::string::npos)
    {
        return Fail(Context, ExitBadInput, "The mod id must be the number mod.io gave the mod, e.g. 4711 (got \"" + ModId + "\").");
    }
    std::string Error;
    std::unique_ptr<FStandaloneHost> Host = FStandaloneHost::Create(Context, false, Error);
    if (!Host || !Host->RequireModioSettings(Error))
    {
        return Fail(Context, ExitNoEnvironment, Error);
    }
    FMaptornModule Module(Host->Platform, MakeModuleConfig(Host->Settings));
    Module.ModioClient = std::make_unique<FModioInterface>(Host->Platform, MakeModuleConfig(Host->Settings));
    FModioInterface& Client = *Module.ModioClient;

    std::optional<FSourceModInfo> Record;
    bool bAnswered = false;
    Client.FetchSourceMod(ModId, [&](bool bFound, FSourceModInfo Info) {
        bAnswered = true;
        Record = bFound ? std::optional<FSourceModInfo>(Info) : std::nullopt;
    });
    Host->RunUntil([&] { return bAnswered; });
    if (!Record || Record->BinaryUrl.empty())
    {
        return Fail(Context, ExitFailed, "mod.io has no shared source plug-in with id " + ModId + " (or could not be reached).");
    }
    if (Host->Engine.FindPlugin(Record->PluginName) &&
        Host->Dialogs.MessageBox(EAppMsgType::YesNo, OverwriteQuestion(Record->PluginName), "Kelvor Workshop Source Download") != EAppReturnType::Yes)
    {
        return Fail(Context, ExitFailed, "Nothing was downloaded; your plug-in " + Record->PluginName + " is unchanged.");
    }

    Client.LastSourceModList.Mods = {*Record};
    Client.QueueDownload(*Record);
    FProgressLine Progress(Context.Out, isatty(STDOUT_FILENO) != 0);
    Host->RunUntil([&] {
        Module.Tick(1.0f / 60.0f);
        if (Client.ActiveDownload)
        {
            Progress.Show(*Client.ActiveDownload);
        }
        return !Client.ActiveDownload && Client.DownloadQueue.empty();
    });
    Progress.End();
    if (Client.FinishedDownloads.count(ModId) == 0)
    {
        return Fail(Context, ExitFailed, "The download or install of " + Record->PluginName + " failed (run with --verbose for the log). "
            "The project's plug-ins are as they were.");
    }
    Context.Out << "Installed " << Record->PluginName << " into "
                << Paths::Combine(Paths::ConvertRelativePathToFull(Host->Engine.GetBaseDir(), Host->Engine.ProjectPluginsDir()), Record->PluginName)
                << "; restart the editor to load it.\n";
    return ExitSuccess;
}
}
