#pragma once
// Reference: Runtime/Core/Public/Modules/ModuleManager.h (FModuleManager, FDefaultModuleImpl, IMPLEMENT_MODULE)

#include "CoreMinimal.h"
#include "Modules/ModuleInterface.h"

class FDefaultModuleImpl : public IModuleInterface
{
};

class FModuleManager
{
public:
	static FModuleManager& Get();

	IModuleInterface* LoadModule(const FName InModuleName);
	IModuleInterface& LoadModuleChecked(const FName InModuleName);
	IModuleInterface* GetModule(const FName InModuleName);
	bool IsModuleLoaded(const FName InModuleName) const;

	template <typename TModuleInterface>
	static TModuleInterface& LoadModuleChecked(const FName ModuleName)
	{
		return static_cast<TModuleInterface&>(Get().LoadModuleChecked(ModuleName));
	}
	template <typename TModuleInterface>
	static TModuleInterface& GetModuleChecked(const FName ModuleName)
	{
		IModuleInterface* Module = Get().GetModule(ModuleName);
		check(Module);
		return static_cast<TModuleInterface&>(*Module);
	}
	template <typename TModuleInterface>
	static TModuleInterface* GetModulePtr(const FName ModuleName)
	{
		return static_cast<TModuleInterface*>(Get().GetModule(ModuleName));
	}
};

// The modular (DLL) form: each module exports its own InitializeModule.
#define IMPLEMENT_MODULE(ModuleImplClass, ModuleName) \
	extern "C" DLLEXPORT IModuleInterface* InitializeModule() { return new ModuleImplClass(); } \
	extern "C" void IMPLEMENT_MODULE_##ModuleName() {}
