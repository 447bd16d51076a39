#pragma once

#include "CoreMinimal.h"
#include "Platform/ProcessesPort.h"

// Child processes through FPlatformProcess::ExecProcess, which quotes the executable itself.
class FEngineProcesses final : public Maptorn::IMaptornProcesses
{
public:
	bool ExecProcess(const std::string& Url, const std::string& Params, Maptorn::int32& OutReturnCode, std::string& OutStdOut,
		std::string& OutStdErr) override;
};
