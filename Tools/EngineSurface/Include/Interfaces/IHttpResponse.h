#pragma once
// Reference: Runtime/Online/HTTP/Public/Interfaces/IHttpResponse.h (IHttpResponse)

#include "Interfaces/IHttpBase.h"

class IHttpResponse : public IHttpBase
{
public:
	virtual int32 GetResponseCode() const = 0;
	virtual FString GetContentAsString() const = 0;
};
