#include "Common/Paths.h"
#include "Common/StringUtil.h"
#include "Modio/ModioInterface.h"

namespace Maptorn
{
void FModioInterface::InitializeSession()
{
    if (IModioSession* Session = Platform.ModioSession)
    {
        FModioInitializeOptions Options;
        Options.GameId = Config.ModioGameId;
        Options.ApiKey = Config.ModioApiKey;
        Options.Environment = EModioEnvironment::Live;
        Options.BaseUrl = Config.ModioApiBaseUrl;
        Session->InitializeAsync(Options, [this](FModioErrorCode ErrorCode) { OnInitializeComplete(ErrorCode); });
        Session->SetLogLevel(EModioLogLevel::Warning);
    }

    DefaultLogoPath = Paths::Combine(Platform.Engine.ProjectDir(), "Plugins", "Maptorn", "Resources", "KelvorThumbnail.jpg");
    NewModLogoPath = DefaultLogoPath;
    Platform.Log.Log(LogCategory::LogTemp, ELogVerbosity::Log, Printf("Logo Location: %s", DefaultLogoPath.c_str()));
    Platform.Log.Log(LogCategory::LogTemp, ELogVerbosity::Log, "Initializing Modio SDK");
}

void FModioInterface::OnInitializeComplete(FModioErrorCode ErrorCode)
{
    if (ErrorCode)
    {
        Platform.Log.Log(LogCategory::LogTemp, ELogVerbosity::Log,
            Printf("Error initializing Modio SDK, the error code was %s", ErrorCode.GetErrorMessage().c_str()));
    }
}

void FModioInterface::Shutdown()
{
    IModioSession* Session = Platform.ModioSession;
    if (!Session)
    {
        return;
    }
    // The client may be gone when the completion runs: capture only the log.
    IMaptornLog& Log = Platform.Log;
    Session->ShutdownAsync([&Log](FModioErrorCode ErrorCode) {
        Log.Log(LogCategory::LogTemp, ELogVerbosity::Log,
            Printf("Error Shutdown Modio SDK, the error code was %s", ErrorCode.GetErrorMessage().c_str()));
    });
}
}
