#pragma once
// Reference: Runtime/Core/Public/UObject/NameTypes.h (FName, NAME_None)

#include "CoreTypes.h"
#include "Containers/UnrealString.h"

enum EName
{
	NAME_None = 0,
};

// A case-insensitive name, compared by value in this surface (the engine interns it in a table).
class FName
{
public:
	FName() = default;
	FName(EName) {}
	FName(const TCHAR* Name) : Text(Name) {}
	FName(const ANSICHAR* Name) : Text(Name) {}
	explicit FName(const FString& Name) : Text(Name) {}

	FString ToString() const { return Text; }
	bool IsNone() const { return Text.IsEmpty(); }
	bool operator==(const FName& Other) const { return Text == Other.Text; }
	bool operator!=(const FName& Other) const { return !(Text == Other.Text); }
	bool operator<(const FName& Other) const { return Text < Other.Text; }

private:
	FString Text;
};
