#pragma once
// Reference: Runtime/Core/Public/HAL/PlatformProcess.h

#include "GenericPlatform/GenericPlatformProcess.h"
