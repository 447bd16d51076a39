#pragma once
// Reference: Runtime/Core/Public/Modules/ModuleInterface.h (IModuleInterface)

#include "CoreTypes.h"

class IModuleInterface
{
public:
	virtual ~IModuleInterface() {}
	virtual void StartupModule() {}
	virtual void PreUnloadCallback() {}
	virtual void PostLoadCallback() {}
	virtual void ShutdownModule() {}
	virtual bool SupportsDynamicReloading() { return true; }
	virtual bool SupportsAutomaticShutdown() { return true; }
	virtual bool IsGameModule() const { return false; }
};
