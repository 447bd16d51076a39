#pragma once
// Reference: Runtime/Online/HTTP/Public/HttpModule.h (FHttpModule)

#include "CoreMinimal.h"
#include "Interfaces/IHttpRequest.h"
#include "Modules/ModuleInterface.h"

class FHttpModule : public IModuleInterface
{
public:
	static FHttpModule& Get();
	virtual TSharedRef<IHttpRequest, ESPMode::ThreadSafe> CreateRequest();
	float GetHttpTimeout() const;
};
