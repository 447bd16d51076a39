// "Add to Project" once the plug-in's dependencies are known: the question that offers the missing
// ones, and the downloads it queues.
#include "Workshop/WorkshopController.h"

#include "Common/StringUtil.h"
#include "Modio/ModioInterface.h"
#include "Module/MaptornModule.h"
#include "WorkshopSupport.h"

namespace Maptorn
{
namespace
{
constexpr const char* SourceDownloadCaption = "Kelvor Workshop Source Download";

std::string NamedPlugin(const FSourceModInfo& Mod)
{
    return Mod.PluginName + " (" + Mod.Name + ")";
}

std::string UnavailableText(const std::vector<FUnavailableDependency>& Unavailable)
{
    std::string Text;
    for (const FUnavailableDependency& Dependency : Unavailable)
    {
        Text += Printf(" \r\n UGC%s%s: %s.", Dependency.ModId.c_str(), Dependency.Name.empty() ? "" : (" (" + Dependency.Name + ")").c_str(),
            Dependency.Why.c_str());
    }
    return Text;
}

std::string DependencyQuestion(const FSourceModInfo& Mod, const FDependencyResolution& Resolution)
{
    std::string Text = Printf("%s needs other plugins from mod.io that are not in your project: %s.", NamedPlugin(Mod).c_str(),
        FDependencyResolution::NameList(Resolution.Missing()).c_str());
    if (!Resolution.Unavailable.empty())
    {
        Text += " \r\n \r\n These cannot be downloaded:" + UnavailableText(Resolution.Unavailable);
    }
    return Text + Printf(" \r\n \r\n Download them too? Yes downloads all of them, No downloads only %s.", Mod.PluginName.c_str());
}

std::string UnavailableNotice(const FSourceModInfo& Mod, const FDependencyResolution& Resolution)
{
    return Printf("%s needs plugins that cannot be downloaded from mod.io:", NamedPlugin(Mod).c_str()) + UnavailableText(Resolution.Unavailable) +
           Printf(" \r\n \r\n %s is downloaded alone; it may not work until you add them yourself.", Mod.PluginName.c_str());
}
}

void FWorkshopController::OnDependenciesResolved(const FSourceModInfo& Mod, const FDependencyResolution& Resolution)
{
    DependencyChecks.erase(Resolution.ModId);
    FMaptornModule* Module = WorkshopSupport::FindModule();
    FModioInterface* Client = Module ? Module->ModioClient.get() : nullptr;
    if (!Client)
    {
        return;
    }
    if (!Resolution.Error.empty())
    {
        WorkshopSupport::LogWindow(ELogVerbosity::Warning, Resolution.Error + "; " + Mod.PluginName + " is downloaded without them");
    }
    // A host that answers the question itself shows the cycles with the list.
    for (const std::string& Line : DependencyAnswer ? std::vector<std::string>{} : Resolution.CycleLines())
    {
        WorkshopSupport::LogWindow(ELogVerbosity::Warning, Line);
    }
    const std::vector<FSourceModInfo> Missing = Resolution.Missing();
    bool bWithDependencies = false;
    if (DependencyAnswer)
    {
        bWithDependencies = DependencyAnswer(Mod, Resolution);
    }
    else if (!Missing.empty())
    {
        bWithDependencies = Module->GetPlatform().Dialogs.MessageBox(EAppMsgType::YesNo, DependencyQuestion(Mod, Resolution),
                                SourceDownloadCaption) == EAppReturnType::Yes;
    }
    else if (!Resolution.Unavailable.empty())
    {
        Module->GetPlatform().Dialogs.MessageBox(EAppMsgType::Ok, UnavailableNotice(Mod, Resolution), SourceDownloadCaption);
    }
    // Each dependency before the plug-ins that need it; a failed one leaves the others queued.
    std::vector<FSourceModInfo> Downloads = bWithDependencies ? Missing : std::vector<FSourceModInfo>{};
    Downloads.push_back(Mod);
    QueueDownloads(*Client, Downloads);
}
}
