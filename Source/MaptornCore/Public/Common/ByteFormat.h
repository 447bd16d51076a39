#pragma once

#include "Common/CoreTypes.h"

#include <string>

namespace Maptorn
{
// A byte count with two decimals and the largest fitting unit: "512.00 B", "1.50 KB", "3.25 GB"
// (units of 1024).
MAPTORNCORE_API std::string FormatFileSize(int64 Bytes);
}
