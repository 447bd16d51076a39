#include "Build/PackageTargets.h"

namespace Maptorn
{
bool IsVeskoGroup(uint8 Target)
{
    return Target < 11 && ((0x40Au >> Target) & 1u) != 0;
}

bool IsDedicatedServer(uint8 Target)
{
    return Target == PackageTarget::VeskoLinuxServer || Target == PackageTarget::KelvorLinuxServer;
}

const char* PackagePlatformName(uint8 Target)
{
    switch (Target)
    {
    case 0: return "Windows";
    case 1:
    case 2: return "Linux";
    case 3:
    case 10: return "Android";
    default: return "";
    }
}

const char* PakPlatformName(uint8 Target)
{
    switch (Target)
    {
    case 0: return "Windows";
    case 1:
    case 2: return "LinuxServer";
    case 3:
    case 10: return "Android_ASTC";
    default: return "";
    }
}

const char* StageFolderName(uint8 Target)
{
    switch (Target)
    {
    case 0: return "Windows";
    case 1: return "LinuxVeskoServer";
    case 2: return "LinuxKelServer";
    case 3:
    case 10: return "Android_ASTC";
    default: return "";
    }
}

const char* ModioFilePlatformName(uint8 Target)
{
    switch (Target)
    {
    case 0: return "Windows";
    case 1: return "Mac";
    case 2: return "Linux";
    case 3:
    case 10: return "Oculus";
    default: return "";
    }
}

const char* VeskoPlatformName(uint8 Target)
{
    switch (Target)
    {
    case 0: return "Win64";
    case 1:
    case 2: return "Linux";
    case 3:
    case 10: return "Android";
    default: return "";
    }
}

const char* ReleaseVersionFor(uint8 Target)
{
    return IsVeskoGroup(Target) ? "KelvorVesko_1.0.0" : "Kelvor_1.0.0";
}
}
