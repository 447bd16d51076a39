#include "Platform/EngineLog.h"

#include "Platform/StringConversion.h"

#include <cstring>

DEFINE_LOG_CATEGORY(MaptornLog);

// UE_LOG takes its category and verbosity as tokens, so each pair is spelled out once here.
#define MAPTORN_LOG_AT(CategoryName, Verbosity, Text) \
	switch (Verbosity) \
	{ \
	case Maptorn::ELogVerbosity::Error: UE_LOG(CategoryName, Error, TEXT("%s"), *Text); break; \
	case Maptorn::ELogVerbosity::Warning: UE_LOG(CategoryName, Warning, TEXT("%s"), *Text); break; \
	default: UE_LOG(CategoryName, Log, TEXT("%s"), *Text); break; \
	}

void FEngineLog::Log(const char* Category, Maptorn::ELogVerbosity Verbosity, const std::string& Message)
{
	const FString Text = MaptornString::ToFString(Message);
	if (Category && std::strcmp(Category, Maptorn::LogCategory::LogTemp) == 0)
	{
		MAPTORN_LOG_AT(LogTemp, Verbosity, Text);
	}
	else
	{
		MAPTORN_LOG_AT(MaptornLog, Verbosity, Text);
	}
}

#undef MAPTORN_LOG_AT
