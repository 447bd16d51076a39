#pragma once
// Reference: Runtime/Core/Public/Misc/CString.h (FCString)

#include "CoreTypes.h"

// C-string helpers over TCHAR.
struct FCString
{
	static int32 Strlen(const TCHAR* String)
	{
		int32 Length = 0;
		while (String && String[Length]) { ++Length; }
		return Length;
	}
	static int64 Atoi64(const TCHAR* String)
	{
		int64 Sign = 1;
		int64 Value = 0;
		while (String && (*String == ' ' || *String == '\t')) { ++String; }
		if (String && (*String == '-' || *String == '+')) { Sign = *String == '-' ? -1 : 1; ++String; }
		while (String && *String >= '0' && *String <= '9') { Value = Value * 10 + (*String++ - '0'); }
		return Sign * Value;
	}
	static int32 Atoi(const TCHAR* String) { return static_cast<int32>(Atoi64(String)); }
};
