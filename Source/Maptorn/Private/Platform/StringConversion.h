#pragma once

#include "CoreMinimal.h"

#include <string>

// The core speaks UTF-8 std::string, the engine FString: every adapter converts through this pair.
namespace MaptornString
{
inline FString ToFString(const std::string& Text)
{
	const auto Converted = StringCast<TCHAR>(reinterpret_cast<const UTF8CHAR*>(Text.data()), static_cast<int32>(Text.size()));
	return FString(Converted.Length(), Converted.Get());
}

inline std::string ToStd(const FString& Text)
{
	const FTCHARToUTF8 Converted(*Text, Text.Len());
	return std::string(reinterpret_cast<const char*>(Converted.Get()), static_cast<size_t>(Converted.Length()));
}
}
