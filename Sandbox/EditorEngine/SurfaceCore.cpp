// The working implementation of the engine surface's core services, the editor module's stand-in engine:
// formatting, logging, configuration, modules, message boxes, processes, the game thread's queue.

#include "EditorEngine/SurfaceTestState.h"
#include "EditorEngine/Slate/SurfaceNotifications.h"

#include "Async/Async.h"
#include "CoreGlobals.h"
#include "DesktopPlatformModule.h"
#include "Framework/Application/SlateApplication.h"
#include "HAL/PlatformProcess.h"
#include "Misc/ConfigCacheIni.h"
#include "Misc/CoreDelegates.h"
#include "Misc/EngineVersion.h"
#include "Misc/MessageDialog.h"
#include "Modules/ModuleManager.h"
#include "TickableEditorObject.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <mutex>
#include <thread>

namespace SurfaceTestState
{
FState& Get()
{
	static FState State;
	return State;
}

namespace
{
std::mutex GameThreadMutex;
std::vector<std::function<void()>> GameThreadQueue;
}

void Reset()
{
	Get() = FState();
	UseProjectConfigFiles();
	const std::lock_guard<std::mutex> Lock(GameThreadMutex);
	GameThreadQueue.clear();
}

void PostToGameThread(std::function<void()> Work)
{
	const std::lock_guard<std::mutex> Lock(GameThreadMutex);
	GameThreadQueue.push_back(std::move(Work));
}

void PumpGameThread()
{
	std::vector<std::function<void()>> Work;
	{
		const std::lock_guard<std::mutex> Lock(GameThreadMutex);
		Work.swap(GameThreadQueue);
	}
	for (std::function<void()>& Item : Work)
	{
		Item();
	}
}
}

namespace
{
std::string ToUtf8(const TCHAR* Text)
{
	return MaptornSurfaceUtf::ToUtf8(Text, MaptornSurfaceUtf::Length(Text));
}

const std::thread::id GameThreadId = std::this_thread::get_id();
}

[[noreturn]] void MaptornSurfaceCheckFailed(const char* Expression, const char* File, int Line)
{
	std::fprintf(stderr, "Assertion failed: %s [%s:%d]\n", Expression, File, Line);
	std::abort();
}

bool MaptornSurfaceEnsureFailed(const char* Expression, const char* File, int Line)
{
	std::fprintf(stderr, "Ensure condition failed: %s [%s:%d]\n", Expression, File, Line);
	return false;
}

// printf over TCHAR for the conversions the editor module uses: %s (TCHAR*), %d %i %u, %lld %llu, %f, %%.
FString FString::PrintfImpl(const TCHAR* Fmt, ...)
{
	va_list Args;
	va_start(Args, Fmt);
	std::string Out;
	for (const TCHAR* At = Fmt; *At; ++At)
	{
		if (*At != '%')
		{
			Out += ToUtf8(FString(1, At).operator*());
			continue;
		}
		++At;
		std::string Length;
		while (*At == 'l' || *At == 'h' || *At == 'z')
		{
			Length += static_cast<char>(*At++);
		}
		char Buffer[64];
		switch (*At)
		{
		case 's': Out += ToUtf8(va_arg(Args, const TCHAR*)); break;
		case 'd':
		case 'i':
			std::snprintf(Buffer, sizeof(Buffer), "%lld", Length == "ll" ? va_arg(Args, long long) : static_cast<long long>(va_arg(Args, int)));
			Out += Buffer;
			break;
		case 'u':
			std::snprintf(Buffer, sizeof(Buffer), "%llu",
				Length == "ll" ? va_arg(Args, unsigned long long) : static_cast<unsigned long long>(va_arg(Args, unsigned int)));
			Out += Buffer;
			break;
		case 'f': std::snprintf(Buffer, sizeof(Buffer), "%f", va_arg(Args, double)); Out += Buffer; break;
		case '%': Out += '%'; break;
		default: Out += '%'; Out += static_cast<char>(*At); break;
		}
	}
	va_end(Args);
	const auto Wide = MaptornSurfaceUtf::FromUtf8(Out.data(), static_cast<int32>(Out.size()));
	return FString(static_cast<int32>(Wide.size()), Wide.c_str());
}

FString FString::FromInt(int32 Number)
{
	return Printf(TEXT("%d"), Number);
}

FString FString::Replace(const TCHAR* From, const TCHAR* To, ESearchCase::Type SearchCase) const
{
	FString Result;
	FString Rest = *this;
	FString Left;
	FString Right;
	while (Rest.Split(From, &Left, &Right, SearchCase))
	{
		Result += Left;
		Result += To;
		Rest = Right;
	}
	Result += Rest;
	return Result;
}

FString operator/(const FString& A, const FString& B)
{
	return A.IsEmpty() || A.EndsWith(TEXT("/")) ? A + B : A + TEXT("/") + B;
}

FString operator/(const FString& A, const TCHAR* B)
{
	return A / FString(B);
}

const FColor FColor::White(255, 255, 255);
const FColor FColor::Black(0, 0, 0);
const FLinearColor FLinearColor::White(1.0f, 1.0f, 1.0f);
const FLinearColor FLinearColor::Black(0.0f, 0.0f, 0.0f);
const FLinearColor FLinearColor::Transparent(0.0f, 0.0f, 0.0f, 0.0f);

FColor FColor::FromHex(const FString& HexString)
{
	std::string Hex = ToUtf8(*HexString);
	if (!Hex.empty() && Hex[0] == '#')
	{
		Hex.erase(0, 1);
	}
	const unsigned long Value = std::strtoul(Hex.c_str(), nullptr, 16);
	if (Hex.size() == 6)
	{
		return FColor(static_cast<uint8>(Value >> 16), static_cast<uint8>(Value >> 8), static_cast<uint8>(Value), 255);
	}
	return FColor(static_cast<uint8>(Value >> 24), static_cast<uint8>(Value >> 16), static_cast<uint8>(Value >> 8), static_cast<uint8>(Value));
}

FLinearColor::FLinearColor(const FColor& Color)
	: R(Color.R / 255.0f)
	, G(Color.G / 255.0f)
	, B(Color.B / 255.0f)
	, A(Color.A / 255.0f)
{
}

FLogCategoryLogTemp LogTemp;

void FMsg::LogfImpl(const ANSICHAR* /*File*/, int32 /*Line*/, const FName& Category, ELogVerbosity::Type Verbosity, const TCHAR* Fmt, ...)
{
	va_list Args;
	va_start(Args, Fmt);
	// The adapters log through "%s" only.
	const TCHAR* Text = va_arg(Args, const TCHAR*);
	va_end(Args);
	SurfaceTestState::Get().Log.push_back({ToUtf8(*Category.ToString()), Verbosity, ToUtf8(Text)});
}

FQueuedThreadPool* GThreadPool = nullptr;
bool GIsEditor = true;

bool IsInGameThread()
{
	return std::this_thread::get_id() == GameThreadId;
}

void AsyncTask(ENamedThreads::Type Thread, TUniqueFunction<void()> Function)
{
	if (Thread == ENamedThreads::GameThread)
	{
		SurfaceTestState::PostToGameThread([Function] { Function(); });
		return;
	}
	std::thread([Function] { Function(); }).detach();
}

EAppReturnType::Type FMessageDialog::Open(EAppMsgType::Type /*MessageType*/, const FText& Message, const FText* OptTitle)
{
	SurfaceTestState::FState& State = SurfaceTestState::Get();
	State.MessageBoxes.push_back({OptTitle ? ToUtf8(*OptTitle->ToString()) : std::string(), ToUtf8(*Message.ToString())});
	if (State.MessageBoxAnswers.empty())
	{
		return State.NextAnswer;
	}
	const EAppReturnType::Type Answer = State.MessageBoxAnswers.front();
	State.MessageBoxAnswers.pop_front();
	return Answer;
}

bool FSlateApplication::IsInitialized()
{
	return false;
}

FSlateApplication& FSlateApplication::Get()
{
	static FSlateApplication Application;
	return Application;
}

const void* FSlateApplication::FindBestParentWindowHandleForDialogs(const TSharedPtr<SWidget>& /*InWidget*/,
	const ESlateParentWindowSearchMethod /*InParentWindowSearchMethod*/)
{
	return nullptr;
}


FSimpleMulticastDelegate FCoreDelegates::OnPreExit;
FSimpleMulticastDelegate FCoreDelegates::OnEnginePreExit;
FSimpleMulticastDelegate FCoreDelegates::OnPostEngineInit;


const FEngineVersion& FEngineVersion::Current()
{
	static const FEngineVersion Version;
	return Version;
}

FString FEngineVersion::ToString(EVersionComponent /*LastComponent*/) const
{
	return TEXT("5.1.1-0+++UE5+Release-5.1");
}

namespace
{
// TCHAR strings that outlive the call, as the engine's static path strings do.
const TCHAR* Persistent(const std::string& Utf8)
{
	static std::map<std::string, std::basic_string<TCHAR>> Strings;
	auto& Stored = Strings[Utf8];
	Stored = MaptornSurfaceUtf::FromUtf8(Utf8.data(), static_cast<int32>(Utf8.size()));
	return Stored.c_str();
}
}

const TCHAR* FGenericPlatformProcess::BaseDir()
{
	return Persistent(SurfaceTestState::Get().BaseDir);
}

const TCHAR* FGenericPlatformProcess::UserSettingsDir()
{
	return Persistent(SurfaceTestState::Get().UserSettingsDir);
}

const TCHAR* FGenericPlatformProcess::UserDir()
{
	return Persistent(SurfaceTestState::Get().UserSettingsDir);
}

const TCHAR* FGenericPlatformProcess::UserTempDir()
{
	return Persistent("/tmp/");
}

void FGenericPlatformProcess::LaunchURL(const TCHAR* URL, const TCHAR* /*Parms*/, FString* /*Error*/)
{
	SurfaceTestState::Get().LaunchedUrls.push_back(ToUtf8(URL));
}

void FGenericPlatformProcess::Sleep(float Seconds)
{
	std::this_thread::sleep_for(std::chrono::duration<float>(Seconds));
}
