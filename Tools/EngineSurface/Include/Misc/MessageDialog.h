#pragma once
// Reference: Runtime/Core/Public/Misc/MessageDialog.h (FMessageDialog, 5.1 form with a title pointer)

#include "CoreMinimal.h"
#include "GenericPlatform/GenericPlatformMisc.h"

struct FMessageDialog
{
	static EAppReturnType::Type Open(EAppMsgType::Type MessageType, const FText& Message, const FText* OptTitle = nullptr);
};
