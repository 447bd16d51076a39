#include "Platform/EngineHttp.h"

#include "Platform/StringConversion.h"

#include "HAL/FileManager.h"
#include "HttpModule.h"
#include "Interfaces/IHttpRequest.h"
#include "Interfaces/IHttpResponse.h"
#include "Misc/FileHelper.h"

using MaptornString::ToFString;
using MaptornString::ToStd;

// The engine's response, with its body copied once into the form the core reads.
class FEngineHttpResponse final : public Maptorn::IHttpResponse
{
public:
	FEngineHttpResponse(::FHttpResponsePtr InResponse, bool bKeepBody)
		: Response(MoveTemp(InResponse))
	{
		if (bKeepBody)
		{
			const TArray<uint8>& Body = Response->GetContent();
			Content.assign(Body.GetData(), Body.GetData() + Body.Num());
		}
	}

	Maptorn::int32 GetResponseCode() const override { return Response->GetResponseCode(); }
	const std::vector<Maptorn::uint8>& GetContent() const override { return Content; }
	// The body is UTF-8 on the wire and the core's strings are UTF-8: no conversion needed.
	std::string GetContentAsString() const override { return std::string(Content.begin(), Content.end()); }
	std::string GetHeader(const std::string& Name) const override { return ToStd(Response->GetHeader(ToFString(Name))); }
	Maptorn::int64 GetContentLength() const override { return Response->GetContentLength(); }

	std::vector<std::pair<std::string, std::string>> GetAllHeaders() const override
	{
		// The engine answers "Name: Value" lines.
		std::vector<std::pair<std::string, std::string>> Headers;
		for (const FString& Line : Response->GetAllHeaders())
		{
			FString Name;
			FString Value;
			if (Line.Split(TEXT(":"), &Name, &Value))
			{
				Headers.emplace_back(ToStd(Name.TrimStartAndEnd()), ToStd(Value.TrimStartAndEnd()));
			}
		}
		return Headers;
	}

private:
	::FHttpResponsePtr Response;
	std::vector<Maptorn::uint8> Content;
};

// The engine's request behind the core's interface. While it runs it keeps itself alive, as the
// engine's HTTP manager keeps its requests, so callers may drop their pointer after starting it.
class FEngineHttpRequest final : public Maptorn::IHttpRequest, public std::enable_shared_from_this<FEngineHttpRequest>
{
public:
	static std::shared_ptr<FEngineHttpRequest> Create(std::shared_ptr<bool> bInAccepting)
	{
		std::shared_ptr<FEngineHttpRequest> NewRequest(new FEngineHttpRequest(FHttpModule::Get().CreateRequest(), MoveTemp(bInAccepting)));
		NewRequest->BindEngineDelegates();
		return NewRequest;
	}

	void SetVerb(const std::string& Verb) override { Request->SetVerb(ToFString(Verb)); }
	void SetURL(const std::string& Url) override { Request->SetURL(ToFString(Url)); }
	void SetHeader(const std::string& Name, const std::string& Value) override { Request->SetHeader(ToFString(Name), ToFString(Value)); }
	void SetContent(std::vector<Maptorn::uint8> Content) override
	{
		Request->SetContent(TArray<uint8>(Content.data(), static_cast<int32>(Content.size())));
	}
	// The text is already UTF-8, which is what SetContentAsString would produce: hand over the bytes.
	void SetContentAsString(const std::string& Content) override
	{
		Request->SetContent(TArray<uint8>(reinterpret_cast<const uint8*>(Content.data()), static_cast<int32>(Content.size())));
	}
	bool SetContentAsStreamedFile(const std::string& FilePath) override { return Request->SetContentAsStreamedFile(ToFString(FilePath)); }
	// UE 5.1 cannot stream a response to disk: the body arrives in memory and is written out on completion.
	void SetResponseBodyFile(const std::string& FilePath, bool bAppend) override
	{
		ResponseBodyFile = ToFString(FilePath);
		bAppendResponseBody = bAppend;
	}
	void SetResponseBodyDigest(std::shared_ptr<Maptorn::FMd5> Digest) override { ResponseBodyDigest = MoveTemp(Digest); }
	// In 5.1 this bounds the whole request rather than a stall; 0 keeps the engine's default.
	void SetTimeout(float Seconds) override
	{
		if (Seconds > 0.0f)
		{
			Request->SetTimeout(Seconds);
		}
	}

	std::string GetVerb() const override { return ToStd(Request->GetVerb()); }
	std::string GetURL() const override { return ToStd(Request->GetURL()); }
	std::string GetHeader(const std::string& Name) const override { return ToStd(Request->GetHeader(ToFString(Name))); }
	Maptorn::FHttpResponsePtr GetResponse() const override { return Response; }
	Maptorn::EHttpRequestStatus GetStatus() const override
	{
		switch (Request->GetStatus())
		{
		case EHttpRequestStatus::NotStarted: return Maptorn::EHttpRequestStatus::NotStarted;
		case EHttpRequestStatus::Processing: return Maptorn::EHttpRequestStatus::Processing;
		case EHttpRequestStatus::Succeeded: return Maptorn::EHttpRequestStatus::Succeeded;
		default: return Maptorn::EHttpRequestStatus::Failed;
		}
	}

	Maptorn::FHttpRequestCompleteDelegate& OnProcessRequestComplete() override { return CompleteDelegate; }
	Maptorn::FHttpRequestProgressDelegate& OnRequestProgress() override { return ProgressDelegate; }
	Maptorn::FHttpRequestHeaderReceivedDelegate& OnHeaderReceived() override { return HeaderDelegate; }

	bool ProcessRequest() override
	{
		SelfWhileProcessing = shared_from_this();
		if (!Request->ProcessRequest())
		{
			SelfWhileProcessing.reset();
			return false;
		}
		return true;
	}
	void CancelRequest() override { Request->CancelRequest(); }

private:
	FEngineHttpRequest(TSharedRef<::IHttpRequest, ESPMode::ThreadSafe> InRequest, std::shared_ptr<bool> InAccepting)
		: Request(MoveTemp(InRequest))
		, bAccepting(MoveTemp(InAccepting))
	{
	}

	void BindEngineDelegates();
	void HandleComplete(::FHttpResponsePtr EngineResponse, bool bConnectedSuccessfully);

	TSharedRef<::IHttpRequest, ESPMode::ThreadSafe> Request;
	std::shared_ptr<bool> bAccepting;
	std::shared_ptr<FEngineHttpRequest> SelfWhileProcessing;
	Maptorn::FHttpResponsePtr Response;
	FString ResponseBodyFile;
	bool bAppendResponseBody = false;
	std::shared_ptr<Maptorn::FMd5> ResponseBodyDigest;
	Maptorn::FHttpRequestCompleteDelegate CompleteDelegate;
	Maptorn::FHttpRequestProgressDelegate ProgressDelegate;
	Maptorn::FHttpRequestHeaderReceivedDelegate HeaderDelegate;
};

void FEngineHttpRequest::BindEngineDelegates()
{
	// Weak: the engine request holds these lambdas, and must not keep the adapter alive by them.
	const std::weak_ptr<FEngineHttpRequest> Weak = weak_from_this();
	Request->OnProcessRequestComplete().BindLambda(
		[Weak](::FHttpRequestPtr, ::FHttpResponsePtr EngineResponse, bool bConnectedSuccessfully)
		{
			if (const std::shared_ptr<FEngineHttpRequest> Self = Weak.lock())
			{
				Self->HandleComplete(MoveTemp(EngineResponse), bConnectedSuccessfully);
			}
		});
	Request->OnRequestProgress().BindLambda([Weak](::FHttpRequestPtr, int32 BytesSent, int32 BytesReceived)
		{
			const std::shared_ptr<FEngineHttpRequest> Self = Weak.lock();
			if (Self && *Self->bAccepting && Self->ProgressDelegate)
			{
				Self->ProgressDelegate(Self, BytesSent, BytesReceived);
			}
		});
	Request->OnHeaderReceived().BindLambda([Weak](::FHttpRequestPtr, const FString& Name, const FString& Value)
		{
			const std::shared_ptr<FEngineHttpRequest> Self = Weak.lock();
			if (Self && *Self->bAccepting && Self->HeaderDelegate)
			{
				Self->HeaderDelegate(Self, ToStd(Name), ToStd(Value));
			}
		});
}

void FEngineHttpRequest::HandleComplete(::FHttpResponsePtr EngineResponse, bool bConnectedSuccessfully)
{
	// Keeps this object alive through the callback, then lets it go.
	const std::shared_ptr<FEngineHttpRequest> Self = MoveTemp(SelfWhileProcessing);
	if (!*bAccepting)
	{
		return;
	}
	if (bConnectedSuccessfully && EngineResponse.IsValid())
	{
		// Only a successful body goes to the file: an error page must not land in a ranged download.
		const int32 Code = EngineResponse->GetResponseCode();
		const bool bToFile = !ResponseBodyFile.IsEmpty() && Code >= 200 && Code < 300;
		const uint32 WriteFlags = bAppendResponseBody ? FILEWRITE_Append : FILEWRITE_None;
		if (bToFile && !FFileHelper::SaveArrayToFile(EngineResponse->GetContent(), *ResponseBodyFile, &IFileManager::Get(), WriteFlags))
		{
			bConnectedSuccessfully = false;
		}
		else
		{
			if (bToFile && ResponseBodyDigest)
			{
				ResponseBodyDigest->Update(EngineResponse->GetContent().GetData(), EngineResponse->GetContent().Num());
			}
			Response = std::make_shared<FEngineHttpResponse>(EngineResponse, !bToFile);
		}
	}
	if (CompleteDelegate)
	{
		CompleteDelegate(shared_from_this(), bConnectedSuccessfully ? Response : nullptr, bConnectedSuccessfully);
	}
}

FEngineHttp::FEngineHttp()
	: bAcceptingCallbacks(std::make_shared<bool>(true))
{
}

FEngineHttp::~FEngineHttp()
{
	Shutdown();
}

Maptorn::FHttpRequestPtr FEngineHttp::CreateRequest()
{
	return FEngineHttpRequest::Create(bAcceptingCallbacks);
}

void FEngineHttp::Shutdown()
{
	*bAcceptingCallbacks = false;
}
