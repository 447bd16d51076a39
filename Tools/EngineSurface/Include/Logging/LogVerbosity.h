#pragma once
// Reference: Runtime/Core/Public/Logging/LogVerbosity.h

#include "CoreTypes.h"

namespace ELogVerbosity
{
enum Type : uint8
{
	NoLogging = 0,
	Fatal,
	Error,
	Warning,
	Display,
	Log,
	Verbose,
	VeryVerbose,
	All = VeryVerbose,
};
}
