#include "Build/AutomationCommandLine.h"

#include "Build/PackageTargets.h"
#include "Common/StringUtil.h"

namespace Maptorn
{
namespace
{
std::string MakeScriptCommand(const FAutomationCommandInputs& In)
{
    return Printf(" -Compile -ScriptDir=\"%s\" KelvorUGCPak -Project=\"%s\" -Platform=\"%s\" -PluginPath=\"%s\" "
                  "-BasedOnReleaseVersion=\"%s\" -StagingDirectory=\"%s\" -CookFlavor=ASTC -BuildFlavor=ASTC -Stage=\"%s\" "
                  "-ModioUploader=\"%s\" -MetaDataPath=\"%s\" -PlatformDir=\"%s\" -IsCodeBasedProject=False "
                  "-AdditionalCookerOptions=\"-NeverCookDir=\"/Game+/Maptorn+/JsonUtils+/VRFramework+/modio%s \"\" ",
        In.ProjectDir.c_str(), In.ProjectFile.c_str(), In.PlatformName.c_str(), In.PluginDescriptor.c_str(),
        In.ReleaseVersion.c_str(), In.StagingDirectory.c_str(), In.StageFlag.c_str(), In.UploaderFlag.c_str(),
        In.MetadataFile.c_str(), In.StageFolder.c_str(), In.NeverCookList.c_str());
}

std::string MakeBuildCookRunCommand(const FAutomationCommandInputs& In)
{
    const char* CookFlavor = In.Target == PackageTarget::Quest ? "ASTC" : "";
    return Printf("BuildCookRun -project=\"%s\" -dlcname=\"%s\" -basedonreleaseversion=\"%s\" -StagingDirectory=\"%s\" "
                  "-targetplatform=\"%s\" -DLCIncludeEngineContent -DLCPakPluginFile -nodebuginfo -noP4 -cook -stage -pak "
                  "-distribution -cookflavor=\"%s\" "
                  "-AdditionalCookerOptions=\"-NeverCookDir=\"/Game+/Maptorn+/JsonUtils+/VRFramework+/modio%s \"\"",
        In.ProjectFile.c_str(), In.PluginName.c_str(), In.ReleaseVersion.c_str(), In.StagingDirectory.c_str(),
        In.PlatformName.c_str(), CookFlavor, In.NeverCookList.c_str());
}
}

std::string MakeAutomationCommandLine(const FAutomationCommandInputs& Inputs)
{
    // Targets 0 and 2 (the value with bit 1 cleared is zero) run the project's own script.
    const bool bScript = (Inputs.Target & ~2u) == 0;
    std::string CommandLine = bScript ? MakeScriptCommand(Inputs) : MakeBuildCookRunCommand(Inputs);
    if (Inputs.MapPackage.size() < 2)
    {
        CommandLine += Printf(" -CookDir=\"%s\"", Inputs.CookDirectory.c_str());
    }
    else
    {
        CommandLine += Printf(" -Map=\"%s\"", Inputs.MapPackage.c_str());
    }
    if (IsDedicatedServer(Inputs.Target))
    {
        CommandLine += " -Server -NoClient";
    }
    return CommandLine;
}

std::string NeverCookEntry(const std::string& FriendlyName)
{
    return Printf("+/%s", FriendlyName.c_str());
}
}
