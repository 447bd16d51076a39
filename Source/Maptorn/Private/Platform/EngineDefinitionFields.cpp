#include "Platform/EngineDefinitionFields.h"

#include "Platform/EngineLog.h"
#include "Platform/StringConversion.h"

#include "UObject/SoftObjectPtr.h"
#include "UObject/UnrealType.h"

// The game's classes, from the KelvorProxy module.
#include "Kelvor_GameMode.h"
#include "Kelvor_Map.h"
#include "Kelvor_Mod.h"

#include <string>

using MaptornString::ToFString;
using MaptornString::ToStd;

// Reads and writes by property name, accepting the property kinds the game could reasonably use.
namespace MaptornReflection
{
FProperty* FindField(const UObject& Object, const TCHAR* Name)
{
	return FindFProperty<FProperty>(Object.GetClass(), Name);
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

// The core keeps numbers and flags as numbers; the table carries every field as text.
std::string ReadIntText(const UObject& Object, const TCHAR* Name) { return std::to_string(ReadInt(Object, Name)); }
bool WriteIntText(UObject& Object, const TCHAR* Name, const std::string& Value)
{
	return WriteInt(Object, Name, static_cast<Maptorn::int32>(std::strtol(Value.c_str(), nullptr, 10)));
}
std::string ReadBoolText(const UObject& Object, const TCHAR* Name) { return ReadBool(Object, Name) ? "1" : "0"; }
bool WriteBoolText(UObject& Object, const TCHAR* Name, const std::string& Value) { return WriteBool(Object, Name, Value == "1"); }
}

namespace MaptornDefinitionFields
{
using Maptorn::FKelvorDefinition;
using namespace MaptornReflection;

// The UPROPERTY names behind each field of FKelvorDefinition. We do not own the game's headers:
// check these against the KelvorProxy module whenever its classes change.
const FField Fields[8] = {
	{TEXT("Id"), [](const FKelvorDefinition& D) { return D.Label; }, [](FKelvorDefinition& D, const std::string& V) { D.Label = V; }, ReadText, WriteText},
	{TEXT("MapLabel"), [](const FKelvorDefinition& D) { return D.DisplayName; }, [](FKelvorDefinition& D, const std::string& V) { D.DisplayName = V; },
		ReadText, WriteText},
	{TEXT("Version"), [](const FKelvorDefinition& D) { return std::to_string(D.Version); },
		[](FKelvorDefinition& D, const std::string& V) { D.Version = static_cast<Maptorn::int32>(std::strtol(V.c_str(), nullptr, 10)); },
		ReadIntText, WriteIntText},
	{TEXT("bIsCustomGameMode"), [](const FKelvorDefinition& D) { return std::string(D.bIsCustomGameMode ? "1" : "0"); },
		[](FKelvorDefinition& D, const std::string& V) { D.bIsCustomGameMode = V == "1"; }, ReadBoolText, WriteBoolText},
	{TEXT("CustomGameModeLabel"), [](const FKelvorDefinition& D) { return D.CustomGameModeLabel; },
		[](FKelvorDefinition& D, const std::string& V) { D.CustomGameModeLabel = V; }, ReadText, WriteText},
	{TEXT("Map"), [](const FKelvorDefinition& D) { return D.Map; }, [](FKelvorDefinition& D, const std::string& V) { D.Map = V; }, ReadObjectPath,
		WriteObjectPath},
	{TEXT("VeskoMap"), [](const FKelvorDefinition& D) { return D.VeskoMap; }, [](FKelvorDefinition& D, const std::string& V) { D.VeskoMap = V; },
		ReadObjectPath, WriteObjectPath},
	{TEXT("GameLogic"), [](const FKelvorDefinition& D) { return D.GameLogicClass; },
		[](FKelvorDefinition& D, const std::string& V) { D.GameLogicClass = V; }, ReadObjectPath, WriteObjectPath},
};

const TCHAR* const ObjectName = TEXT("definition");

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

void WarnMissing(const UObject& Object, const TCHAR* PropertyName)
{
	UE_LOG(MaptornLog, Warning, TEXT("%s has no property %s the workshop can write; check the names in EngineDefinitionFields.cpp"),
		*Object.GetClass()->GetName(), PropertyName);
}
}
