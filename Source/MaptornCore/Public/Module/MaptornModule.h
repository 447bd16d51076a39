#pragma once

#include "Build/SteamWorkshopDeploy.h"
#include "Common/CoreTypes.h"
#include "Content/SVRInterface.h"
#include "Modio/ModioInterface.h"
#include "Module/MaptornConfig.h"
#include "Platform/MaptornPlatform.h"

#include <atomic>
#include <functional>
#include <memory>
#include <string>

namespace Maptorn
{
class FWorkshopNotifications;

// The root object of the workshop: owns the project-map object, the Steam deploy object and the
// mod.io client, holds the few settings the window shares, and drives the client every frame.
// There is one at a time; FMaptornModule::Get() finds it.
class MAPTORNCORE_API FMaptornModule
{
public:
    static constexpr const char* ModuleName = "Maptorn";
    static constexpr const char* TabId = "KelvorWorkshopTab";
    static constexpr const char* TabDisplayName = "Kelvor Workshop";
    static constexpr const char* SteamAppIdFile = "./steam_appid.txt";

    FMaptornModule(FMaptornPlatform& InPlatform, FMaptornConfig InConfig);
    ~FMaptornModule();
    FMaptornModule(const FMaptornModule&) = delete;
    FMaptornModule& operator=(const FMaptornModule&) = delete;

    // The one module object. Asking while none exists is a programming error and aborts, as
    // the engine's checked module load does.
    static FMaptornModule& Get();
    static bool IsAvailable();

    // The editor registers its window (style set, tab) through RegisterWindow, which runs after
    // the members are set and before the project-map object and the mod.io client are made.
    void StartupModule(const std::function<void()>& RegisterWindow = {});
    void ShutdownModule();
    void PreUnloadCallback() {}
    void PostLoadCallback() {}
    bool SupportsDynamicReloading() const { return true; }
    bool SupportsAutomaticShutdown() const { return true; }
    bool IsGameModule() const { return false; }

    void Tick(float DeltaTime);
    bool IsTickable() const;

    FMaptornPlatform& GetPlatform() const { return Platform; }
    const FMaptornConfig& GetConfig() const { return Config; }

    std::string InstallDir;                 // the game installation folder; staging needs it non-empty
    bool bAndroidPlatform = false;          // Steam-deploy platform choices
    bool bWindowsPlatform = false;
    int32 TabIndex = 0;                     // the window page chosen in the tab strip
    std::unique_ptr<FSteamWorkshopDeploy> SteamUGC;
    std::unique_ptr<FSVRInterface> SVR;
    std::unique_ptr<FModioInterface> ModioClient;
    // The editor's toasts of the client's uploads and downloads.
    std::unique_ptr<FWorkshopNotifications> WorkNotifications;
    // A build, stage or deploy task runs on a worker; workers clear it, so it is atomic.
    std::atomic<bool> bBusy = false;

private:
    void TickUploadProgress();
    void TickPlatformUploadCountdown(float DeltaTime);
    void TickOwnModRefresh(float DeltaTime);
    void TickSourcePluginDownload();

    FMaptornPlatform& Platform;
    FMaptornConfig Config;
};

// The module manager's entry point: creates the one module object.
MAPTORNCORE_API std::unique_ptr<FMaptornModule> InitializeModule(FMaptornPlatform& Platform, FMaptornConfig Config);
}
