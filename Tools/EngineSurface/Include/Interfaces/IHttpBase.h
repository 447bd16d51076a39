#pragma once
// Reference: Runtime/Online/HTTP/Public/Interfaces/IHttpBase.h (IHttpBase)

#include "CoreMinimal.h"

class IHttpBase
{
public:
	virtual ~IHttpBase() {}
	virtual FString GetURL() const = 0;
	virtual FString GetURLParameter(const FString& ParameterName) const = 0;
	virtual FString GetHeader(const FString& HeaderName) const = 0;
	virtual TArray<FString> GetAllHeaders() const = 0;
	virtual FString GetContentType() const = 0;
	virtual uint64 GetContentLength() const = 0;
	virtual const TArray<uint8>& GetContent() const = 0;
};
