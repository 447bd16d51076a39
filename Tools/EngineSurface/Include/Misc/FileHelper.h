#pragma once
// Reference: Runtime/Core/Public/Misc/FileHelper.h (FFileHelper)

#include "CoreMinimal.h"
#include "HAL/FileManager.h"

struct FFileHelper
{
	enum class EEncodingOptions
	{
		AutoDetect,
		ForceAnsi,
		ForceUnicode,
		ForceUTF8,
		ForceUTF8WithoutBOM,
	};

	static bool LoadFileToArray(TArray<uint8>& Result, const TCHAR* Filename, uint32 Flags = 0);
	static bool LoadFileToString(FString& Result, const TCHAR* Filename);
	static bool SaveArrayToFile(const TArray<uint8>& Array, const TCHAR* Filename, IFileManager* FileManager = &IFileManager::Get(),
		uint32 WriteFlags = 0);
	static bool SaveStringToFile(const FString& String, const TCHAR* Filename, EEncodingOptions EncodingOptions = EEncodingOptions::AutoDetect,
		IFileManager* FileManager = &IFileManager::Get(), uint32 WriteFlags = 0);
};
