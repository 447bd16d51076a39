// Child processes of the stand-in editor: really run, with the command line built and split by the
// Windows rules the engine's ExecProcess follows (the standalone host's process runner).

#include "HAL/PlatformProcess.h"
#include "Platform/StandaloneProcesses.h"
#include "Platform/StringConversion.h"

bool FGenericPlatformProcess::ExecProcess(const TCHAR* URL, const TCHAR* Params, int32* OutReturnCode, FString* OutStdOut,
	FString* OutStdErr, const TCHAR* /*OptionalWorkingDirectory*/, bool /*bShouldEndWithParentProcess*/)
{
	static Maptorn::FStandaloneProcesses Processes;
	Maptorn::int32 ReturnCode = -1;
	std::string StdOut;
	std::string StdErr;
	const bool bStarted = Processes.ExecProcess(MaptornString::ToStd(FString(URL)), Params ? MaptornString::ToStd(FString(Params)) : std::string(),
		ReturnCode, StdOut, StdErr);
	if (OutReturnCode)
	{
		*OutReturnCode = ReturnCode;
	}
	if (OutStdOut)
	{
		*OutStdOut = MaptornString::ToFString(StdOut);
	}
	if (OutStdErr)
	{
		*OutStdErr = MaptornString::ToFString(StdErr);
	}
	return bStarted;
}
