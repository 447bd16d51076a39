// A small object system for the editor tests: packages, objects by path, the three definition
// classes of the game with their properties, dirty marks and saves.

#include "EditorEngine/SurfaceObjects.h"
#include "EditorEngine/SurfaceTestState.h"

#include "AssetRegistry/AssetRegistryModule.h"
#include "CoreGlobals.h"
#include "FileHelpers.h"
#include "Kelvor_GameMode.h"
#include "Kelvor_Map.h"
#include "Kelvor_Mod.h"
#include "Interfaces/IPluginManager.h"
#include "Misc/FileHelper.h"
#include "Misc/PackageName.h"
#include "Misc/Paths.h"
#include "UObject/Package.h"
#include "UObject/UnrealType.h"
#include "UObject/WeakObjectPtr.h"

#include <functional>
#include <map>
#include <memory>
#include <vector>

namespace
{
struct FClassInfo
{
	FString Name;
	const UClass* Super = nullptr;
	std::vector<std::unique_ptr<FProperty>> Properties;
	std::function<UObject*()> Make;
};

struct FObjectRecord
{
	UClass* Class = nullptr;
	UObject* Outer = nullptr;
	FString Name;
	bool bDirty = false;
};

std::map<const UClass*, FClassInfo>& Classes()
{
	static std::map<const UClass*, FClassInfo> Infos;
	return Infos;
}

std::map<const UObject*, FObjectRecord>& Objects()
{
	static std::map<const UObject*, FObjectRecord> Records;
	return Records;
}

template <typename T>
int32 OffsetOf(const T& Sample, const void* Member)
{
	return static_cast<int32>(static_cast<const uint8*>(Member) - reinterpret_cast<const uint8*>(&Sample));
}

// The game's three definition classes share their field names; each is its own class.
template <typename DefinitionClass>
UClass* DefinitionStaticClass(const TCHAR* Name)
{
	static UClass Class;
	FClassInfo& Info = Classes()[&Class];
	if (Info.Name.IsEmpty())
	{
		Info.Name = Name;
		Info.Super = UObject::StaticClass();
		Info.Make = [] { return new DefinitionClass(); };
		const DefinitionClass Sample;
		Info.Properties.push_back(std::make_unique<FStrProperty>(TEXT("Id"), OffsetOf(Sample, &Sample.Id)));
		Info.Properties.push_back(std::make_unique<FTextProperty>(TEXT("MapLabel"), OffsetOf(Sample, &Sample.MapLabel)));
		Info.Properties.push_back(std::make_unique<FIntProperty>(TEXT("Version"), OffsetOf(Sample, &Sample.Version)));
		Info.Properties.push_back(std::make_unique<FBoolProperty>(TEXT("bIsCustomGameMode"), OffsetOf(Sample, &Sample.bIsCustomGameMode)));
		Info.Properties.push_back(std::make_unique<FStrProperty>(TEXT("CustomGameModeLabel"), OffsetOf(Sample, &Sample.CustomGameModeLabel)));
		Info.Properties.push_back(std::make_unique<FSoftObjectProperty>(TEXT("Map"), OffsetOf(Sample, &Sample.Map)));
		Info.Properties.push_back(std::make_unique<FSoftObjectProperty>(TEXT("VeskoMap"), OffsetOf(Sample, &Sample.VeskoMap)));
		Info.Properties.push_back(std::make_unique<FSoftObjectProperty>(TEXT("GameLogic"), OffsetOf(Sample, &Sample.GameLogic)));
		// The sample registered nothing, but its destructor ran through the object table.
	}
	return &Class;
}

UObject* Register(UObject* Object, UClass* Class, UObject* Outer, const FString& Name)
{
	Objects()[Object] = FObjectRecord{Class, Outer, Name, false};
	return Object;
}
}

UObject::~UObject()
{
	Objects().erase(this);
}

UClass* UObject::StaticClass()
{
	static UClass Class;
	return &Class;
}

UClass* UClass::StaticClass()
{
	static UClass Class;
	return &Class;
}

UClass* UPackage::StaticClass()
{
	static UClass Class;
	Classes()[&Class].Super = UObject::StaticClass();
	return &Class;
}

UClass* UKelvor_Map::StaticClass() { return DefinitionStaticClass<UKelvor_Map>(TEXT("Kelvor_Map")); }
UClass* UKelvor_Mod::StaticClass() { return DefinitionStaticClass<UKelvor_Mod>(TEXT("Kelvor_Mod")); }
UClass* UKelvor_GameMode::StaticClass() { return DefinitionStaticClass<UKelvor_GameMode>(TEXT("Kelvor_GameMode")); }

UClass* UObject::GetClass() const
{
	const auto Found = Objects().find(this);
	return Found == Objects().end() ? UObject::StaticClass() : Found->second.Class;
}

UObject* UObject::GetOuter() const
{
	const auto Found = Objects().find(this);
	return Found == Objects().end() ? nullptr : Found->second.Outer;
}

FString UObject::GetName() const
{
	const auto Found = Objects().find(this);
	if (Found != Objects().end())
	{
		return Found->second.Name;
	}
	const auto Class = Classes().find(static_cast<const UClass*>(this));
	return Class == Classes().end() ? FString(TEXT("Object")) : Class->second.Name;
}

FName UObject::GetFName() const
{
	return FName(GetName());
}

FString UObject::GetPathName(const UObject* /*StopOuter*/) const
{
	const UObject* Outer = GetOuter();
	return Outer ? Outer->GetPathName() + TEXT(".") + GetName() : GetName();
}

UPackage* UObject::GetOutermost() const
{
	const UObject* Top = this;
	while (Top->GetOuter())
	{
		Top = Top->GetOuter();
	}
	return static_cast<UPackage*>(const_cast<UObject*>(Top));
}

UPackage* UObject::GetPackage() const
{
	return GetOutermost();
}

bool UObject::MarkPackageDirty() const
{
	const auto Found = Objects().find(GetPackage());
	if (Found != Objects().end())
	{
		Found->second.bDirty = true;
	}
	return true;
}

bool UObject::IsA(const UClass* SomeBase) const
{
	return GetClass()->IsChildOf(SomeBase);
}

bool UClass::IsChildOf(const UClass* SomeBase) const
{
	for (const UClass* Class = this; Class; )
	{
		if (Class == SomeBase)
		{
			return true;
		}
		const auto Info = Classes().find(Class);
		Class = Info == Classes().end() ? nullptr : Info->second.Super;
	}
	return false;
}

void UPackage::SetDirtyFlag(bool bIsDirty)
{
	Objects()[this].bDirty = bIsDirty;
}

bool UPackage::IsDirty() const
{
	const auto Found = Objects().find(this);
	return Found != Objects().end() && Found->second.bDirty;
}

UPackage* CreatePackage(const TCHAR* PackageName)
{
	// Objects belong to the game thread: a worker that loads or makes one is a bug the engine would crash on.
	check(IsInGameThread());
	for (const auto& [Object, Record] : Objects())
	{
		if (!Record.Outer && Record.Class == UPackage::StaticClass() && Record.Name.Equals(PackageName))
		{
			return static_cast<UPackage*>(const_cast<UObject*>(Object));
		}
	}
	return static_cast<UPackage*>(Register(new UPackage(), UPackage::StaticClass(), nullptr, PackageName));
}

UObject* StaticFindObject(UClass* Class, UObject* InOuter, const TCHAR* Name, bool /*ExactClass*/)
{
	// Objects belong to the game thread: a worker that loads or makes one is a bug the engine would crash on.
	check(IsInGameThread());
	for (const auto& [Object, Record] : Objects())
	{
		if (Record.Outer == InOuter && Record.Name.Equals(Name) && Object->IsA(Class))
		{
			return const_cast<UObject*>(Object);
		}
	}
	return nullptr;
}

UObject* StaticLoadObject(UClass* Class, UObject* /*InOuter*/, const TCHAR* Name, const TCHAR* /*Filename*/, uint32 /*LoadFlags*/,
	UPackageMap* /*Sandbox*/, bool /*bAllowObjectReconciliation*/, const FLinkerInstancingContext* /*InstancingContext*/)
{
	check(IsInGameThread());
	for (const auto& [Object, Record] : Objects())
	{
		if (Record.Outer && Object->GetPathName().Equals(Name) && Object->IsA(Class))
		{
			return const_cast<UObject*>(Object);
		}
	}
	return nullptr;
}

UObject* StaticConstructObject_Internal(const UClass* Class, UObject* InOuter, FName Name, EObjectFlags /*SetFlags*/)
{
	// Objects belong to the game thread: a worker that loads or makes one is a bug the engine would crash on.
	check(IsInGameThread());
	const auto Info = Classes().find(Class);
	check(Info != Classes().end() && Info->second.Make);
	return Register(Info->second.Make(), const_cast<UClass*>(Class), InOuter, Name.ToString());
}

bool MaptornSurfaceIsObjectAlive(const UObject* Object)
{
	return Objects().count(Object) != 0;
}

FProperty* MaptornSurfaceFindPropertyByName(const UStruct* Owner, FName FieldName)
{
	for (const UClass* Class = static_cast<const UClass*>(Owner); Class; )
	{
		const auto Info = Classes().find(Class);
		if (Info == Classes().end())
		{
			return nullptr;
		}
		for (const std::unique_ptr<FProperty>& Property : Info->second.Properties)
		{
			if (Property->GetFName() == FieldName)
			{
				return Property.get();
			}
		}
		Class = Info->second.Super;
	}
	return nullptr;
}

FString FPackageName::ObjectPathToPackageName(const FString& InObjectPath)
{
	FString PackageName;
	return InObjectPath.Split(TEXT("."), &PackageName, nullptr) ? PackageName : InObjectPath;
}

bool FPackageName::IsValidLongPackageName(const FString& InLongPackageName, bool /*bIncludeReadOnlyRoots*/, FText* /*OutReason*/)
{
	return InLongPackageName.StartsWith(TEXT("/")) && InLongPackageName.Mid(1).Contains(TEXT("/")) && !InLongPackageName.Contains(TEXT("."));
}

void FAssetRegistryModule::AssetCreated(UObject* /*NewAsset*/)
{
}

FString FPackageName::LongPackageNameToFilename(const FString& InLongPackageName, const FString& InExtension)
{
	// /Game/ is the project's content; any other root is the content of the plug-in of that name.
	FString Root;
	FString Rest;
	if (!InLongPackageName.Mid(1).Split(TEXT("/"), &Root, &Rest))
	{
		return FString();
	}
	FString ContentDir;
	if (Root.Equals(TEXT("Game")))
	{
		ContentDir = FPaths::ProjectContentDir();
	}
	else if (const TSharedPtr<IPlugin> Plugin = IPluginManager::Get().FindPlugin(Root))
	{
		ContentDir = Plugin->GetContentDir();
		ContentDir += ContentDir.EndsWith(TEXT("/")) ? TEXT("") : TEXT("/");
	}
	return ContentDir.IsEmpty() ? FString() : ContentDir + Rest + InExtension;
}

bool UEditorLoadingAndSavingUtils::SavePackages(const TArray<UPackage*>& PackagesToSave, bool /*bOnlyDirty*/)
{
	bool bAllSaved = true;
	for (UPackage* Package : PackagesToSave)
	{
		SurfaceTestState::Get().SavedPackages.push_back(MaptornSurfaceUtf::ToUtf8(*Package->GetName(), Package->GetName().Len()));
		// A readable stand-in for the asset file: the class and the properties of each of its objects.
		FString Text;
		for (const auto& [Object, Record] : Objects())
		{
			if (Record.Outer != Package)
			{
				continue;
			}
			Text += FString::Printf(TEXT("[%s %s]\n"), *Object->GetClass()->GetName(), *Record.Name);
			for (const FProperty* Property : SurfaceObjects::PropertiesOf(*Object))
			{
				Text += Property->GetName() + TEXT("=") + SurfaceObjects::PropertyText(*Object, *Property) + TEXT("\n");
			}
		}
		// A root with no folder on disk (an object system used without a project) keeps its packages in memory.
		const FString File = FPackageName::LongPackageNameToFilename(Package->GetName(), TEXT(".uasset"));
		bAllSaved = (File.IsEmpty() || FFileHelper::SaveStringToFile(Text, *File)) && bAllSaved;
		Package->SetDirtyFlag(false);
	}
	return bAllSaved;
}

namespace SurfaceObjects
{
void UnloadPackage(const FString& PackageName)
{
	// The package's objects go first and the package last, as the garbage collector frees them.
	std::vector<const UObject*> Doomed;
	const UObject* Package = nullptr;
	for (const auto& [Object, Record] : Objects())
	{
		if (!Object->GetPackage()->GetName().Equals(PackageName))
		{
			continue;
		}
		if (Record.Class == UPackage::StaticClass())
		{
			Package = Object;
		}
		else
		{
			Doomed.push_back(Object);
		}
	}
	for (const UObject* Object : Doomed)
	{
		delete Object;
	}
	delete Package;
}

std::vector<FProperty*> PropertiesOf(const UObject& Object)
{
	std::vector<FProperty*> Properties;
	for (const UClass* Class = Object.GetClass(); Class; )
	{
		const auto Info = Classes().find(Class);
		if (Info == Classes().end())
		{
			break;
		}
		for (const std::unique_ptr<FProperty>& Property : Info->second.Properties)
		{
			Properties.push_back(Property.get());
		}
		Class = Info->second.Super;
	}
	return Properties;
}

void UnloadAll()
{
	// Objects first, packages last, as the garbage collector frees them when the editor closes.
	std::vector<const UObject*> Objects;
	std::vector<const UObject*> Packages;
	for (const auto& [Object, Record] : ::Objects())
	{
		(Record.Class == UPackage::StaticClass() ? Packages : Objects).push_back(Object);
	}
	for (const UObject* Object : Objects)
	{
		delete Object;
	}
	for (const UObject* Package : Packages)
	{
		delete Package;
	}
}
}
