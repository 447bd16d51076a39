#pragma once

#include "Platform/DefinitionsPort.h"
#include "Platform/EnginePort.h"

#include <map>
#include <mutex>
#include <set>
#include <string>
#include <vector>

namespace Maptorn
{
// Definition assets as JSON documents at the asset's place: "/Game/X/definition" is
// <project>/Content/X/definition.json, "/UGC12/definition" is <plug-in UGC12>/Content/definition.json.
// Loaded objects stay in memory, so loading twice gives the same object.
class FJsonDefinitions final : public IMaptornDefinitions
{
public:
    explicit FJsonDefinitions(IMaptornEngine& InEngine);

    std::shared_ptr<FKelvorDefinition> LoadObject(const std::string& ObjectPath) override;
    std::shared_ptr<FKelvorDefinition> CreateDefinition(const std::string& PackageName, EModType Class) override;
    void MarkPackageDirty(const FKelvorDefinition& Definition) override;
    bool SavePackage(const FKelvorDefinition& Definition) override;

    // Saves every package marked dirty, as the editor does when the user saves all. Answers the
    // files written; false in bOutAllSaved when one could not be written.
    std::vector<std::string> SaveDirtyPackages(bool& bOutAllSaved);

    // The file a package lives in; empty when its mount point is unknown.
    std::string PackageFilePath(const std::string& PackageName);

private:
    IMaptornEngine& Engine;
    std::mutex Mutex;
    std::map<std::string, std::shared_ptr<FKelvorDefinition>> Loaded;   // by package name
    std::set<std::string> DirtyPackages;
};

// The document form of one definition, and back; empty when the text is not a definition.
std::string DefinitionToJson(const FKelvorDefinition& Definition);
std::optional<FKelvorDefinition> DefinitionFromJson(const std::string& Text);
}
