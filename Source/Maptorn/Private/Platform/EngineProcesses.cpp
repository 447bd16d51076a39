#include "Platform/EngineProcesses.h"

#include "Platform/StringConversion.h"

#include "HAL/PlatformProcess.h"

bool FEngineProcesses::ExecProcess(const std::string& Url, const std::string& Params, Maptorn::int32& OutReturnCode,
	std::string& OutStdOut, std::string& OutStdErr)
{
	int32 ReturnCode = -1;
	FString StdOut;
	FString StdErr;
	const bool bStarted = FPlatformProcess::ExecProcess(*MaptornString::ToFString(Url), *MaptornString::ToFString(Params),
		&ReturnCode, &StdOut, &StdErr);
	OutReturnCode = ReturnCode;
	OutStdOut = MaptornString::ToStd(StdOut);
	OutStdErr = MaptornString::ToStd(StdErr);
	return bStarted;
}
