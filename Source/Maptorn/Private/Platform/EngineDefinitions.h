#pragma once

#include "CoreMinimal.h"
#include "Platform/DefinitionsPort.h"

#include <map>
#include <string>

class UObject;

// The game's definition assets (UKelvor_Map, UKelvor_Mod, UKelvor_GameMode) seen as the core's
// plain FKelvorDefinition. The same package always yields the same shared struct, read afresh
// from the asset on every load, so an edit made in the details panel meanwhile is seen. A save
// writes back only the fields the core changed since it last read them, so it never overwrites
// the modder's edits with stale values.
class FEngineDefinitions final : public Maptorn::IMaptornDefinitions
{
public:
	std::shared_ptr<Maptorn::FKelvorDefinition> LoadObject(const std::string& ObjectPath) override;
	std::shared_ptr<Maptorn::FKelvorDefinition> CreateDefinition(const std::string& PackageName, Maptorn::EModType Class) override;
	void MarkPackageDirty(const Maptorn::FKelvorDefinition& Definition) override;
	bool SavePackage(const Maptorn::FKelvorDefinition& Definition) override;

private:
	struct FTrackedDefinition
	{
		FString ObjectPath;
		std::shared_ptr<Maptorn::FKelvorDefinition> Definition;
		// The asset's values as last read or written: what the core's struct is compared against.
		Maptorn::FKelvorDefinition AsRead;
	};

	std::shared_ptr<Maptorn::FKelvorDefinition> Track(UObject& Object, Maptorn::EModType Class);
	// The asset behind Definition with the fields the core changed written into it; null when it is gone.
	UObject* WriteBack(const Maptorn::FKelvorDefinition& Definition);

	// By long package name ("/UGC12/definition").
	std::map<std::string, FTrackedDefinition> Tracked;
};
