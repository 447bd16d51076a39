#include "Platform/EngineDialogs.h"

#include "Platform/StringConversion.h"

#include "Async/Async.h"
#include "Async/Future.h"
#include "DesktopPlatformModule.h"
#include "Framework/Application/SlateApplication.h"
#include "HAL/PlatformProcess.h"
#include "IDesktopPlatform.h"
#include "Misc/MessageDialog.h"
#include "Misc/Paths.h"

// Again after the engine's headers, in case one of them brought windows.h in.
#ifdef MessageBox
#undef MessageBox
#endif

namespace MaptornDialogs
{
Maptorn::EAppReturnType ToCoreAnswer(EAppReturnType::Type Answer)
{
	switch (Answer)
	{
	case EAppReturnType::Yes:
	case EAppReturnType::YesAll:
		return Maptorn::EAppReturnType::Yes;
	case EAppReturnType::No:
	case EAppReturnType::NoAll:
		return Maptorn::EAppReturnType::No;
	case EAppReturnType::Ok:
	case EAppReturnType::Continue:
		return Maptorn::EAppReturnType::Ok;
	default:
		return Maptorn::EAppReturnType::Cancel;
	}
}

// Slate windows belong to the game thread; a build worker asking waits for the user's answer there.
// The core only polls its workers from the game thread, never waits on one, so this cannot deadlock.
EAppReturnType::Type OpenOnGameThread(EAppMsgType::Type Type, const FText& Text, const FText& Caption)
{
	if (IsInGameThread())
	{
		return FMessageDialog::Open(Type, Text, &Caption);
	}
	TPromise<EAppReturnType::Type> Answer;
	TFuture<EAppReturnType::Type> PendingAnswer = Answer.GetFuture();
	AsyncTask(ENamedThreads::GameThread, [&Answer, Type, &Text, &Caption]()
	{
		Answer.SetValue(FMessageDialog::Open(Type, Text, &Caption));
	});
	return PendingAnswer.Get();
}

// The pickers answer paths relative to the process; the core wants them as the user chose them.
std::string ToFullPath(const FString& Path)
{
	return MaptornString::ToStd(FPaths::ConvertRelativePathToFull(Path));
}

const void* ParentWindowHandle()
{
	return FSlateApplication::IsInitialized() ? FSlateApplication::Get().FindBestParentWindowHandleForDialogs(nullptr) : nullptr;
}
}

Maptorn::EAppReturnType FEngineDialogs::MessageBox(Maptorn::EAppMsgType Type, const std::string& Text, const std::string& Caption)
{
	const EAppMsgType::Type EngineType = Type == Maptorn::EAppMsgType::YesNo ? EAppMsgType::YesNo : EAppMsgType::Ok;
	const FText Message = FText::FromString(MaptornString::ToFString(Text));
	const FText Title = FText::FromString(MaptornString::ToFString(Caption));
	return MaptornDialogs::ToCoreAnswer(MaptornDialogs::OpenOnGameThread(EngineType, Message, Title));
}

std::optional<std::string> FEngineDialogs::OpenFileDialog(const std::string& Title, const std::string& DefaultPath,
	const std::string& FileTypes)
{
	IDesktopPlatform* DesktopPlatform = FDesktopPlatformModule::Get();
	TArray<FString> Chosen;
	if (!DesktopPlatform || !DesktopPlatform->OpenFileDialog(MaptornDialogs::ParentWindowHandle(), MaptornString::ToFString(Title),
			MaptornString::ToFString(DefaultPath), FString(), MaptornString::ToFString(FileTypes), EFileDialogFlags::None, Chosen)
		|| Chosen.Num() == 0)
	{
		return std::nullopt;
	}
	return MaptornDialogs::ToFullPath(Chosen[0]);
}

std::optional<std::string> FEngineDialogs::OpenDirectoryDialog(const std::string& Title, const std::string& DefaultPath)
{
	IDesktopPlatform* DesktopPlatform = FDesktopPlatformModule::Get();
	FString Chosen;
	if (!DesktopPlatform || !DesktopPlatform->OpenDirectoryDialog(MaptornDialogs::ParentWindowHandle(),
			MaptornString::ToFString(Title), MaptornString::ToFString(DefaultPath), Chosen))
	{
		return std::nullopt;
	}
	return MaptornDialogs::ToFullPath(Chosen);
}

void FEngineDialogs::LaunchURL(const std::string& Url)
{
	FPlatformProcess::LaunchURL(*MaptornString::ToFString(Url), nullptr, nullptr);
}
