#pragma once

#include "Common/CoreTypes.h"

#include <atomic>
#include <string>

namespace Maptorn
{
// The Steam Workshop side of a deploy: whether a depot build is waiting to be uploaded, and the
// change note typed for it.
struct MAPTORNCORE_API FSteamWorkshopDeploy
{
    std::atomic<bool> bUploadInProgress = false;
    std::string ChangeNote;
};
}
