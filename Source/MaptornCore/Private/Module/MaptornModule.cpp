#include "Module/MaptornModule.h"

#include "Common/FileHelper.h"
#include "Module/ProjectEnvironment.h"
#include "Workshop/WorkshopNotifications.h"

#include <cstdio>
#include <cstdlib>

namespace Maptorn
{
namespace
{
// The one module object, registered while it lives.
FMaptornModule* GModuleInstance = nullptr;
}

FMaptornModule::FMaptornModule(FMaptornPlatform& InPlatform, FMaptornConfig InConfig)
    : Platform(InPlatform)
    , Config(std::move(InConfig))
{
    GModuleInstance = this;
}

FMaptornModule::~FMaptornModule()
{
    if (GModuleInstance == this)
    {
        GModuleInstance = nullptr;
    }
}

FMaptornModule& FMaptornModule::Get()
{
    if (!GModuleInstance)
    {
        std::fprintf(stderr, "Tried to get module interface for unloaded module: '%s'\n", ModuleName);
        std::abort();
    }
    return *GModuleInstance;
}

bool FMaptornModule::IsAvailable()
{
    return GModuleInstance != nullptr;
}

void FMaptornModule::StartupModule(const std::function<void()>& RegisterWindow)
{
    Platform.Log.Log(LogCategory::MaptornLog, ELogVerbosity::Log, "Initializing Kelvor's workshop editor plugin");

    // A Steam client library started from this process looks for the game's id here.
    FileHelper::SaveStringToFile(Config.SteamAppId, SteamAppIdFile);

    SteamUGC.reset();
    SVR.reset();
    WorkNotifications.reset(); // it listens to the client
    ModioClient.reset();
    bAndroidPlatform = true;
    bWindowsPlatform = false;
    bBusy = false;
    TabIndex = 0;

    if (RegisterWindow)
    {
        RegisterWindow();
    }

    SVR = std::make_unique<FSVRInterface>(Platform);

    ModioClient = std::make_unique<FModioInterface>(Platform, Config);
    WorkNotifications = std::make_unique<FWorkshopNotifications>(Platform.Notifications, *ModioClient);
    ModioClient->InitializeSession();

    ModioClient->ModDirectory = ProjectEnvironment::FindModDirectory(Platform.Engine);

    ProjectEnvironment::EnsureEventDrivenLoaderEnabled(Platform.Engine, Platform.Log, ProjectEnvironment::StartupStreamingFixLine);
}

void FMaptornModule::ShutdownModule()
{
    FileSystem::DeleteFile(SteamAppIdFile);

    SVR.reset();
    SteamUGC.reset();
    WorkNotifications.reset();
    if (ModioClient)
    {
        ModioClient->Shutdown();
        ModioClient.reset();
    }
}

bool FMaptornModule::IsTickable() const
{
    return SteamUGC != nullptr || ModioClient != nullptr;
}

std::unique_ptr<FMaptornModule> InitializeModule(FMaptornPlatform& Platform, FMaptornConfig Config)
{
    return std::make_unique<FMaptornModule>(Platform, std::move(Config));
}
}
