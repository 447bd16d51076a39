#pragma once

#include "CoreMinimal.h"
#include "UObject/UnrealType.h"

#include <vector>

// What the editor tests do to the object system that the editor itself would do.
namespace SurfaceObjects
{
// Drops the package's objects from memory, as the editor does when it unloads an asset.
void UnloadPackage(const FString& PackageName);
// Every object and package, as when the editor closes.
void UnloadAll();

// The properties an object's class and its parents declare, as the details panel lists them.
std::vector<FProperty*> PropertiesOf(const UObject& Object);
// A property's value as the details panel shows it, and set from what a person typed there; false
// for a kind the panel cannot edit as text.
FString PropertyText(const UObject& Object, const FProperty& Property);
bool SetPropertyText(UObject& Object, const FProperty& Property, const FString& Text);
}
