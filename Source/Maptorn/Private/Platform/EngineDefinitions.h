#pragma once

#include "CoreMinimal.h"
#include "Platform/DefinitionsPort.h"
#include "UObject/WeakObjectPtr.h"

#include <optional>

// The game's definition assets (UKelvor_Map, UKelvor_Mod, UKelvor_GameMode) seen as the core's
// plain FKelvorDefinition. Fields are copied in on load and written back before every dirty-mark
// or save; the same package always yields the same shared struct.
class FEngineDefinitions final : public Maptorn::IMaptornDefinitions
{
public:
	std::shared_ptr<Maptorn::FKelvorDefinition> LoadObject(const std::string& ObjectPath) override;
	std::shared_ptr<Maptorn::FKelvorDefinition> CreateDefinition(const std::string& PackageName, Maptorn::EModType Class) override;
	void MarkPackageDirty(const Maptorn::FKelvorDefinition& Definition) override;
	bool SavePackage(const Maptorn::FKelvorDefinition& Definition) override;

private:
	struct FLiveDefinition
	{
		TWeakObjectPtr<UObject> Object;
		FString ObjectPath;   // to find the asset again if the editor unloaded it meanwhile
		std::shared_ptr<Maptorn::FKelvorDefinition> Definition;
	};

	std::shared_ptr<Maptorn::FKelvorDefinition> Track(UObject& Object, Maptorn::EModType Class);
	// The asset behind Definition with the struct's fields written into it; null when it is gone.
	UObject* WriteBack(const Maptorn::FKelvorDefinition& Definition);

	// By long package name ("/UGC12/definition").
	TMap<FString, FLiveDefinition> LiveDefinitions;
};
