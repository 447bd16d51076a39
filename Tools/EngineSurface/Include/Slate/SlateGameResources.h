#pragma once
// Reference: Runtime/Engine/Public/Slate/SlateGameResources.h (FSlateGameResources)

#include "CoreMinimal.h"
#include "Styling/SlateStyle.h"

class FSlateGameResources : public FSlateStyleSet
{
public:
	static TSharedRef<FSlateGameResources> New(const FName& InStyleSetName, const FString& ScopeToDirectory, const FString& InBasePath = FString());
	explicit FSlateGameResources(const FName& InStyleSetName) : FSlateStyleSet(InStyleSetName) {}
};
