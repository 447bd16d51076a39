#pragma once
// Reference: Runtime/Core/Public/HAL/Platform.h (basic types, TCHAR, TEXT, FORCEINLINE)

#include <cstddef>
#include <cstdint>

typedef unsigned char uint8;
typedef unsigned short int uint16;
typedef unsigned int uint32;
typedef unsigned long long uint64;
typedef signed char int8;
typedef signed short int int16;
typedef signed int int32;
typedef signed long long int64;
typedef char ANSICHAR;
typedef char8_t UTF8CHAR;
typedef char16_t UTF16CHAR;
typedef decltype(sizeof(0)) SIZE_T;
typedef intptr_t PTRINT;
typedef uintptr_t UPTRINT;

// Windows builds use wchar_t; every other platform of the engine uses char16_t.
#if defined(_WIN32)
typedef wchar_t WIDECHAR;
typedef wchar_t TCHAR;
#define TEXT_PASTE(x) L##x
#else
typedef char16_t WIDECHAR;
typedef char16_t TCHAR;
#define TEXT_PASTE(x) u##x
#endif
#define TEXT(x) TEXT_PASTE(x)

#define FORCEINLINE inline
#define FORCENOINLINE
#define DLLEXPORT __attribute__((visibility("default")))
#define DLLIMPORT __attribute__((visibility("default")))
#define UE_NODISCARD [[nodiscard]]
#define UE_DEPRECATED(Version, Message) [[deprecated(Message)]]
#define PURE_VIRTUAL(Func, ...) { __VA_ARGS__ }
#define UE_ARRAY_COUNT(Array) (sizeof(Array) / sizeof((Array)[0]))
#define PLATFORM_WINDOWS 0
#define WITH_EDITOR 1
#define WITH_EDITORONLY_DATA 1
