#pragma once
// Reference: the game's editor module KelvorProxy: the fields its three definition classes share,
// which the workshop reads and writes by name. The game's own headers are authoritative.

#include "CoreMinimal.h"
#include "UObject/SoftObjectPtr.h"

#define KELVOR_DEFINITION_FIELDS() \
	UPROPERTY(EditAnywhere) \
	FString Id; \
	UPROPERTY(EditAnywhere) \
	FText MapLabel; \
	UPROPERTY(EditAnywhere) \
	int32 Version = 0; \
	UPROPERTY(EditAnywhere) \
	bool bIsCustomGameMode = false; \
	UPROPERTY(EditAnywhere) \
	FString CustomGameModeLabel; \
	UPROPERTY(EditAnywhere) \
	FSoftObjectPtr Map; \
	UPROPERTY(EditAnywhere) \
	FSoftObjectPtr VeskoMap; \
	UPROPERTY(EditAnywhere) \
	FSoftObjectPtr GameLogic;
