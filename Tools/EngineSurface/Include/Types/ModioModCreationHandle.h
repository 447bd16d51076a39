#pragma once
// Reference: modio-ue Source/Modio/Public/Types/ModioModCreationHandle.h (FModioModCreationHandle)

#include "CoreMinimal.h"
#include "UObject/ObjectMacros.h"

#include "ModioModCreationHandle.generated.h"

namespace Modio
{
struct ModCreationHandle;
}

// Opaque: only the plug-in makes and reads one.
USTRUCT(BlueprintType)
struct MODIO_API FModioModCreationHandle
{
	GENERATED_BODY()

private:
	int64 Underlying;
	friend FModioModCreationHandle ToUnreal(const Modio::ModCreationHandle& In);
	friend Modio::ModCreationHandle ToModio(const FModioModCreationHandle& In);
};
