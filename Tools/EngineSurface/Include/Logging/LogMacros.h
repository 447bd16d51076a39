#pragma once
// Reference: Runtime/Core/Public/Logging/LogMacros.h, LogCategory.h (UE_LOG, DECLARE_LOG_CATEGORY_EXTERN)

#include "CoreTypes.h"
#include "Logging/LogVerbosity.h"
#include "Templates/IsArrayOrRefOfType.h"
#include "Templates/IsValidVariadicFunctionArg.h"
#include "UObject/NameTypes.h"

struct FLogCategoryBase
{
	FLogCategoryBase(const TCHAR* CategoryName, ELogVerbosity::Type InDefaultVerbosity)
		: Name(CategoryName)
		, DefaultVerbosity(InDefaultVerbosity)
	{
	}
	const FName& GetCategoryName() const { return Name; }

	FName Name;
	ELogVerbosity::Type DefaultVerbosity;
};

template <ELogVerbosity::Type InDefaultVerbosity, ELogVerbosity::Type InCompileTimeVerbosity>
struct FLogCategory : public FLogCategoryBase
{
	static constexpr ELogVerbosity::Type CompileTimeVerbosity = InCompileTimeVerbosity;
	explicit FLogCategory(const TCHAR* CategoryName) : FLogCategoryBase(CategoryName, InDefaultVerbosity) {}
};

struct FMsg
{
	// Declared only: the engine's output device.
	static void LogfImpl(const ANSICHAR* File, int32 Line, const FName& Category, ELogVerbosity::Type Verbosity, const TCHAR* Fmt, ...);

	template <typename FmtType, typename... Types>
	static void Logf(const ANSICHAR* File, int32 Line, const FName& Category, ELogVerbosity::Type Verbosity, const FmtType& Fmt, Types... Args)
	{
		static_assert(TIsArrayOrRefOfType<FmtType, TCHAR>::Value, "Formatting string must be a TCHAR array.");
		static_assert((TIsValidVariadicFunctionArg<Types>::Value && ...), "Invalid argument(s) passed to FMsg::Logf");
		LogfImpl(File, Line, Category, Verbosity, Fmt, Args...);
	}
};

#define DECLARE_LOG_CATEGORY_EXTERN(CategoryName, DefaultVerbosity, CompileTimeVerbosity) \
	extern struct FLogCategory##CategoryName : public FLogCategory<ELogVerbosity::DefaultVerbosity, ELogVerbosity::CompileTimeVerbosity> \
	{ \
		FORCEINLINE FLogCategory##CategoryName() : FLogCategory(TEXT(#CategoryName)) {} \
	} CategoryName;

#define DEFINE_LOG_CATEGORY(CategoryName) FLogCategory##CategoryName CategoryName;
#define DEFINE_LOG_CATEGORY_STATIC(CategoryName, DefaultVerbosity, CompileTimeVerbosity) \
	static struct FLogCategory##CategoryName : public FLogCategory<ELogVerbosity::DefaultVerbosity, ELogVerbosity::CompileTimeVerbosity> \
	{ \
		FORCEINLINE FLogCategory##CategoryName() : FLogCategory(TEXT(#CategoryName)) {} \
	} CategoryName;

#define UE_LOG(CategoryName, Verbosity, Format, ...) \
	do \
	{ \
		static_assert(TIsArrayOrRefOfType<decltype(Format), TCHAR>::Value, "Formatting string must be a TCHAR array."); \
		FMsg::Logf(__FILE__, __LINE__, CategoryName.GetCategoryName(), ELogVerbosity::Verbosity, Format, ##__VA_ARGS__); \
	} while (false)
