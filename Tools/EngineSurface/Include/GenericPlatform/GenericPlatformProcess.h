#pragma once
// Reference: Runtime/Core/Public/GenericPlatform/GenericPlatformProcess.h (FPlatformProcess)

#include "CoreMinimal.h"

struct FGenericPlatformProcess
{
	static const TCHAR* BaseDir();
	static const TCHAR* UserDir();
	static const TCHAR* UserSettingsDir();
	static const TCHAR* UserTempDir();
	static bool ExecProcess(const TCHAR* URL, const TCHAR* Params, int32* OutReturnCode, FString* OutStdOut, FString* OutStdErr,
		const TCHAR* OptionalWorkingDirectory = nullptr, bool bShouldEndWithParentProcess = false);
	static void LaunchURL(const TCHAR* URL, const TCHAR* Parms, FString* Error);
	static void Sleep(float Seconds);
};

typedef FGenericPlatformProcess FPlatformProcess;
