#pragma once

#include "CoreMinimal.h"
#include "Content/KelvorDefinition.h"

#include <optional>
#include <string>

class UClass;
class UObject;

// The fields of the game's definition classes the workshop reads and writes, each seen both as a
// member of the core's FKelvorDefinition and as a property of the asset, as text.
namespace MaptornDefinitionFields
{
struct FField
{
	const TCHAR* PropertyName;
	std::string (*FromCore)(const Maptorn::FKelvorDefinition& Definition);
	void (*ToCore)(Maptorn::FKelvorDefinition& Definition, const std::string& Value);
	std::string (*FromAsset)(const UObject& Object, const TCHAR* PropertyName);
	bool (*ToAsset)(UObject& Object, const TCHAR* PropertyName, const std::string& Value);
};

// Every field, in the order the definition lists them.
extern const FField Fields[8];

// The asset's object name inside its package.
extern const TCHAR* const ObjectName;

UClass* ClassOf(Maptorn::EModType Type);
std::optional<Maptorn::EModType> TypeOf(const UObject& Object);

// Logged when the game's class lacks a property the workshop has a value for.
void WarnMissing(const UObject& Object, const TCHAR* PropertyName);
}
