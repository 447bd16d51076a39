#pragma once

#include "Common/CoreTypes.h"

#include "Content/KelvorDefinition.h"

#include <memory>
#include <string>

namespace Maptorn
{
// Stands for loading, creating and saving the definition assets. Loading the same object twice
// gives the same shared object, as the engine's object system does.
class MAPTORNCORE_API IMaptornDefinitions
{
public:
    virtual ~IMaptornDefinitions() = default;

    // ObjectPath is "/Mount/Folder/definition.definition"; null when no such asset exists.
    virtual std::shared_ptr<FKelvorDefinition> LoadObject(const std::string& ObjectPath) = 0;

    // Creates the package PackageName ("/Mount/Folder/definition") holding a new object named
    // "definition" of the given class, in memory only; null when the mount point is unknown.
    virtual std::shared_ptr<FKelvorDefinition> CreateDefinition(const std::string& PackageName, EModType Class) = 0;

    // Marks the object's package as needing a save (the editor asks the user to save it later).
    virtual void MarkPackageDirty(const FKelvorDefinition& Definition) = 0;

    // Writes the object's package to disk now.
    virtual bool SavePackage(const FKelvorDefinition& Definition) = 0;
};
}
