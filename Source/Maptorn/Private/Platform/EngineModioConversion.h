#pragma once

#include "CoreMinimal.h"
#include "ModioSubsystem.h"
#include "Modio/ModioSdkTypes.h"

#include <vector>

// The one border between the mod.io plug-in's types and the core's: strings become UTF-8,
// TOptional becomes std::optional, error codes keep their value and message, ids their number.
namespace EngineModioConversion
{
Maptorn::FModioErrorCode ToCore(const FModioErrorCode& ErrorCode);
// An invalid id (the plug-in's "InvalidModID") is 0.
Maptorn::FModioModID ToCore(const FModioModID& ModId);
Maptorn::FModioModProgressInfo ToCore(const FModioModProgressInfo& Progress);
Maptorn::FModioModManagementEvent ToCore(const FModioModManagementEvent& Event);
Maptorn::FModioModInfo ToCore(const FModioModInfo& Mod);
std::vector<Maptorn::FModioModInfo> ToCore(const FModioModInfoList& Mods);

FModioModID ToEngine(Maptorn::FModioModID ModId);
EModioLogLevel ToEngine(Maptorn::EModioLogLevel Level);
FModioInitializeOptions ToEngine(const Maptorn::FModioInitializeOptions& Options);
FModioCreateModParams ToEngine(const Maptorn::FModioCreateModParams& Params);
FModioEditModParams ToEngine(const Maptorn::FModioEditModParams& Params);
FModioCreateModFileParams ToEngine(const Maptorn::FModioCreateModFileParams& Params);
}
