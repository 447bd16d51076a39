#pragma once

#include "CoreMinimal.h"

// What the editor tests do to the object system that the editor itself would do.
namespace SurfaceObjects
{
// Drops the package's objects from memory, as the editor does when it unloads an asset.
void UnloadPackage(const FString& PackageName);
// Every object and package, as when the editor closes.
void UnloadAll();
}
