#include "Platform/EngineModioConversion.h"

#include "Platform/StringConversion.h"

namespace EngineModioConversion
{
namespace
{
TOptional<FString> ToEngine(const std::optional<std::string>& Text)
{
	return Text ? TOptional<FString>(MaptornString::ToFString(*Text)) : TOptional<FString>();
}

TOptional<TArray<FString>> ToEngine(const std::optional<std::vector<std::string>>& Texts)
{
	if (!Texts)
	{
		return {};
	}
	TArray<FString> Converted;
	for (const std::string& Text : *Texts)
	{
		Converted.Add(MaptornString::ToFString(Text));
	}
	return Converted;
}

int64 ProgressValue(const FModioUnsigned64& Value)
{
	return static_cast<int64>(Value.Underlying);
}
}

Maptorn::FModioErrorCode ToCore(const FModioErrorCode& ErrorCode)
{
	// A success carries no message, whatever text the plug-in has for it.
	if (!ErrorCode)
	{
		return {};
	}
	return Maptorn::FModioErrorCode{ErrorCode.GetValue(), MaptornString::ToStd(ErrorCode.GetErrorMessage())};
}

Maptorn::FModioModID ToCore(const FModioModID& ModId)
{
	const int64 Value = FCString::Atoi64(*ModId.ToString());
	return Value > 0 ? Value : 0;
}

Maptorn::FModioModProgressInfo ToCore(const FModioModProgressInfo& Progress)
{
	Maptorn::FModioModProgressInfo Converted;
	Converted.ID = ToCore(Progress.ID);
	const EModioModProgressState State = Progress.GetCurrentState();
	// Both enumerations list the same states in the same order.
	Converted.State = static_cast<Maptorn::EModioModProgressState>(State);
	Converted.Current = ProgressValue(Progress.GetCurrentProgress(State));
	Converted.Total = ProgressValue(Progress.GetTotalProgress(State));
	return Converted;
}

Maptorn::FModioModManagementEvent ToCore(const FModioModManagementEvent& Event)
{
	// The Begin... events (4 and up) keep their values; the core acts on Uploaded (3) only.
	return Maptorn::FModioModManagementEvent{ToCore(Event.ID), static_cast<Maptorn::EModioModManagementEventType>(Event.Event), ToCore(Event.Status)};
}

Maptorn::FModioModInfo ToCore(const FModioModInfo& Mod)
{
	Maptorn::FModioModInfo Converted;
	Converted.ModId = ToCore(Mod.ModId);
	Converted.Name = MaptornString::ToStd(Mod.ProfileName);
	Converted.MetadataBlob = MaptornString::ToStd(Mod.MetadataBlob);
	Converted.Summary = MaptornString::ToStd(Mod.ProfileSummary);
	Converted.ProfileUrl = MaptornString::ToStd(Mod.ProfileURL);
	Converted.SubmittedBy = MaptornString::ToStd(Mod.ProfileSubmittedBy.Username);
	for (const FModioModTag& Tag : Mod.Tags)
	{
		Converted.Tags.push_back(MaptornString::ToStd(Tag.Tag));
	}
	Converted.FileVersion = MaptornString::ToStd(Mod.FileInfo.Version);
	Converted.FileSize = Mod.FileInfo.Filesize;
	Converted.Status = static_cast<int32>(Mod.ModStatus);
	return Converted;
}

std::vector<Maptorn::FModioModInfo> ToCore(const FModioModInfoList& Mods)
{
	std::vector<Maptorn::FModioModInfo> Converted;
	for (const FModioModInfo& Mod : Mods.GetRawList())
	{
		Converted.push_back(ToCore(Mod));
	}
	return Converted;
}

FModioModID ToEngine(Maptorn::FModioModID ModId)
{
	return FModioModID(ModId);
}

EModioLogLevel ToEngine(Maptorn::EModioLogLevel Level)
{
	return static_cast<EModioLogLevel>(Level);
}

FModioInitializeOptions ToEngine(const Maptorn::FModioInitializeOptions& Options)
{
	// The plug-in reaches mod.io's own origin for the game and environment; the core's base URL
	// serves only its own REST reads.
	FModioInitializeOptions Converted;
	Converted.GameId = FModioGameID(Options.GameId);
	Converted.ApiKey = FModioApiKey(MaptornString::ToFString(Options.ApiKey));
	Converted.GameEnvironment = Options.Environment == Maptorn::EModioEnvironment::Live ? EModioEnvironment::Live : EModioEnvironment::Test;
	return Converted;
}

FModioCreateModParams ToEngine(const Maptorn::FModioCreateModParams& Params)
{
	FModioCreateModParams Converted;
	Converted.PathToLogoFile = MaptornString::ToFString(Params.PathToLogoFile);
	Converted.Name = MaptornString::ToFString(Params.Name);
	Converted.Summary = MaptornString::ToFString(Params.Summary);
	Converted.MetadataBlob = ToEngine(Params.MetadataBlob);
	Converted.Tags = ToEngine(Params.Tags);
	return Converted;
}

FModioEditModParams ToEngine(const Maptorn::FModioEditModParams& Params)
{
	// The plug-in cannot change tags in an edit; the workshop never asks it to.
	FModioEditModParams Converted;
	Converted.Name = ToEngine(Params.Name);
	Converted.Summary = ToEngine(Params.Summary);
	Converted.MetadataBlob = ToEngine(Params.MetadataBlob);
	Converted.LogoPath = ToEngine(Params.LogoPath);
	return Converted;
}

FModioCreateModFileParams ToEngine(const Maptorn::FModioCreateModFileParams& Params)
{
	FModioCreateModFileParams Converted;
	Converted.PathToModRootDirectory = MaptornString::ToFString(Params.RootDirectory);
	Converted.VersionString = ToEngine(Params.VersionString);
	Converted.Changelog = ToEngine(Params.Changelog);
	if (Params.bSetAsActive)
	{
		Converted.bSetAsActiveRelease = *Params.bSetAsActive;
	}
	Converted.MetadataBlob = ToEngine(Params.MetadataBlob);
	if (Params.ModfilePlatforms)
	{
		// The core numbers platforms as the plug-in does.
		TArray<EModioModfilePlatform> Platforms;
		for (const Maptorn::EModioModfilePlatform Platform : *Params.ModfilePlatforms)
		{
			Platforms.Add(static_cast<EModioModfilePlatform>(Platform));
		}
		Converted.ModfilePlatforms = Platforms;
	}
	return Converted;
}
}
