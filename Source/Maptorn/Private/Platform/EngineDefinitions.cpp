#include "Platform/EngineDefinitions.h"

#include "Platform/EngineDefinitionFields.h"
#include "Platform/StringConversion.h"

#include "AssetRegistry/AssetRegistryModule.h"
#include "FileHelpers.h"
#include "Misc/PackageName.h"
#include "UObject/Package.h"
#include "UObject/UObjectGlobals.h"

using MaptornString::ToFString;
using MaptornString::ToStd;

namespace
{
UObject* LoadAsset(const FString& ObjectPath)
{
	return LoadObject<UObject>(nullptr, *ObjectPath, nullptr, LOAD_NoWarn | LOAD_Quiet);
}
}

std::shared_ptr<Maptorn::FKelvorDefinition> FEngineDefinitions::LoadObject(const std::string& ObjectPath)
{
	UObject* Object = LoadAsset(ToFString(ObjectPath));
	const std::optional<Maptorn::EModType> Type = Object ? MaptornDefinitionFields::TypeOf(*Object) : std::nullopt;
	return Type ? Track(*Object, *Type) : nullptr;
}

std::shared_ptr<Maptorn::FKelvorDefinition> FEngineDefinitions::CreateDefinition(const std::string& PackageName, Maptorn::EModType Class)
{
	const FString LongPackageName = ToFString(PackageName);
	// Also refuses a name whose first folder is not a mounted content root.
	if (!FPackageName::IsValidLongPackageName(LongPackageName))
	{
		return nullptr;
	}
	UPackage* Package = CreatePackage(*LongPackageName);
	UClass* DefinitionClass = MaptornDefinitionFields::ClassOf(Class);
	UObject* Object = FindObject<UObject>(Package, MaptornDefinitionFields::ObjectName);
	if (Object && !Object->IsA(DefinitionClass))
	{
		return nullptr;
	}
	if (!Object)
	{
		Object = NewObject<UObject>(Package, DefinitionClass, MaptornDefinitionFields::ObjectName, RF_Public | RF_Standalone);
		FAssetRegistryModule::AssetCreated(Object);
	}
	return Track(*Object, Class);
}

void FEngineDefinitions::MarkPackageDirty(const Maptorn::FKelvorDefinition& Definition)
{
	if (UObject* Object = WriteBack(Definition))
	{
		Object->MarkPackageDirty();
	}
}

bool FEngineDefinitions::SavePackage(const Maptorn::FKelvorDefinition& Definition)
{
	UObject* Object = WriteBack(Definition);
	if (!Object)
	{
		return false;
	}
	Object->MarkPackageDirty();
	const TArray<UPackage*> Packages{Object->GetPackage()};
	return UEditorLoadingAndSavingUtils::SavePackages(Packages, /*bOnlyDirty*/ false);
}

// A field the core changed and has not written yet keeps the core's value; every other field
// takes the asset's, which may have been edited in the editor since the last load.
std::shared_ptr<Maptorn::FKelvorDefinition> FEngineDefinitions::Track(UObject& Object, Maptorn::EModType Class)
{
	const std::string PackageName = ToStd(Object.GetPackage()->GetName());
	FTrackedDefinition& Entry = Tracked[PackageName];
	const bool bFirstLoad = !Entry.Definition;
	if (bFirstLoad)
	{
		Entry.Definition = std::make_shared<Maptorn::FKelvorDefinition>();
	}
	Entry.ObjectPath = Object.GetPathName();
	Maptorn::FKelvorDefinition& Core = *Entry.Definition;
	Core.Class = Class;
	Core.PackageName = PackageName;
	for (const MaptornDefinitionFields::FField& Field : MaptornDefinitionFields::Fields)
	{
		const std::string AssetValue = Field.FromAsset(Object, Field.PropertyName);
		if (bFirstLoad || Field.FromCore(Core) == Field.FromCore(Entry.AsRead))
		{
			Field.ToCore(Core, AssetValue);
		}
		Field.ToCore(Entry.AsRead, AssetValue);
	}
	return Entry.Definition;
}

UObject* FEngineDefinitions::WriteBack(const Maptorn::FKelvorDefinition& Definition)
{
	const auto Found = Tracked.find(Definition.PackageName);
	if (Found == Tracked.end())
	{
		return nullptr;
	}
	FTrackedDefinition& Entry = Found->second;
	UObject* Object = LoadAsset(Entry.ObjectPath);
	if (!Object)
	{
		return nullptr;
	}
	for (const MaptornDefinitionFields::FField& Field : MaptornDefinitionFields::Fields)
	{
		const std::string CoreValue = Field.FromCore(Definition);
		if (CoreValue == Field.FromCore(Entry.AsRead))
		{
			continue;
		}
		if (Field.ToAsset(*Object, Field.PropertyName, CoreValue))
		{
			Field.ToCore(Entry.AsRead, CoreValue);
		}
		else
		{
			MaptornDefinitionFields::WarnMissing(*Object, Field.PropertyName);
		}
	}
	return Object;
}
