#pragma once

#include "CoreMinimal.h"
#include "Platform/LogPort.h"

DECLARE_LOG_CATEGORY_EXTERN(MaptornLog, Log, All);

// The core's log lines go to the engine's output log, in MaptornLog or LogTemp as the core asks.
class FEngineLog final : public Maptorn::IMaptornLog
{
public:
	void Log(const char* Category, Maptorn::ELogVerbosity Verbosity, const std::string& Message) override;
};
