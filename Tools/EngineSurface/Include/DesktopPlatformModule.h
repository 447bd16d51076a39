#pragma once
// Reference: Developer/DesktopPlatform/Public/DesktopPlatformModule.h (FDesktopPlatformModule)

#include "CoreMinimal.h"
#include "IDesktopPlatform.h"
#include "Modules/ModuleInterface.h"

class FDesktopPlatformModule : public IModuleInterface
{
public:
	static IDesktopPlatform* Get();
};
