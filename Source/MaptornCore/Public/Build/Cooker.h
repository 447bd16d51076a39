#pragma once

#include "Common/CoreTypes.h"
#include "Platform/MaptornPlatform.h"

#include <string>

namespace Maptorn
{
class FModioInterface;

// How the definition cook chooses what to cook.
enum class ECookMode : uint8
{
    LinkedMap = 0,         // the definition's Windows or Android map
    ContentDirectory = 1,  // a content folder given by the caller
    ContentDirectoryAlt = 2,
};

// Cooks content with a headless run of the engine's editor in cook-commandlet mode, blocking
// the calling worker until the child ends. LinuxServer is always cooked beside the target.
class MAPTORNCORE_API FCooker
{
public:
    explicit FCooker(FMaptornPlatform& InPlatform);

    // Cooks MapUrl (a long package name); lines go to MaptornLog.
    bool CookMap(const std::string& MapUrl, bool bWindows);

    // Cooks the client's current definition's map, or Directory for the directory modes;
    // lines go to LogTemp.
    bool CookDefinition(const FModioInterface& Client, bool bWindows, ECookMode Mode, const std::string& Directory);

    // Saved/WorkshopCook.txt: "Build:0" for true, "Build:1" for false. The game reads the
    // digit inverted; keep it so.
    void WriteBuildMarker(bool bFlag);

private:
    bool RunCook(const std::string& Params, const char* Category);

    FMaptornPlatform& Platform;
};

// "Windows" or "Android_ASTC".
MAPTORNCORE_API const char* CookPlatformName(bool bWindows);

// The editor executable in double quotes, as the engine passes it.
MAPTORNCORE_API std::string MakeCookExecutable(IMaptornEngine& Engine);

// "\"<project>\"  -run=cook -targetplatform=<platform>+LinuxServer -UnVersioned" (two blanks
// before -run=cook, as the two pieces have always been joined).
MAPTORNCORE_API std::string MakeCookParams(const std::string& AbsoluteProjectFile, bool bWindows);
}
