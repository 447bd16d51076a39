#pragma once
// Reference: modio-ue Source/Modio/Public/Types/ModioErrorCode.h (FModioErrorCode)

#include "CoreMinimal.h"
#include "UObject/ObjectMacros.h"

#include "ModioErrorCode.generated.h"

namespace Modio
{
class ErrorCode;
}

// Converts to true when it holds an error.
USTRUCT(BlueprintType)
struct MODIO_API FModioErrorCode
{
	GENERATED_BODY()

public:
	FModioErrorCode();
	FModioErrorCode(const FModioErrorCode& Other);
	FModioErrorCode(Modio::ErrorCode ec);
	FModioErrorCode& operator=(const FModioErrorCode& ec);
	~FModioErrorCode();

	operator bool() const;
	int GetValue() const;
	FString GetErrorMessage() const;

private:
	TUniquePtr<Modio::ErrorCode> InternalError;
};
