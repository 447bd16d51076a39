#pragma once
// Reference: Developer/DesktopPlatform/Public/IDesktopPlatform.h (IDesktopPlatform, EFileDialogFlags)

#include "CoreMinimal.h"

namespace EFileDialogFlags
{
enum Type
{
	None = 0x00,
	Multiple = 0x01,
};
}

class IDesktopPlatform
{
public:
	virtual ~IDesktopPlatform() {}
	virtual bool OpenFileDialog(const void* ParentWindowHandle, const FString& DialogTitle, const FString& DefaultPath, const FString& DefaultFile,
		const FString& FileTypes, uint32 Flags, TArray<FString>& OutFilenames) = 0;
	virtual bool OpenDirectoryDialog(const void* ParentWindowHandle, const FString& DialogTitle, const FString& DefaultPath, FString& OutFolderName) = 0;
};
