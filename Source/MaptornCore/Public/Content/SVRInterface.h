#pragma once

#include "Common/CoreTypes.h"

#include "Content/KelvorDefinition.h"
#include "Platform/MaptornPlatform.h"

#include <memory>
#include <string>

namespace Maptorn
{
// The project's own map (a Steam Workshop or server map) under /Game/CustomMaps/, in a folder
// "UGC<id>" or "SVR_<id>". Construction scans the project for that folder.
class MAPTORNCORE_API FSVRInterface
{
public:
    explicit FSVRInterface(FMaptornPlatform& InPlatform);

    // The project's map definition, when it exists and is a map.
    std::shared_ptr<FKelvorDefinition> GetMapDefinition() const;

    // Creates /Game/CustomMaps/SVR_<NewId>/definition for the typed MapName. False when the
    // project already has one or MapName is not 3-32 characters long (the user is told).
    bool CreateMapDefinition(const std::string& NewId);

    std::string Id;          // the map's id, empty when the project has none
    std::string FolderId;    // the id found by the folder scan
    bool bIsUGC = false;     // the folder found was a "UGC" folder rather than "SVR_"
    std::string MapName;     // typed by the user

private:
    void ScanForMapFolder();

    FMaptornPlatform& Platform;
};

// The name the window keeps for a typed map name: a valid file name with blanks and dots
// turned into underscores.
MAPTORNCORE_API std::string SanitizeMapName(const std::string& TypedName);

// Number of characters (code points) of UTF-8 text.
MAPTORNCORE_API std::size_t CountCharacters(const std::string& Utf8Text);
}
