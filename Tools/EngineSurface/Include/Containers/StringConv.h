#pragma once
// Reference: Runtime/Core/Public/Containers/StringConv.h (StringCast, FTCHARToUTF8, TCHAR_TO_UTF8)

#include "CoreTypes.h"

#include <string>

namespace MaptornSurfaceUtf
{
// UTF-8 to the engine's TCHAR (UTF-16 code units) and back; invalid input becomes U+FFFD.
inline std::basic_string<TCHAR> FromUtf8(const char* Bytes, int32 Length)
{
	std::basic_string<TCHAR> Out;
	const unsigned char* Src = reinterpret_cast<const unsigned char*>(Bytes);
	for (int32 Index = 0; Index < Length;)
	{
		uint32 Code = Src[Index];
		int32 Extra = Code < 0x80 ? 0 : (Code >> 5) == 6 ? 1 : (Code >> 4) == 14 ? 2 : (Code >> 3) == 30 ? 3 : -1;
		if (Extra < 0 || Index + Extra >= Length + (Extra == 0 ? 1 : 0))
		{
			Out.push_back(static_cast<TCHAR>(0xFFFD));
			++Index;
			continue;
		}
		Code = Extra == 0 ? Code : Code & (0x3Fu >> Extra);
		for (int32 Next = 1; Next <= Extra; ++Next) { Code = (Code << 6) | (Src[Index + Next] & 0x3Fu); }
		Index += Extra + 1;
		if (Code >= 0x10000)
		{
			Code -= 0x10000;
			Out.push_back(static_cast<TCHAR>(0xD800 + (Code >> 10)));
			Out.push_back(static_cast<TCHAR>(0xDC00 + (Code & 0x3FF)));
		}
		else
		{
			Out.push_back(static_cast<TCHAR>(Code));
		}
	}
	return Out;
}

inline std::string ToUtf8(const TCHAR* Text, int32 Length)
{
	std::string Out;
	for (int32 Index = 0; Index < Length; ++Index)
	{
		uint32 Code = static_cast<uint32>(Text[Index]) & 0xFFFFu;
		if (Code >= 0xD800 && Code < 0xDC00 && Index + 1 < Length)
		{
			Code = 0x10000 + ((Code - 0xD800) << 10) + ((static_cast<uint32>(Text[++Index]) & 0xFFFFu) - 0xDC00);
		}
		if (Code < 0x80) { Out.push_back(static_cast<char>(Code)); }
		else if (Code < 0x800) { Out.push_back(static_cast<char>(0xC0 | (Code >> 6))); Out.push_back(static_cast<char>(0x80 | (Code & 0x3F))); }
		else if (Code < 0x10000)
		{
			Out.push_back(static_cast<char>(0xE0 | (Code >> 12)));
			Out.push_back(static_cast<char>(0x80 | ((Code >> 6) & 0x3F)));
			Out.push_back(static_cast<char>(0x80 | (Code & 0x3F)));
		}
		else
		{
			Out.push_back(static_cast<char>(0xF0 | (Code >> 18)));
			Out.push_back(static_cast<char>(0x80 | ((Code >> 12) & 0x3F)));
			Out.push_back(static_cast<char>(0x80 | ((Code >> 6) & 0x3F)));
			Out.push_back(static_cast<char>(0x80 | (Code & 0x3F)));
		}
	}
	return Out;
}

template <typename CharType>
int32 Length(const CharType* Text)
{
	int32 Count = 0;
	while (Text && Text[Count]) { ++Count; }
	return Count;
}
}

// A converted string that lives as long as the converter, as the engine's TStringConversion.
template <typename ToType>
class TStringConversion
{
public:
	explicit TStringConversion(std::basic_string<ToType> InConverted) : Converted(InConverted) {}
	const ToType* Get() const { return Converted.c_str(); }
	int32 Length() const { return static_cast<int32>(Converted.size()); }

private:
	std::basic_string<ToType> Converted;
};

class FTCHARToUTF8 : public TStringConversion<ANSICHAR>
{
public:
	FTCHARToUTF8(const TCHAR* Source) : FTCHARToUTF8(Source, MaptornSurfaceUtf::Length(Source)) {}
	FTCHARToUTF8(const TCHAR* Source, int32 SourceLength)
		: TStringConversion<ANSICHAR>(MaptornSurfaceUtf::ToUtf8(Source, SourceLength))
	{
	}
};

class FUTF8ToTCHAR : public TStringConversion<TCHAR>
{
public:
	FUTF8ToTCHAR(const ANSICHAR* Source) : FUTF8ToTCHAR(Source, MaptornSurfaceUtf::Length(Source)) {}
	FUTF8ToTCHAR(const ANSICHAR* Source, int32 SourceLength)
		: TStringConversion<TCHAR>(MaptornSurfaceUtf::FromUtf8(Source, SourceLength))
	{
	}
};

template <typename To, typename From>
TStringConversion<To> StringCast(const From* Source, int32 SourceLength)
{
	if constexpr (sizeof(From) == 1 && sizeof(To) == sizeof(TCHAR))
	{
		return TStringConversion<To>(MaptornSurfaceUtf::FromUtf8(reinterpret_cast<const char*>(Source), SourceLength));
	}
	else
	{
		static_assert(sizeof(From) == sizeof(TCHAR) && sizeof(To) == 1, "StringCast: only UTF-8 <-> TCHAR in this surface");
		const std::string Utf8 = MaptornSurfaceUtf::ToUtf8(reinterpret_cast<const TCHAR*>(Source), SourceLength);
		return TStringConversion<To>(std::basic_string<To>(Utf8.begin(), Utf8.end()));
	}
}

template <typename To, typename From>
TStringConversion<To> StringCast(const From* Source)
{
	return StringCast<To>(Source, MaptornSurfaceUtf::Length(Source));
}

#define TCHAR_TO_UTF8(str) (ANSICHAR*)FTCHARToUTF8((const TCHAR*)str).Get()
#define UTF8_TO_TCHAR(str) (TCHAR*)FUTF8ToTCHAR((const ANSICHAR*)str).Get()
