#pragma once

#include "CoreMinimal.h"
#include "Platform/HttpPort.h"

#include <memory>

// Requests through the engine's HTTP module. Its delegates already run on the game thread, inside
// the editor's tick, which is what the core expects of every completion.
class FEngineHttp final : public Maptorn::IMaptornHttp
{
public:
	FEngineHttp();
	~FEngineHttp() override;

	Maptorn::FHttpRequestPtr CreateRequest() override;

	// Cancels nothing but silences every request still in flight: the HTTP module outlives this
	// module and may complete them after the core is gone.
	void Shutdown();

private:
	std::shared_ptr<bool> bAcceptingCallbacks;
};
