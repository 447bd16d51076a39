// The plug-in manager, plug-in utilities and HTTP module of the engine surface. The editor tests
// exercise no plug-in creation or HTTP: these answer as an editor with nothing to offer would.

#include "HttpModule.h"
#include "Interfaces/IPluginManager.h"
#include "PluginUtils.h"

namespace
{
class FNoPlugins final : public IPluginManager
{
public:
	TSharedPtr<IPlugin> FindPlugin(const FString& /*Name*/) override { return nullptr; }
	TArray<TSharedRef<IPlugin>> GetEnabledPlugins() override { return TArray<TSharedRef<IPlugin>>(); }
	TArray<TSharedRef<IPlugin>> GetDiscoveredPlugins() override { return TArray<TSharedRef<IPlugin>>(); }
};

// A request that cannot be sent: ProcessRequest refuses, as the engine's does without a network.
class FUnsentRequest final : public IHttpRequest
{
public:
	FString GetURL() const override { return Url; }
	FString GetURLParameter(const FString& /*ParameterName*/) const override { return FString(); }
	FString GetHeader(const FString& /*HeaderName*/) const override { return FString(); }
	TArray<FString> GetAllHeaders() const override { return TArray<FString>(); }
	FString GetContentType() const override { return FString(); }
	uint64 GetContentLength() const override { return 0; }
	const TArray<uint8>& GetContent() const override { return Content; }
	FString GetVerb() const override { return Verb; }
	void SetVerb(const FString& InVerb) override { Verb = InVerb; }
	void SetURL(const FString& InUrl) override { Url = InUrl; }
	void SetContent(const TArray<uint8>& InContent) override { Content = InContent; }
	void SetContent(TArray<uint8>&& InContent) override { Content = InContent; }
	void SetContentAsString(const FString& /*ContentString*/) override {}
	bool SetContentAsStreamedFile(const FString& /*Filename*/) override { return false; }
	void SetHeader(const FString& /*HeaderName*/, const FString& /*HeaderValue*/) override {}
	void AppendToHeader(const FString& /*HeaderName*/, const FString& /*AdditionalHeaderValue*/) override {}
	void SetTimeout(float /*InTimeoutSecs*/) override {}
	void ClearTimeout() override {}
	TOptional<float> GetTimeout() const override { return TOptional<float>(); }
	bool ProcessRequest() override { return false; }
	FHttpRequestCompleteDelegate& OnProcessRequestComplete() override { return Complete; }
	FHttpRequestProgressDelegate& OnRequestProgress() override { return Progress; }
	FHttpRequestHeaderReceivedDelegate& OnHeaderReceived() override { return Header; }
	void CancelRequest() override {}
	EHttpRequestStatus::Type GetStatus() const override { return EHttpRequestStatus::NotStarted; }
	const FHttpResponsePtr GetResponse() const override { return nullptr; }
	void Tick(float /*DeltaSeconds*/) override {}
	float GetElapsedTime() const override { return 0.0f; }

private:
	FString Verb;
	FString Url;
	TArray<uint8> Content;
	FHttpRequestCompleteDelegate Complete;
	FHttpRequestProgressDelegate Progress;
	FHttpRequestHeaderReceivedDelegate Header;
};
}

IPluginManager& IPluginManager::Get()
{
	static FNoPlugins Manager;
	return Manager;
}

TSharedPtr<IPlugin> FPluginUtils::CreateAndLoadNewPlugin(const FString& /*PluginName*/, const FString& /*PluginLocation*/,
	const FNewPluginParamsWithDescriptor& /*CreationParams*/, const FLoadPluginParams& LoadParams)
{
	if (LoadParams.OutFailReason)
	{
		*LoadParams.OutFailReason = FText::FromString(TEXT("Plug-in creation is not available in the editor tests"));
	}
	return nullptr;
}

FHttpModule& FHttpModule::Get()
{
	static FHttpModule Module;
	return Module;
}

TSharedRef<IHttpRequest, ESPMode::ThreadSafe> FHttpModule::CreateRequest()
{
	return MakeShared<FUnsentRequest>();
}
