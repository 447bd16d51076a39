#include "Platform/EngineDefinitions.h"

#include "Platform/EngineLog.h"
#include "Platform/StringConversion.h"

#include "AssetRegistry/AssetRegistryModule.h"
#include "FileHelpers.h"
#include "Misc/PackageName.h"
#include "UObject/Package.h"
#include "UObject/SoftObjectPtr.h"
#include "UObject/UnrealType.h"

// The game's classes, from the KelvorProxy module.
#include "Kelvor_GameMode.h"
#include "Kelvor_Map.h"
#include "Kelvor_Mod.h"

using MaptornString::ToFString;
using MaptornString::ToStd;

// The UPROPERTY names behind each field of FKelvorDefinition. We do not own the game's headers:
// check these against the KelvorProxy module whenever its classes change.
namespace MaptornDefinitionFields
{
const TCHAR* const Label = TEXT("Id");
const TCHAR* const DisplayName = TEXT("MapLabel");
const TCHAR* const Version = TEXT("Version");
const TCHAR* const bIsCustomGameMode = TEXT("bIsCustomGameMode");
const TCHAR* const CustomGameModeLabel = TEXT("CustomGameModeLabel");
const TCHAR* const Map = TEXT("Map");
const TCHAR* const VeskoMap = TEXT("VeskoMap");
const TCHAR* const GameLogicClass = TEXT("GameLogic");
const TCHAR* const ObjectName = TEXT("definition");
}

namespace MaptornDefinitionClasses
{
UClass* ClassOf(Maptorn::EModType Type)
{
	switch (Type)
	{
	case Maptorn::EModType::Mod: return UKelvor_Mod::StaticClass();
	case Maptorn::EModType::GameMode: return UKelvor_GameMode::StaticClass();
	default: return UKelvor_Map::StaticClass();
	}
}

// Game modes are tested first in case the game derives them from maps.
std::optional<Maptorn::EModType> TypeOf(const UObject& Object)
{
	if (Object.IsA<UKelvor_GameMode>()) { return Maptorn::EModType::GameMode; }
	if (Object.IsA<UKelvor_Mod>()) { return Maptorn::EModType::Mod; }
	if (Object.IsA<UKelvor_Map>()) { return Maptorn::EModType::Map; }
	return std::nullopt;
}
}

// Reads and writes by property name, accepting the property kinds the game could reasonably use.
namespace MaptornReflection
{
FProperty* FindField(const UObject& Object, const TCHAR* Name)
{
	return FindFProperty<FProperty>(Object.GetClass(), Name);
}

void WarnMissing(const UObject& Object, const TCHAR* Name)
{
	UE_LOG(MaptornLog, Warning, TEXT("%s has no property %s the workshop can write; check the names in EngineDefinitions.cpp"),
		*Object.GetClass()->GetName(), Name);
}

std::string ReadText(const UObject& Object, const TCHAR* Name)
{
	const FProperty* Property = FindField(Object, Name);
	if (const FStrProperty* Str = CastField<FStrProperty>(Property)) { return ToStd(Str->GetPropertyValue_InContainer(&Object)); }
	if (const FTextProperty* Txt = CastField<FTextProperty>(Property)) { return ToStd(Txt->GetPropertyValue_InContainer(&Object).ToString()); }
	if (const FNameProperty* Nm = CastField<FNameProperty>(Property)) { return ToStd(Nm->GetPropertyValue_InContainer(&Object).ToString()); }
	return std::string();
}

bool WriteText(UObject& Object, const TCHAR* Name, const std::string& Value)
{
	FProperty* Property = FindField(Object, Name);
	const FString Converted = ToFString(Value);
	if (FStrProperty* Str = CastField<FStrProperty>(Property)) { Str->SetPropertyValue_InContainer(&Object, Converted); return true; }
	if (FTextProperty* Txt = CastField<FTextProperty>(Property)) { Txt->SetPropertyValue_InContainer(&Object, FText::FromString(Converted)); return true; }
	if (FNameProperty* Nm = CastField<FNameProperty>(Property)) { Nm->SetPropertyValue_InContainer(&Object, FName(*Converted)); return true; }
	return false;
}

Maptorn::int32 ReadInt(const UObject& Object, const TCHAR* Name)
{
	const FNumericProperty* Number = CastField<FNumericProperty>(FindField(Object, Name));
	if (!Number || !Number->IsInteger())
	{
		return 0;
	}
	return static_cast<Maptorn::int32>(Number->GetSignedIntPropertyValue(Number->ContainerPtrToValuePtr<void>(&Object)));
}

bool WriteInt(UObject& Object, const TCHAR* Name, Maptorn::int32 Value)
{
	FNumericProperty* Number = CastField<FNumericProperty>(FindField(Object, Name));
	if (!Number || !Number->IsInteger())
	{
		return false;
	}
	Number->SetIntPropertyValue(Number->ContainerPtrToValuePtr<void>(&Object), static_cast<int64>(Value));
	return true;
}

bool ReadBool(const UObject& Object, const TCHAR* Name)
{
	const FBoolProperty* Flag = CastField<FBoolProperty>(FindField(Object, Name));
	return Flag && Flag->GetPropertyValue_InContainer(&Object);
}

bool WriteBool(UObject& Object, const TCHAR* Name, bool bValue)
{
	FBoolProperty* Flag = CastField<FBoolProperty>(FindField(Object, Name));
	if (Flag)
	{
		Flag->SetPropertyValue_InContainer(&Object, bValue);
	}
	return Flag != nullptr;
}

// Soft references (maps, soft classes) as their path; hard object or class references as the
// referenced object's path. Soft properties derive from the object base, so they are tried first.
std::string ReadObjectPath(const UObject& Object, const TCHAR* Name)
{
	const FProperty* Property = FindField(Object, Name);
	if (const FSoftObjectProperty* Soft = CastField<FSoftObjectProperty>(Property))
	{
		return ToStd(Soft->GetPropertyValue_InContainer(&Object).ToSoftObjectPath().ToString());
	}
	if (const FObjectPropertyBase* Hard = CastField<FObjectPropertyBase>(Property))
	{
		const UObject* Target = Hard->GetObjectPropertyValue_InContainer(&Object);
		return Target ? ToStd(Target->GetPathName()) : std::string();
	}
	return std::string();
}

bool WriteObjectPath(UObject& Object, const TCHAR* Name, const std::string& Path)
{
	FProperty* Property = FindField(Object, Name);
	const FString Converted = ToFString(Path);
	if (FSoftObjectProperty* Soft = CastField<FSoftObjectProperty>(Property))
	{
		Soft->SetPropertyValue_InContainer(&Object, FSoftObjectPtr(FSoftObjectPath(Converted)));
		return true;
	}
	if (FObjectPropertyBase* Hard = CastField<FObjectPropertyBase>(Property))
	{
		// A hard reference holds the object itself, so it has to be loaded.
		UObject* Target = Converted.IsEmpty() ? nullptr : StaticLoadObject(Hard->PropertyClass, nullptr, *Converted);
		Hard->SetObjectPropertyValue_InContainer(&Object, Target);
		return true;
	}
	return false;
}

void ReadFields(const UObject& Object, Maptorn::FKelvorDefinition& Definition)
{
	namespace Fields = MaptornDefinitionFields;
	Definition.Label = ReadText(Object, Fields::Label);
	Definition.DisplayName = ReadText(Object, Fields::DisplayName);
	Definition.Version = ReadInt(Object, Fields::Version);
	Definition.bIsCustomGameMode = ReadBool(Object, Fields::bIsCustomGameMode);
	Definition.CustomGameModeLabel = ReadText(Object, Fields::CustomGameModeLabel);
	Definition.Map = ReadObjectPath(Object, Fields::Map);
	Definition.VeskoMap = ReadObjectPath(Object, Fields::VeskoMap);
	Definition.GameLogicClass = ReadObjectPath(Object, Fields::GameLogicClass);
}

// A field the class lacks is only worth a warning when the core has something to put there.
void WriteFields(const Maptorn::FKelvorDefinition& Definition, UObject& Object)
{
	namespace Fields = MaptornDefinitionFields;
	const auto Check = [&Object](bool bWritten, bool bHasValue, const TCHAR* Name)
	{
		if (!bWritten && bHasValue)
		{
			WarnMissing(Object, Name);
		}
	};
	Check(WriteText(Object, Fields::Label, Definition.Label), !Definition.Label.empty(), Fields::Label);
	Check(WriteText(Object, Fields::DisplayName, Definition.DisplayName), !Definition.DisplayName.empty(), Fields::DisplayName);
	Check(WriteInt(Object, Fields::Version, Definition.Version), Definition.Version != 0, Fields::Version);
	Check(WriteBool(Object, Fields::bIsCustomGameMode, Definition.bIsCustomGameMode), Definition.bIsCustomGameMode, Fields::bIsCustomGameMode);
	Check(WriteText(Object, Fields::CustomGameModeLabel, Definition.CustomGameModeLabel), !Definition.CustomGameModeLabel.empty(),
		Fields::CustomGameModeLabel);
	Check(WriteObjectPath(Object, Fields::Map, Definition.Map), !Definition.Map.empty(), Fields::Map);
	Check(WriteObjectPath(Object, Fields::VeskoMap, Definition.VeskoMap), !Definition.VeskoMap.empty(), Fields::VeskoMap);
	Check(WriteObjectPath(Object, Fields::GameLogicClass, Definition.GameLogicClass), !Definition.GameLogicClass.empty(),
		Fields::GameLogicClass);
}
}

std::shared_ptr<Maptorn::FKelvorDefinition> FEngineDefinitions::LoadObject(const std::string& ObjectPath)
{
	const FString Path = ToFString(ObjectPath);
	const FLiveDefinition* Live = LiveDefinitions.Find(FPackageName::ObjectPathToPackageName(Path));
	if (Live && Live->Object.IsValid())
	{
		return Live->Definition;
	}
	// The member of the same name hides the engine's template.
	UObject* Object = ::LoadObject<UObject>(nullptr, *Path, nullptr, LOAD_NoWarn | LOAD_Quiet);
	const std::optional<Maptorn::EModType> Type = Object ? MaptornDefinitionClasses::TypeOf(*Object) : std::nullopt;
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
	UClass* DefinitionClass = MaptornDefinitionClasses::ClassOf(Class);
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

std::shared_ptr<Maptorn::FKelvorDefinition> FEngineDefinitions::Track(UObject& Object, Maptorn::EModType Class)
{
	const FString PackageName = Object.GetPackage()->GetName();
	FLiveDefinition& Live = LiveDefinitions.FindOrAdd(PackageName);
	// A definition the editor unloaded and we loaded again keeps the struct the core already holds.
	if (!Live.Definition)
	{
		Live.Definition = std::make_shared<Maptorn::FKelvorDefinition>();
	}
	Live.Object = &Object;
	Live.ObjectPath = Object.GetPathName();
	Live.Definition->Class = Class;
	Live.Definition->PackageName = ToStd(PackageName);
	MaptornReflection::ReadFields(Object, *Live.Definition);
	return Live.Definition;
}

UObject* FEngineDefinitions::WriteBack(const Maptorn::FKelvorDefinition& Definition)
{
	FLiveDefinition* Live = LiveDefinitions.Find(ToFString(Definition.PackageName));
	if (!Live)
	{
		return nullptr;
	}
	if (!Live->Object.IsValid())
	{
		Live->Object = ::LoadObject<UObject>(nullptr, *Live->ObjectPath, nullptr, LOAD_NoWarn | LOAD_Quiet);
	}
	UObject* Object = Live->Object.Get();
	if (Object)
	{
		MaptornReflection::WriteFields(Definition, *Object);
	}
	return Object;
}
