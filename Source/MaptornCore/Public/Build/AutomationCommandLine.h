#pragma once

#include "Common/CoreTypes.h"

#include <string>

namespace Maptorn
{
// Everything one automation-tool run is made of, already resolved to text.
struct MAPTORNCORE_API FAutomationCommandInputs
{
    uint8 Target = 0;
    std::string ProjectDir;          // absolute
    std::string ProjectFile;         // absolute
    std::string PlatformName;
    std::string PluginDescriptor;    // absolute .uplugin path
    std::string PluginName;
    std::string ReleaseVersion;
    std::string StagingDirectory;
    std::string StageFlag;           // "True" / "False"
    std::string UploaderFlag;        // "True" / "False"
    std::string MetadataFile;
    std::string StageFolder;
    std::string NeverCookList;       // "+/UGC9+/UGC10"
    std::string MapPackage;          // empty: cook the plug-in's content folder instead
    std::string CookDirectory;       // "/UGC<id>/"
};

// The automation tool's parameters: the project's KelvorUGCPak script for the Windows client and
// the Kelvor server (targets 0 and 2), BuildCookRun as DLC for every other target; then the map
// or cook-directory switch and the dedicated-server switches.
MAPTORNCORE_API std::string MakeAutomationCommandLine(const FAutomationCommandInputs& Inputs);

// "+/<friendly name>" for one plug-in of the never-cook list.
MAPTORNCORE_API std::string NeverCookEntry(const std::string& FriendlyName);
}
