#pragma once
// Reference: the game's editor module KelvorProxy (Kelvor_GameMode.h): the definition class of its kind.

#include "CoreMinimal.h"
#include "KelvorDefinitionFields.h"
#include "UObject/Object.h"

#include "Kelvor_GameMode.generated.h"

UCLASS(BlueprintType)
class KELVORPROXY_API UKelvor_GameMode : public UObject
{
	GENERATED_BODY()

public:
	KELVOR_DEFINITION_FIELDS()
};
