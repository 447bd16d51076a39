// The engine's HTTP module of the stand-in editor: requests really sent with libcurl (the standalone
// host's transport), their progress and completion delivered on the game thread during a frame, as the
// engine's HTTP manager delivers them. Bodies are kept in memory, as 5.1's requests keep them.

#include "EditorEngine/SurfaceTestState.h"

#include "HttpModule.h"
#include "Interfaces/IHttpRequest.h"
#include "Interfaces/IHttpResponse.h"
#include "Platform/CurlHttp.h"
#include "Platform/StringConversion.h"

#include <algorithm>
#include <memory>
#include <vector>

using MaptornString::ToFString;
using MaptornString::ToStd;

namespace
{
// Posts to the stand-in's game thread; the transport's own pool is never used for HTTP.
class FGameThreadTasks final : public Maptorn::IMaptornTasks
{
public:
	void AsyncTask(Maptorn::ENamedThreads /*Thread*/, std::function<void()> Work) override
	{
		SurfaceTestState::PostToGameThread(std::move(Work));
	}
	std::shared_ptr<Maptorn::ITaskHandle> StartPoolTask(std::function<void()> /*Work*/) override { return nullptr; }
};

class FSurfaceHttpRequest;

FGameThreadTasks GameThreadTasks;
// The requests running now, each holding itself until it completes (game thread only).
std::vector<FSurfaceHttpRequest*> RunningRequests;
std::unique_ptr<Maptorn::FCurlHttp> OpenTransport;

// Made on the first request of an editor run, closed when the editor exits: its connections and
// transfers end with the editor, as the engine's HTTP module ends with it.
Maptorn::FCurlHttp& Transport()
{
	if (!OpenTransport)
	{
		OpenTransport = std::make_unique<Maptorn::FCurlHttp>(GameThreadTasks);
	}
	return *OpenTransport;
}

class FSurfaceHttpResponse final : public IHttpResponse
{
public:
	FSurfaceHttpResponse(FString InUrl, Maptorn::FHttpResponsePtr InResponse)
		: Url(MoveTemp(InUrl))
		, Response(std::move(InResponse))
		, Content(Response->GetContent().data(), static_cast<int32>(Response->GetContent().size()))
	{
	}

	FString GetURL() const override { return Url; }
	FString GetURLParameter(const FString& /*ParameterName*/) const override { return FString(); }
	FString GetHeader(const FString& HeaderName) const override { return ToFString(Response->GetHeader(ToStd(HeaderName))); }
	TArray<FString> GetAllHeaders() const override
	{
		TArray<FString> Lines;
		for (const auto& [Name, Value] : Response->GetAllHeaders())
		{
			Lines.Add(ToFString(Name + ": " + Value));
		}
		return Lines;
	}
	FString GetContentType() const override { return GetHeader(TEXT("Content-Type")); }
	uint64 GetContentLength() const override { return static_cast<uint64>(Content.Num()); }
	const TArray<uint8>& GetContent() const override { return Content; }
	int32 GetResponseCode() const override { return Response->GetResponseCode(); }
	FString GetContentAsString() const override { return ToFString(Response->GetContentAsString()); }

private:
	FString Url;
	Maptorn::FHttpResponsePtr Response;
	TArray<uint8> Content;
};

class FSurfaceHttpRequest final : public IHttpRequest
{
public:
	FSurfaceHttpRequest() : Request(Transport().CreateRequest()) {}

	FString GetURL() const override { return ToFString(Request->GetURL()); }
	FString GetURLParameter(const FString& /*ParameterName*/) const override { return FString(); }
	FString GetHeader(const FString& HeaderName) const override { return ToFString(Request->GetHeader(ToStd(HeaderName))); }
	TArray<FString> GetAllHeaders() const override { return TArray<FString>(); }
	FString GetContentType() const override { return GetHeader(TEXT("Content-Type")); }
	uint64 GetContentLength() const override { return static_cast<uint64>(Content.Num()); }
	const TArray<uint8>& GetContent() const override { return Content; }
	FString GetVerb() const override { return ToFString(Request->GetVerb()); }
	void SetVerb(const FString& InVerb) override { Request->SetVerb(ToStd(InVerb)); }
	void SetURL(const FString& InUrl) override { Request->SetURL(ToStd(InUrl)); }
	void SetContent(const TArray<uint8>& InContent) override
	{
		Content = InContent;
		Request->SetContent(std::vector<Maptorn::uint8>(InContent.GetData(), InContent.GetData() + InContent.Num()));
	}
	void SetContent(TArray<uint8>&& InContent) override { SetContent(static_cast<const TArray<uint8>&>(InContent)); }
	void SetContentAsString(const FString& ContentString) override { Request->SetContentAsString(ToStd(ContentString)); }
	bool SetContentAsStreamedFile(const FString& Filename) override { return Request->SetContentAsStreamedFile(ToStd(Filename)); }
	void SetHeader(const FString& HeaderName, const FString& HeaderValue) override { Request->SetHeader(ToStd(HeaderName), ToStd(HeaderValue)); }
	void AppendToHeader(const FString& HeaderName, const FString& AdditionalHeaderValue) override
	{
		const std::string Old = Request->GetHeader(ToStd(HeaderName));
		Request->SetHeader(ToStd(HeaderName), Old.empty() ? ToStd(AdditionalHeaderValue) : Old + ", " + ToStd(AdditionalHeaderValue));
	}
	void SetTimeout(float InTimeoutSecs) override { Timeout = InTimeoutSecs; Request->SetTimeout(InTimeoutSecs); }
	void ClearTimeout() override { Timeout.Reset(); Request->SetTimeout(0.0f); }
	TOptional<float> GetTimeout() const override { return Timeout; }

	bool ProcessRequest() override
	{
		// Held until it completes, as the engine's HTTP manager holds its requests.
		SelfWhileProcessing = AsShared();
		RunningRequests.push_back(this);
		Request->OnRequestProgress() = [this](Maptorn::FHttpRequestPtr, Maptorn::int64 Sent, Maptorn::int64 Received) {
			OnRequestProgress().ExecuteIfBound(AsShared(), static_cast<int32>(Sent), static_cast<int32>(Received));
		};
		Request->OnHeaderReceived() = [this](Maptorn::FHttpRequestPtr, const std::string& Name, const std::string& Value) {
			OnHeaderReceived().ExecuteIfBound(AsShared(), ToFString(Name), ToFString(Value));
		};
		Request->OnProcessRequestComplete() = [this](Maptorn::FHttpRequestPtr, Maptorn::FHttpResponsePtr CoreResponse, bool bConnected) {
			const FHttpRequestPtr Self = Release();
			if (bConnected && CoreResponse)
			{
				Response = MakeShared<FSurfaceHttpResponse>(GetURL(), CoreResponse);
			}
			OnProcessRequestComplete().ExecuteIfBound(Self, Response, bConnected && CoreResponse != nullptr);
		};
		if (!Request->ProcessRequest())
		{
			Release();
			return false;
		}
		return true;
	}

	void CompleteUnanswered()
	{
		const FHttpRequestPtr Self = Release();
		OnProcessRequestComplete().ExecuteIfBound(Self, nullptr, false);
	}

	// Lets go of the request's hold on itself; the caller keeps what is returned while it needs it.
	FHttpRequestPtr Release()
	{
		RunningRequests.erase(std::remove(RunningRequests.begin(), RunningRequests.end(), this), RunningRequests.end());
		return MoveTemp(SelfWhileProcessing);
	}
	FHttpRequestCompleteDelegate& OnProcessRequestComplete() override { return Complete; }
	FHttpRequestProgressDelegate& OnRequestProgress() override { return Progress; }
	FHttpRequestHeaderReceivedDelegate& OnHeaderReceived() override { return Header; }
	void CancelRequest() override { Request->CancelRequest(); }
	EHttpRequestStatus::Type GetStatus() const override
	{
		switch (Request->GetStatus())
		{
		case Maptorn::EHttpRequestStatus::NotStarted: return EHttpRequestStatus::NotStarted;
		case Maptorn::EHttpRequestStatus::Processing: return EHttpRequestStatus::Processing;
		case Maptorn::EHttpRequestStatus::Succeeded: return EHttpRequestStatus::Succeeded;
		default: return EHttpRequestStatus::Failed;
		}
	}
	const FHttpResponsePtr GetResponse() const override { return Response; }
	void Tick(float /*DeltaSeconds*/) override {}
	float GetElapsedTime() const override { return 0.0f; }

private:
	Maptorn::FHttpRequestPtr Request;
	FHttpRequestPtr SelfWhileProcessing;
	TArray<uint8> Content;
	TOptional<float> Timeout;
	FHttpResponsePtr Response;
	FHttpRequestCompleteDelegate Complete;
	FHttpRequestProgressDelegate Progress;
	FHttpRequestHeaderReceivedDelegate Header;
};
}

namespace SurfaceTestState
{
void CloseHttp()
{
	// The transport drops what runs without calling back; as the engine's HTTP module does when it
	// shuts down, each request still running then completes as failed, and lets go of itself.
	OpenTransport.reset();
	while (!RunningRequests.empty())
	{
		RunningRequests.back()->CompleteUnanswered();
	}
}
}

FHttpModule& FHttpModule::Get()
{
	static FHttpModule Module;
	return Module;
}

TSharedRef<IHttpRequest, ESPMode::ThreadSafe> FHttpModule::CreateRequest()
{
	return MakeShared<FSurfaceHttpRequest>();
}

float FHttpModule::GetHttpTimeout() const
{
	return 180.0f;
}
