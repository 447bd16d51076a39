#pragma once
// Reference: the game's editor module KelvorProxy (Kelvor_Mod.h): the definition class, with the fields
// the workshop reads and writes by name. The game's own header is authoritative; keep these in step.

#include "CoreMinimal.h"
#include "UObject/Object.h"
#include "UObject/SoftObjectPtr.h"

#include "Kelvor_Mod.generated.h"

UCLASS(BlueprintType)
class KELVORPROXY_API UKelvor_Mod : public UObject
{
	GENERATED_BODY()

public:
	UPROPERTY(EditAnywhere)
	FString Id;

	UPROPERTY(EditAnywhere)
	FText MapLabel;

	UPROPERTY(EditAnywhere)
	int32 Version = 0;

	UPROPERTY(EditAnywhere)
	bool bIsCustomGameMode = false;

	UPROPERTY(EditAnywhere)
	FString CustomGameModeLabel;

	UPROPERTY(EditAnywhere)
	FSoftObjectPtr Map;

	UPROPERTY(EditAnywhere)
	FSoftObjectPtr VeskoMap;

	UPROPERTY(EditAnywhere)
	FSoftObjectPtr GameLogic;
};
