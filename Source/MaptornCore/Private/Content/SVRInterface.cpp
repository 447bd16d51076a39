#include "Content/SVRInterface.h"

#include "Common/FileHelper.h"
#include "Common/Paths.h"
#include "Common/StringUtil.h"

namespace Maptorn
{
namespace
{
constexpr std::size_t MinMapNameLength = 3;
constexpr std::size_t MaxMapNameLength = 32;

std::string MapDefinitionPath(const std::string& Id, bool bIsUGC)
{
    return bIsUGC ? Printf("/Game/CustomMaps/UGC%s/definition.definition", Id.c_str())
                  : Printf("/Game/CustomMaps/SVR_%s/definition.definition", Id.c_str());
}
}

FSVRInterface::FSVRInterface(FMaptornPlatform& InPlatform)
    : Platform(InPlatform)
{
    ScanForMapFolder();
}

void FSVRInterface::ScanForMapFolder()
{
    Id.clear();
    FolderId.clear();
    const std::string CustomMaps = Paths::Combine(Platform.Engine.ProjectContentDir(), "CustomMaps");
    for (const FileSystem::FDirectoryEntry& Entry : FileSystem::ListDirectory(CustomMaps))
    {
        Platform.Log.Log(LogCategory::MaptornLog, ELogVerbosity::Log, Printf("Visiting %s", Entry.Path.c_str()));
        if (!Entry.bIsDirectory)
        {
            continue;
        }
        // Containment, not a prefix: "MyUGCMap" is a UGC folder too, and like every UGC folder
        // its id is the name without its first three characters.
        const std::string Name = Paths::GetCleanFilename(Entry.Path);
        if (ContainsIgnoreCase(Name, "UGC"))
        {
            FolderId = Name.substr(3);
            bIsUGC = true;
            break;
        }
        if (ContainsIgnoreCase(Name, "SVR_"))
        {
            FolderId = Name.substr(4);
            break;
        }
    }
    if (!FolderId.empty())
    {
        Id = FolderId;
        Platform.Log.Log(LogCategory::MaptornLog, ELogVerbosity::Log,
            Printf(bIsUGC ? "Loaded UGC ID:%s" : "Loaded SVR ID:%s", Id.c_str()));
    }
}

std::shared_ptr<FKelvorDefinition> FSVRInterface::GetMapDefinition() const
{
    std::shared_ptr<FKelvorDefinition> Definition = Platform.Definitions.LoadObject(MapDefinitionPath(Id, bIsUGC));
    if (!Definition || Definition->Class != EModType::Map)
    {
        return nullptr;
    }
    return Definition;
}

bool FSVRInterface::CreateMapDefinition(const std::string& NewId)
{
    if (GetMapDefinition())
    {
        Platform.Log.Log(LogCategory::MaptornLog, ELogVerbosity::Error,
            "Cannot create a Definition file one already exists in this project!");
        return false;
    }
    const std::size_t NameLength = CountCharacters(MapName);
    if (NameLength < MinMapNameLength || NameLength > MaxMapNameLength)
    {
        Platform.Dialogs.MessageBox(EAppMsgType::Ok, "The map name needs to be 3-32 characters long", "Error");
        return false;
    }

    Platform.Log.Log(LogCategory::MaptornLog, ELogVerbosity::Log, Printf("Creating map folder for id %s", NewId.c_str()));
    const std::string Folder = Paths::Combine(Platform.Engine.ProjectContentDir(), "CustomMaps", "SVR_" + NewId);
    FileSystem::CreateDirectoryTree(Folder);
    Id = NewId;
    // The new folder is an SVR_ folder, whatever the scan found before.
    bIsUGC = false;

    std::shared_ptr<FKelvorDefinition> Definition =
        Platform.Definitions.CreateDefinition(Printf("/Game/CustomMaps/SVR_%s/definition", NewId.c_str()), EModType::Map);
    if (!Definition)
    {
        return false;
    }
    Definition->Label = "SVR_" + NewId;
    Definition->DisplayName = MapName;
    Platform.Definitions.MarkPackageDirty(*Definition);
    return true;
}

std::string SanitizeMapName(const std::string& TypedName)
{
    std::string Name = Paths::MakeValidFileName(TypedName);
    for (char& C : Name)
    {
        if (C == ' ' || C == '.')
        {
            C = '_';
        }
    }
    return Name;
}

std::size_t CountCharacters(const std::string& Utf8Text)
{
    std::size_t Count = 0;
    for (unsigned char C : Utf8Text)
    {
        // Continuation bytes (10xxxxxx) belong to the character before them.
        if ((C & 0xC0) != 0x80)
        {
            ++Count;
        }
    }
    return Count;
}
}
