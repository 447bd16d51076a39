#pragma once
// Reference: Runtime/Core/Public/Containers/UnrealString.h (FString, ESearchCase, ESearchDir)

#include "CoreTypes.h"
#include "Containers/Array.h"
#include "Containers/StringConv.h"
#include "Misc/CString.h"
#include "Templates/IsArrayOrRefOfType.h"
#include "Templates/IsValidVariadicFunctionArg.h"

#include <string>

namespace ESearchCase
{
enum Type
{
	CaseSensitive,
	IgnoreCase,
};
}

namespace ESearchDir
{
enum Type
{
	FromStart,
	FromEnd,
};
}

// The engine's string of TCHARs.
class FString
{
public:
	FString() = default;
	FString(const TCHAR* Source) : Data(Source ? Source : TEXT("")) {}
	FString(int32 Count, const TCHAR* Source) : Data(Source, static_cast<size_t>(Count)) {}
	// Narrow text is taken as the engine does: one byte per character.
	FString(const ANSICHAR* Source) : Data(Source, Source + MaptornSurfaceUtf::Length(Source)) {}

	const TCHAR* operator*() const { return Data.c_str(); }
	int32 Len() const { return static_cast<int32>(Data.size()); }
	bool IsEmpty() const { return Data.empty(); }
	void Empty() { Data.clear(); }
	TArray<TCHAR>& GetCharArray();

	bool Equals(const FString& Other, ESearchCase::Type SearchCase = ESearchCase::CaseSensitive) const
	{
		return SearchCase == ESearchCase::CaseSensitive ? Data == Other.Data : Lower(Data) == Lower(Other.Data);
	}
	bool StartsWith(const FString& Prefix, ESearchCase::Type SearchCase = ESearchCase::IgnoreCase) const
	{
		return Prefix.Len() <= Len() && Left(Prefix.Len()).Equals(Prefix, SearchCase);
	}
	bool EndsWith(const FString& Suffix, ESearchCase::Type SearchCase = ESearchCase::IgnoreCase) const
	{
		return Suffix.Len() <= Len() && Right(Suffix.Len()).Equals(Suffix, SearchCase);
	}
	bool RemoveFromStart(const TCHAR* Prefix, ESearchCase::Type SearchCase = ESearchCase::IgnoreCase)
	{
		if (!StartsWith(Prefix, SearchCase) || !*Prefix) { return false; }
		Data.erase(0, static_cast<size_t>(FCString::Strlen(Prefix)));
		return true;
	}
	bool RemoveFromEnd(const TCHAR* Suffix, ESearchCase::Type SearchCase = ESearchCase::IgnoreCase)
	{
		if (!EndsWith(Suffix, SearchCase) || !*Suffix) { return false; }
		Data.resize(Data.size() - static_cast<size_t>(FCString::Strlen(Suffix)));
		return true;
	}
	int32 Find(const TCHAR* SubStr, ESearchCase::Type SearchCase = ESearchCase::IgnoreCase,
		ESearchDir::Type SearchDir = ESearchDir::FromStart) const
	{
		const std::basic_string<TCHAR> Haystack = SearchCase == ESearchCase::IgnoreCase ? Lower(Data) : Data;
		const std::basic_string<TCHAR> Needle = SearchCase == ESearchCase::IgnoreCase ? Lower(SubStr) : std::basic_string<TCHAR>(SubStr);
		const size_t At = SearchDir == ESearchDir::FromStart ? Haystack.find(Needle) : Haystack.rfind(Needle);
		return At == std::basic_string<TCHAR>::npos ? -1 : static_cast<int32>(At);
	}
	bool Contains(const TCHAR* SubStr, ESearchCase::Type SearchCase = ESearchCase::IgnoreCase) const { return Find(SubStr, SearchCase) != -1; }
	bool Split(const FString& InS, FString* LeftS, FString* RightS, ESearchCase::Type SearchCase = ESearchCase::IgnoreCase,
		ESearchDir::Type SearchDir = ESearchDir::FromStart) const
	{
		const int32 At = Find(*InS, SearchCase, SearchDir);
		if (At < 0) { return false; }
		if (LeftS) { *LeftS = Left(At); }
		if (RightS) { *RightS = Mid(At + InS.Len()); }
		return true;
	}
	FString Left(int32 Count) const { return FString(Data.substr(0, static_cast<size_t>(Count < 0 ? 0 : Count))); }
	FString Right(int32 Count) const { return Mid(Len() - (Count < Len() ? Count : Len())); }
	FString Mid(int32 Start, int32 Count = 0x7fffffff) const
	{
		return Start >= Len() ? FString() : FString(Data.substr(static_cast<size_t>(Start < 0 ? 0 : Start), static_cast<size_t>(Count)));
	}
	FString TrimStartAndEnd() const&
	{
		const size_t First = Data.find_first_not_of(TEXT(" \t\r\n"));
		if (First == std::basic_string<TCHAR>::npos) { return FString(); }
		return FString(Data.substr(First, Data.find_last_not_of(TEXT(" \t\r\n")) - First + 1));
	}
	FString ToLower() const { return FString(Lower(Data)); }
	FString Replace(const TCHAR* From, const TCHAR* To, ESearchCase::Type SearchCase = ESearchCase::IgnoreCase) const;

	FString& operator+=(const FString& Other) { Data += Other.Data; return *this; }
	FString& operator+=(const TCHAR* Other) { Data += Other; return *this; }
	FString& operator+=(TCHAR Character) { Data += Character; return *this; }
	friend FString operator+(const FString& A, const FString& B) { FString Out(A); Out += B; return Out; }
	friend FString operator+(const FString& A, const TCHAR* B) { FString Out(A); Out += B; return Out; }
	friend FString operator+(const TCHAR* A, const FString& B) { FString Out(A); Out += B; return Out; }
	// Joins two path parts with a slash between them.
	friend FString operator/(const FString& A, const FString& B);
	friend FString operator/(const FString& A, const TCHAR* B);
	bool operator==(const FString& Other) const { return Equals(Other, ESearchCase::IgnoreCase); }
	bool operator!=(const FString& Other) const { return !(*this == Other); }
	bool operator<(const FString& Other) const { return Lower(Data) < Lower(Other.Data); }

	static FString FromInt(int32 Number);

	// The engine refuses anything but a TEXT literal as the format, and any argument C varargs
	// cannot carry (an FString where *String was meant).
	template <typename FmtType, typename... Types>
	static FString Printf(const FmtType& Fmt, Types... Args)
	{
		static_assert(TIsArrayOrRefOfType<FmtType, TCHAR>::Value, "Formatting string must be a TCHAR array.");
		static_assert((TIsValidVariadicFunctionArg<Types>::Value && ...), "Invalid argument(s) passed to FString::Printf");
		return PrintfImpl(Fmt, Args...);
	}

private:
	explicit FString(std::basic_string<TCHAR> InData) : Data(InData) {}
	static std::basic_string<TCHAR> Lower(std::basic_string<TCHAR> Text)
	{
		for (TCHAR& Character : Text) { if (Character >= 'A' && Character <= 'Z') { Character = static_cast<TCHAR>(Character + 32); } }
		return Text;
	}
	static FString PrintfImpl(const TCHAR* Fmt, ...);

	std::basic_string<TCHAR> Data;
};
