#pragma once
// Reference: Runtime/Core/Public/CoreTypes.h

#include "HAL/Platform.h"
#include "Misc/AssertionMacros.h"
