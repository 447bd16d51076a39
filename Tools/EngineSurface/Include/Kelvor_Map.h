#pragma once
// Reference: the game's editor module KelvorProxy (Kelvor_Map.h): the definition class of its kind.

#include "CoreMinimal.h"
#include "KelvorDefinitionFields.h"
#include "UObject/Object.h"

#include "Kelvor_Map.generated.h"

UCLASS(BlueprintType)
class KELVORPROXY_API UKelvor_Map : public UObject
{
	GENERATED_BODY()

public:
	KELVOR_DEFINITION_FIELDS()
};
