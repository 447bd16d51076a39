#include "Build/DepotManifest.h"

#include "Common/JsonWriter.h"

namespace Maptorn
{
std::string MakeDepotManifestJson(const FKelvorDefinition& Definition)
{
    Json::FJsonObject Manifest = Json::FJsonObject::object();
    Manifest["Id"] = Definition.Label;
    Manifest["Version"] = Definition.Version;
    Manifest["MapLabel"] = Definition.DisplayName;
    Manifest["IsCustomGameMode"] = Definition.bIsCustomGameMode;
    Manifest["CustomGameModeLabel"] = Definition.CustomGameModeLabel;
    Manifest["AndroidPakSize"] = 0;
    Manifest["WindowsPakSize"] = 0;
    Manifest["LinuxServerPakSize"] = 0;
    Manifest["VeskoLinuxServerPakSize"] = 0;
    Manifest["EngineVersion"] = "4.27";
    return Json::WritePretty(Manifest);
}
}
