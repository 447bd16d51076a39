#include "Platform/JsonDefinitions.h"

#include "Common/FileHelper.h"
#include "Common/Paths.h"

#include <nlohmann/json.hpp>

namespace Maptorn
{
namespace
{
using FJson = nlohmann::json;

// "/Mount/Path/definition.definition" → "/Mount/Path/definition"; empty when the object name
// does not repeat the package's last segment.
std::string PackageOfObject(const std::string& ObjectPath)
{
    const std::size_t Dot = ObjectPath.rfind('.');
    if (Dot == std::string::npos)
    {
        return {};
    }
    const std::string Package = ObjectPath.substr(0, Dot);
    const std::string ObjectName = ObjectPath.substr(Dot + 1);
    return Paths::GetCleanFilename(Package) == ObjectName ? Package : std::string();
}

template <typename T>
T ReadField(const FJson& Document, const char* Key, T Default)
{
    const auto Found = Document.find(Key);
    if (Found == Document.end())
    {
        return Default;
    }
    if constexpr (std::is_same_v<T, std::string>)
    {
        return Found->is_string() ? Found->template get<std::string>() : Default;
    }
    else if constexpr (std::is_same_v<T, bool>)
    {
        return Found->is_boolean() ? Found->template get<bool>() : Default;
    }
    else
    {
        return Found->is_number_integer() ? Found->template get<T>() : Default;
    }
}
}

std::string DefinitionToJson(const FKelvorDefinition& Definition)
{
    FJson Document = FJson::object();
    Document["Class"] = DefinitionClassName(Definition.Class);
    Document["Label"] = Definition.Label;
    Document["DisplayName"] = Definition.DisplayName;
    Document["Version"] = Definition.Version;
    Document["IsCustomGameMode"] = Definition.bIsCustomGameMode;
    Document["CustomGameModeLabel"] = Definition.CustomGameModeLabel;
    Document["Map"] = Definition.Map;
    Document["VeskoMap"] = Definition.VeskoMap;
    Document["GameLogicClass"] = Definition.GameLogicClass;
    return Document.dump(4) + "\n";
}

std::optional<FKelvorDefinition> DefinitionFromJson(const std::string& Text)
{
    const FJson Document = FJson::parse(Text, nullptr, false);
    if (Document.is_discarded() || !Document.is_object())
    {
        return std::nullopt;
    }
    const std::optional<EModType> Class = ParseDefinitionClassName(ReadField<std::string>(Document, "Class", ""));
    if (!Class)
    {
        return std::nullopt;
    }
    FKelvorDefinition Definition;
    Definition.Class = *Class;
    Definition.Label = ReadField<std::string>(Document, "Label", "");
    Definition.DisplayName = ReadField<std::string>(Document, "DisplayName", "");
    Definition.Version = ReadField<int32>(Document, "Version", 0);
    Definition.bIsCustomGameMode = ReadField<bool>(Document, "IsCustomGameMode", false);
    Definition.CustomGameModeLabel = ReadField<std::string>(Document, "CustomGameModeLabel", "");
    Definition.Map = ReadField<std::string>(Document, "Map", "");
    Definition.VeskoMap = ReadField<std::string>(Document, "VeskoMap", "");
    Definition.GameLogicClass = ReadField<std::string>(Document, "GameLogicClass", "");
    return Definition;
}

FJsonDefinitions::FJsonDefinitions(IMaptornEngine& InEngine)
    : Engine(InEngine)
{
}

std::string FJsonDefinitions::PackageFilePath(const std::string& PackageName)
{
    if (PackageName.size() < 2 || PackageName.front() != '/')
    {
        return {};
    }
    const std::size_t MountEnd = PackageName.find('/', 1);
    if (MountEnd == std::string::npos)
    {
        return {};
    }
    const std::string Mount = PackageName.substr(1, MountEnd - 1);
    const std::string Rest = PackageName.substr(MountEnd + 1) + ".json";
    if (Mount == "Game")
    {
        return Paths::Combine(Engine.ProjectContentDir(), Rest);
    }
    const std::optional<FPluginInfo> Plugin = Engine.FindPlugin(Mount);
    if (!Plugin || !Plugin->bCanContainContent)
    {
        return {};
    }
    return Paths::Combine(Plugin->ContentDir, Rest);
}

std::shared_ptr<FKelvorDefinition> FJsonDefinitions::LoadObject(const std::string& ObjectPath)
{
    const std::string Package = PackageOfObject(ObjectPath);
    if (Package.empty())
    {
        return nullptr;
    }
    std::lock_guard Lock(Mutex);
    if (const auto Found = Loaded.find(Package); Found != Loaded.end())
    {
        return Found->second;
    }
    const std::string File = PackageFilePath(Package);
    const std::optional<std::string> Text = File.empty() ? std::nullopt : FileHelper::LoadFileToString(File);
    const std::optional<FKelvorDefinition> Parsed = Text ? DefinitionFromJson(*Text) : std::nullopt;
    if (!Parsed)
    {
        return nullptr;
    }
    auto Definition = std::make_shared<FKelvorDefinition>(*Parsed);
    Definition->PackageName = Package;
    Loaded[Package] = Definition;
    return Definition;
}

std::shared_ptr<FKelvorDefinition> FJsonDefinitions::CreateDefinition(const std::string& PackageName, EModType Class)
{
    if (Paths::GetCleanFilename(PackageName) != "definition" || PackageFilePath(PackageName).empty())
    {
        return nullptr;
    }
    auto Definition = std::make_shared<FKelvorDefinition>();
    Definition->Class = Class;
    Definition->PackageName = PackageName;
    std::lock_guard Lock(Mutex);
    Loaded[PackageName] = Definition;
    return Definition;
}

void FJsonDefinitions::MarkPackageDirty(const FKelvorDefinition& Definition)
{
    std::lock_guard Lock(Mutex);
    DirtyPackages.insert(Definition.PackageName);
}

bool FJsonDefinitions::SavePackage(const FKelvorDefinition& Definition)
{
    const std::string File = PackageFilePath(Definition.PackageName);
    if (File.empty() || !FileSystem::CreateDirectoryTree(Paths::GetPath(File)))
    {
        return false;
    }
    if (!FileHelper::SaveStringToFile(DefinitionToJson(Definition), File))
    {
        return false;
    }
    std::lock_guard Lock(Mutex);
    DirtyPackages.erase(Definition.PackageName);
    return true;
}

std::vector<std::string> FJsonDefinitions::SaveDirtyPackages(bool& bOutAllSaved)
{
    std::vector<std::shared_ptr<FKelvorDefinition>> ToSave;
    {
        std::lock_guard Lock(Mutex);
        for (const std::string& Package : DirtyPackages)
        {
            if (const auto Found = Loaded.find(Package); Found != Loaded.end())
            {
                ToSave.push_back(Found->second);
            }
        }
    }
    bOutAllSaved = true;
    std::vector<std::string> Written;
    for (const std::shared_ptr<FKelvorDefinition>& Definition : ToSave)
    {
        if (SavePackage(*Definition))
        {
            Written.push_back(PackageFilePath(Definition->PackageName));
        }
        else
        {
            bOutAllSaved = false;
        }
    }
    return Written;
}
}
