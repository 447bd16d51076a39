#pragma once
// Reference: Runtime/Online/HTTP/Public/Interfaces/IHttpRequest.h, HttpPackage.h (IHttpRequest, its delegates, EHttpRequestStatus)

#include "Interfaces/IHttpBase.h"

class IHttpRequest;
class IHttpResponse;

typedef TSharedPtr<IHttpRequest, ESPMode::ThreadSafe> FHttpRequestPtr;
typedef TSharedRef<IHttpRequest, ESPMode::ThreadSafe> FHttpRequestRef;
typedef TSharedPtr<IHttpResponse, ESPMode::ThreadSafe> FHttpResponsePtr;

namespace EHttpRequestStatus
{
enum Type
{
	NotStarted,
	Processing,
	Failed,
	Failed_ConnectionError,
	Succeeded,
};
}

DECLARE_DELEGATE_ThreeParams(FHttpRequestCompleteDelegate, FHttpRequestPtr, FHttpResponsePtr, bool);
DECLARE_DELEGATE_ThreeParams(FHttpRequestProgressDelegate, FHttpRequestPtr, int32, int32);
DECLARE_DELEGATE_ThreeParams(FHttpRequestHeaderReceivedDelegate, FHttpRequestPtr, const FString&, const FString&);

class IHttpRequest : public IHttpBase, public TSharedFromThis<IHttpRequest>
{
public:
	virtual FString GetVerb() const = 0;
	virtual void SetVerb(const FString& Verb) = 0;
	virtual void SetURL(const FString& URL) = 0;
	virtual void SetContent(const TArray<uint8>& ContentPayload) = 0;
	virtual void SetContent(TArray<uint8>&& ContentPayload) = 0;
	virtual void SetContentAsString(const FString& ContentString) = 0;
	virtual bool SetContentAsStreamedFile(const FString& Filename) = 0;
	virtual void SetHeader(const FString& HeaderName, const FString& HeaderValue) = 0;
	virtual void AppendToHeader(const FString& HeaderName, const FString& AdditionalHeaderValue) = 0;
	virtual void SetTimeout(float InTimeoutSecs) = 0;
	virtual void ClearTimeout() = 0;
	virtual TOptional<float> GetTimeout() const = 0;
	virtual bool ProcessRequest() = 0;
	virtual FHttpRequestCompleteDelegate& OnProcessRequestComplete() = 0;
	virtual FHttpRequestProgressDelegate& OnRequestProgress() = 0;
	virtual FHttpRequestHeaderReceivedDelegate& OnHeaderReceived() = 0;
	virtual void CancelRequest() = 0;
	virtual EHttpRequestStatus::Type GetStatus() const = 0;
	virtual const FHttpResponsePtr GetResponse() const = 0;
	virtual void Tick(float DeltaSeconds) = 0;
	virtual float GetElapsedTime() const = 0;
};
