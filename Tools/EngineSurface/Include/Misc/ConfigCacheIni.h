#pragma once
// Reference: Runtime/Core/Public/Misc/ConfigCacheIni.h (FConfigCacheIni)

#include "CoreMinimal.h"

class FConfigCacheIni
{
public:
	virtual ~FConfigCacheIni() {}
	bool GetString(const TCHAR* Section, const TCHAR* Key, FString& Value, const FString& Filename);
	bool GetBool(const TCHAR* Section, const TCHAR* Key, bool& Value, const FString& Filename);
	bool GetInt(const TCHAR* Section, const TCHAR* Key, int32& Value, const FString& Filename);
	void SetString(const TCHAR* Section, const TCHAR* Key, const TCHAR* Value, const FString& Filename);
	void SetBool(const TCHAR* Section, const TCHAR* Key, bool Value, const FString& Filename);
	void SetInt(const TCHAR* Section, const TCHAR* Key, int32 Value, const FString& Filename);
	void Flush(bool bRemoveFromCache, const FString& Filename = TEXT(""));
	void UnloadFile(const FString& Filename);
};
