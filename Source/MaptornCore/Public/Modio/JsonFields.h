#pragma once

#include "Common/CoreTypes.h"

#include <nlohmann/json.hpp>

#include <string>

namespace Maptorn::JsonFields
{
// Lenient readers for answers from the network, in the manner of the engine's JSON object:
// a missing key or a value of another type gives the empty value, numbers in strings are
// parsed, and numbers out of range are clamped instead of overflowing.
using FJson = nlohmann::json;

MAPTORNCORE_API const FJson* FindField(const FJson& Object, const char* Key);
MAPTORNCORE_API std::string GetString(const FJson& Object, const char* Key);
MAPTORNCORE_API double GetNumber(const FJson& Object, const char* Key);
MAPTORNCORE_API bool TryGetNumber(const FJson& Object, const char* Key, double& OutNumber);
MAPTORNCORE_API bool GetBool(const FJson& Object, const char* Key);
// The object or array under Key; null when absent or of another type.
MAPTORNCORE_API const FJson* TryGetObject(const FJson& Object, const char* Key);
MAPTORNCORE_API const FJson* TryGetArray(const FJson& Object, const char* Key);

MAPTORNCORE_API int32 TruncateToInt32(double Number);
MAPTORNCORE_API int64 TruncateToInt64(double Number);
}
