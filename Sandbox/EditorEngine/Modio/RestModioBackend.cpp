#include "EditorEngine/Modio/RestModioBackend.h"

#include "Platform/CurlHttp.h"
#include "Platform/RestModioSession.h"
#include "Platform/RestModioSessionRequests.h"
#include "Platform/StandaloneTasks.h"
#include "Platform/StringConversion.h"

#include "Common/FileHelper.h"
#include "Common/Paths.h"
#include "Modio/ModioRequests.h"

#include <nlohmann/json.hpp>

#include <optional>
#include <utility>
#include <vector>

using MaptornString::ToFString;
using MaptornString::ToStd;

namespace
{
// The plug-in's types from the core's and back: the reverse of the editor module's own border.
FModioErrorCode ToPlugin(const Maptorn::FModioErrorCode& Error)
{
	return Error ? FModioErrorCode(Modio::ErrorCode{Error.Value, Error.Message}) : FModioErrorCode();
}

std::optional<std::string> ToCore(const TOptional<FString>& Text)
{
	return Text.IsSet() ? std::optional<std::string>(ToStd(Text.GetValue())) : std::nullopt;
}

std::string ToCore(const FString& Text)
{
	return ToStd(Text);
}

Maptorn::EModioModfilePlatform ToCore(EModioModfilePlatform Platform)
{
	// The core numbers platforms as the plug-in does.
	return static_cast<Maptorn::EModioModfilePlatform>(Platform);
}

// An optional list of the plug-in's, each element converted.
template <typename ElementType>
auto ToCore(const TOptional<TArray<ElementType>>& List) -> std::optional<std::vector<decltype(ToCore(std::declval<ElementType>()))>>
{
	if (!List.IsSet())
	{
		return std::nullopt;
	}
	std::vector<decltype(ToCore(std::declval<ElementType>()))> Converted;
	for (const ElementType& Element : List.GetValue())
	{
		Converted.push_back(ToCore(Element));
	}
	return Converted;
}

Maptorn::FModioModID ToCore(const FModioModID& Mod)
{
	return FCString::Atoi64(*Mod.ToString());
}

FModioModInfo ToPlugin(const Maptorn::FModioModInfo& Mod)
{
	FModioModInfo Info;
	Info.ModId = FModioModID(Mod.ModId);
	Info.ProfileName = ToFString(Mod.Name);
	Info.ProfileSummary = ToFString(Mod.Summary);
	Info.ProfileURL = ToFString(Mod.ProfileUrl);
	Info.ProfileSubmittedBy.Username = ToFString(Mod.SubmittedBy);
	Info.MetadataBlob = ToFString(Mod.MetadataBlob);
	Info.FileInfo.Version = ToFString(Mod.FileVersion);
	Info.FileInfo.Filesize = Mod.FileSize;
	for (const std::string& Tag : Mod.Tags)
	{
		FModioModTag ModTag;
		ModTag.Tag = ToFString(Tag);
		Info.Tags.Add(ModTag);
	}
	Info.ModStatus = static_cast<EModioModServerSideStatus>(Mod.Status);
	return Info;
}

// One mod object of a mod.io answer, as the plug-in reads it.
FModioModInfo ReadModObject(const nlohmann::json& Object)
{
	Maptorn::FModioModInfo Mod;
	Mod.ModId = Object.value("id", static_cast<int64>(0));
	Mod.Name = Object.value("name", std::string());
	Mod.Summary = Object.value("summary", std::string());
	Mod.ProfileUrl = Object.value("profile_url", std::string());
	Mod.MetadataBlob = Object.value("metadata_blob", std::string());
	Mod.Status = Object.value("status", 1);
	if (const auto User = Object.find("submitted_by"); User != Object.end() && User->is_object())
	{
		Mod.SubmittedBy = User->value("username", std::string());
	}
	if (const auto Tags = Object.find("tags"); Tags != Object.end() && Tags->is_array())
	{
		for (const nlohmann::json& Tag : *Tags)
		{
			if (Tag.is_object())
			{
				Mod.Tags.push_back(Tag.value("name", std::string()));
			}
		}
	}
	if (const auto File = Object.find("modfile"); File != Object.end() && File->is_object())
	{
		const auto Version = File->find("version");
		Mod.FileVersion = Version != File->end() && Version->is_string() ? Version->get<std::string>() : std::string();
		Mod.FileSize = File->value("filesize", static_cast<int64>(0));
	}
	return ToPlugin(Mod);
}

// The member of a mod object's "logo" that holds the size asked for.
const char* LogoKey(EModioLogoSize Size)
{
	switch (Size)
	{
	case EModioLogoSize::Thumb320: return "thumb_320x180";
	case EModioLogoSize::Thumb640: return "thumb_640x360";
	case EModioLogoSize::Thumb1280: return "thumb_1280x720";
	case EModioLogoSize::Original: return "original";
	}
	return "original";
}

void AnswerMedia(const FOnGetMediaDelegateFast& Callback, const std::string& ImagePath)
{
	FModioImageWrapper Image;
	Image.ImagePath = ToFString(ImagePath);
	Callback.ExecuteIfBound(FModioErrorCode(), TOptional<FModioImageWrapper>(Image));
}

void FailMedia(const FOnGetMediaDelegateFast& Callback, const std::string& Why)
{
	Callback.ExecuteIfBound(FModioErrorCode(Modio::ErrorCode{20489, Why}), TOptional<FModioImageWrapper>());
}

Maptorn::FOnErrorOnlyDelegate ErrorOnly(FOnErrorOnlyDelegateFast Callback)
{
	return [Callback](Maptorn::FModioErrorCode Error) { Callback.ExecuteIfBound(ToPlugin(Error)); };
}
}

FRestModioBackend::FRestModioBackend(std::string InBaseUrl, std::string StoredLoginFile)
	: BaseUrl(std::move(InBaseUrl))
	, CacheDir(Maptorn::Paths::Combine(Maptorn::Paths::GetPath(StoredLoginFile), "cache"))
	, Tasks(std::make_unique<Maptorn::FStandaloneTasks>(1))
	, Http(std::make_unique<Maptorn::FCurlHttp>(*Tasks))
	, Session(std::make_unique<Maptorn::FRestModioSession>(*Http, std::move(StoredLoginFile)))
{
}

// The session first: its requests are cancelled before the transport and the queue go.
FRestModioBackend::~FRestModioBackend()
{
	Session.reset();
	Http.reset();
	Tasks.reset();
}

void FRestModioBackend::InitializeAsync(const FModioInitializeOptions& Options, FOnErrorOnlyDelegateFast OnInitComplete)
{
	Maptorn::FModioInitializeOptions CoreOptions;
	GameId = FCString::Atoi64(*Options.GameId.ToString());
	CoreOptions.GameId = GameId;
	CoreOptions.ApiKey = ToStd(Options.ApiKey.ToString());
	ApiKey = CoreOptions.ApiKey;
	CoreOptions.Environment = Options.GameEnvironment == EModioEnvironment::Live ? Maptorn::EModioEnvironment::Live : Maptorn::EModioEnvironment::Test;
	CoreOptions.BaseUrl = BaseUrl;
	Session->InitializeAsync(CoreOptions, ErrorOnly(OnInitComplete));
}

void FRestModioBackend::SetLogLevel(EModioLogLevel Level)
{
	Session->SetLogLevel(static_cast<Maptorn::EModioLogLevel>(Level));
}

void FRestModioBackend::RunPendingHandlers()
{
	Tasks->PumpGameThread();
	Session->RunPendingHandlers();
}

void FRestModioBackend::ShutdownAsync(FOnErrorOnlyDelegateFast OnShutdownComplete)
{
	++ShutdownCount;
	Session->ShutdownAsync(ErrorOnly(OnShutdownComplete));
}

FModioErrorCode FRestModioBackend::EnableModManagement(FOnModManagementDelegateFast Callback)
{
	return ToPlugin(Session->EnableModManagement([Callback](Maptorn::FModioModManagementEvent Event) {
		FModioModManagementEvent Converted;
		Converted.ID = FModioModID(Event.ID);
		Converted.Event = static_cast<EModioModManagementEventType>(Event.Event);
		Converted.Status = ToPlugin(Event.Status);
		Callback.ExecuteIfBound(Converted);
	}));
}

TOptional<FModioModProgressInfo> FRestModioBackend::QueryCurrentModUpdate()
{
	const std::optional<Maptorn::FModioModProgressInfo> Progress = Session->QueryCurrentModUpdate();
	if (!Progress)
	{
		return TOptional<FModioModProgressInfo>();
	}
	return ToUnreal(Modio::ModProgressInfo{Progress->ID, static_cast<EModioModProgressState>(Progress->State),
		static_cast<uint64>(Progress->Current), static_cast<uint64>(Progress->Total)});
}

FModioModCreationHandle FRestModioBackend::GetModCreationHandle()
{
	return ToUnreal(Modio::ModCreationHandle{Session->GetModCreationHandle().Value});
}

void FRestModioBackend::SubmitNewModAsync(FModioModCreationHandle Handle, FModioCreateModParams Params, FOnSubmitNewModDelegateFast Callback)
{
	Maptorn::FModioCreateModParams CoreParams;
	CoreParams.PathToLogoFile = ToStd(Params.PathToLogoFile);
	CoreParams.Name = ToStd(Params.Name);
	CoreParams.Summary = ToStd(Params.Summary);
	CoreParams.MetadataBlob = ToCore(Params.MetadataBlob);
	CoreParams.Tags = ToCore(Params.Tags);
	Session->SubmitNewModAsync(Maptorn::FModioModCreationHandle{ToModio(Handle).Value}, CoreParams,
		[Callback](Maptorn::FModioErrorCode Error, std::optional<Maptorn::FModioModID> Mod) {
			Callback.ExecuteIfBound(ToPlugin(Error), Mod ? TOptional<FModioModID>(FModioModID(*Mod)) : TOptional<FModioModID>());
		});
}

void FRestModioBackend::SubmitNewModFileForMod(FModioModID Mod, FModioCreateModFileParams Params)
{
	Maptorn::FModioCreateModFileParams CoreParams;
	CoreParams.RootDirectory = ToStd(Params.PathToModRootDirectory);
	CoreParams.VersionString = ToCore(Params.VersionString);
	CoreParams.Changelog = ToCore(Params.Changelog);
	if (Params.bSetAsActiveRelease.IsSet())
	{
		CoreParams.bSetAsActive = Params.bSetAsActiveRelease.GetValue();
	}
	CoreParams.MetadataBlob = ToCore(Params.MetadataBlob);
	CoreParams.ModfilePlatforms = ToCore(Params.ModfilePlatforms);
	Session->SubmitNewModFileForMod(ToCore(Mod), CoreParams);
}

void FRestModioBackend::SubmitModChangesAsync(FModioModID Mod, FModioEditModParams Params, FOnGetModInfoDelegateFast Callback)
{
	Maptorn::FModioEditModParams CoreParams;
	CoreParams.Name = ToCore(Params.Name);
	CoreParams.Summary = ToCore(Params.Summary);
	CoreParams.MetadataBlob = ToCore(Params.MetadataBlob);
	CoreParams.LogoPath = ToCore(Params.LogoPath);
	Session->SubmitModChangesAsync(ToCore(Mod), CoreParams,
		[Callback](Maptorn::FModioErrorCode Error, std::optional<Maptorn::FModioModInfo> Info) {
			Callback.ExecuteIfBound(ToPlugin(Error), Info ? TOptional<FModioModInfo>(ToPlugin(*Info)) : TOptional<FModioModInfo>());
		});
}

void FRestModioBackend::RequestEmailAuthCodeAsync(const FModioEmailAddress& EmailAddress, FOnErrorOnlyDelegateFast Callback)
{
	Session->RequestEmailAuthCodeAsync(ToStd(EmailAddress.ToString()), ErrorOnly(Callback));
}

void FRestModioBackend::AuthenticateUserEmailAsync(const FModioEmailAuthCode& AuthenticationCode, FOnErrorOnlyDelegateFast Callback)
{
	Session->AuthenticateUserEmailAsync(ToStd(AuthenticationCode.ToString()), ErrorOnly(Callback));
}

void FRestModioBackend::VerifyUserAuthenticationAsync(FOnErrorOnlyDelegateFast Callback)
{
	Session->VerifyUserAuthenticationAsync(ErrorOnly(Callback));
}

void FRestModioBackend::ClearUserDataAsync(FOnErrorOnlyDelegateFast Callback)
{
	Session->ClearUserDataAsync(ErrorOnly(Callback));
}

void FRestModioBackend::ListUserCreatedModsAsync(FModioFilterParams /*Filter*/, FOnListUserCreatedModsDelegateFast Callback)
{
	// The origin as the session reads it, so the listing goes where its login went.
	Maptorn::FHttpRequestPtr Request = Maptorn::ModioRequests::MakeAuthorizedRequest(*Http, "GET",
		Maptorn::ModioRequests::OwnModsUrl(Maptorn::ModioRest::ResolveBaseUrl(BaseUrl, GameId), GameId), Session->GetAuthTokenAsString());
	Request->OnProcessRequestComplete() = [Callback](Maptorn::FHttpRequestPtr, Maptorn::FHttpResponsePtr Response, bool bConnected) {
		const int32 Status = bConnected && Response ? Response->GetResponseCode() : 0;
		const nlohmann::json Answer =
			Status == 200 ? nlohmann::json::parse(Response->GetContentAsString(), nullptr, false) : nlohmann::json();
		const auto Data = Answer.is_object() ? Answer.find("data") : Answer.end();
		if (Status != 200 || Data == Answer.end() || !Data->is_array())
		{
			Callback.ExecuteIfBound(FModioErrorCode(Modio::ErrorCode{20489, "The list of your mods could not be read"}), TOptional<FModioModInfoList>());
			return;
		}
		FModioModInfoList Mods;
		for (const nlohmann::json& Object : *Data)
		{
			if (Object.is_object())
			{
				Mods.InternalList.Add(ReadModObject(Object));
			}
		}
		Callback.ExecuteIfBound(FModioErrorCode(), TOptional<FModioModInfoList>(Mods));
	};
	if (!Request->ProcessRequest())
	{
		Tasks->AsyncTask(Maptorn::ENamedThreads::GameThread, [Callback] {
			Callback.ExecuteIfBound(FModioErrorCode(Modio::ErrorCode{20489, "The request could not be sent"}), TOptional<FModioModInfoList>());
		});
	}
}

void FRestModioBackend::GetModMediaAsync(FModioModID ModId, EModioLogoSize LogoSize, FOnGetMediaDelegateFast Callback)
{
	const Maptorn::FModioModID Mod = ToCore(ModId);
	const std::string Origin = Maptorn::ModioRest::ResolveBaseUrl(BaseUrl, GameId);
	Maptorn::FHttpRequestPtr Request = Http->CreateRequest();
	Request->SetVerb("GET");
	Request->SetURL(Origin + "/v1/games/" + std::to_string(GameId) + "/mods/" + std::to_string(Mod) + "?api_key=" + ApiKey);
	Request->SetHeader("Accept", "application/json");
	const std::string Key = LogoKey(LogoSize);
	const std::string Folder = Maptorn::Paths::Combine(CacheDir, "mods", std::to_string(Mod), Key);
	Request->OnProcessRequestComplete() = [this, Callback, Key, Folder](Maptorn::FHttpRequestPtr, Maptorn::FHttpResponsePtr Response, bool bConnected) {
		const bool bAnswered = bConnected && Response && Response->GetResponseCode() == 200;
		const nlohmann::json Object = bAnswered ? nlohmann::json::parse(Response->GetContentAsString(), nullptr, false) : nlohmann::json();
		const nlohmann::json* Logo = Object.is_object() && Object.contains("logo") && Object["logo"].is_object() ? &Object["logo"] : nullptr;
		const std::string Url = Logo ? Logo->value(Key, std::string()) : std::string();
		if (Url.empty())
		{
			FailMedia(Callback, "The mod's logo could not be found");
			return;
		}
		const std::string CacheFile = Maptorn::Paths::Combine(Folder, Maptorn::Paths::GetCleanFilename(Url));
		if (Maptorn::FileSystem::FileExists(CacheFile))
		{
			AnswerMedia(Callback, CacheFile);
			return;
		}
		DownloadLogo(Url, CacheFile, Callback);
	};
	if (!Request->ProcessRequest())
	{
		Tasks->AsyncTask(Maptorn::ENamedThreads::GameThread, [Callback] { FailMedia(Callback, "The request could not be sent"); });
	}
}

void FRestModioBackend::DownloadLogo(const std::string& Url, const std::string& CacheFile, FOnGetMediaDelegateFast Callback)
{
	// Written beside its place and moved in once whole, so a cut download never passes for the logo.
	const std::string Partial = CacheFile + ".part";
	Maptorn::FileSystem::CreateDirectoryTree(Maptorn::Paths::GetPath(CacheFile));
	Maptorn::FHttpRequestPtr Request = Http->CreateRequest();
	Request->SetVerb("GET");
	Request->SetURL(Url);
	Request->SetResponseBodyFile(Partial, false);
	Request->OnProcessRequestComplete() = [Callback, CacheFile, Partial](Maptorn::FHttpRequestPtr, Maptorn::FHttpResponsePtr Response, bool bConnected) {
		if (!bConnected || !Response || Response->GetResponseCode() != 200 || !Maptorn::FileSystem::MoveFile(Partial, CacheFile))
		{
			Maptorn::FileSystem::DeleteFile(Partial);
			FailMedia(Callback, "The mod's logo could not be downloaded");
			return;
		}
		AnswerMedia(Callback, CacheFile);
	};
	if (!Request->ProcessRequest())
	{
		Tasks->AsyncTask(Maptorn::ENamedThreads::GameThread, [Callback] { FailMedia(Callback, "The request could not be sent"); });
	}
}
