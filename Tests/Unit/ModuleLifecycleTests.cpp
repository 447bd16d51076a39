#include "Module/MaptornModule.h"
#include "Support/FakePlatform.h"
#include "Support/TempDir.h"

#include <gtest/gtest.h>

#include <filesystem>

using namespace Maptorn;
using namespace Maptorn::Testing;
namespace fs = std::filesystem;

namespace
{
class ModuleLifecycle : public ::testing::Test
{
protected:
    ModuleLifecycle()
        : WorkingDirectory(Temp.Path())
    {
        Fakes.Engine.Project = Temp.Dir() + "Project/";
        Fakes.Engine.UserSettings = Temp.Dir() + "User/";
        Fakes.Engine.BaseDir = Temp.Dir();
        Config.SteamAppId = "1234560";
        Config.ModioGameId = 77;
        Config.ModioApiKey = "0123456789abcdef0123456789abcdef";
        Config.ModioApiBaseUrl = "http://127.0.0.1:9";
    }

    FTempDir Temp;
    FScopedWorkingDirectory WorkingDirectory;
    FFakePlatform Fakes;
    FMaptornConfig Config;
};
}

TEST_F(ModuleLifecycle, StartupSetsTheDocumentedDefaultsAndCreatesTheServiceObjects)
{
    FMaptornModule Module(Fakes.Platform, Config);
    Module.TabIndex = 3;
    Module.bBusy = true;
    Module.StartupModule();

    EXPECT_TRUE(Module.bAndroidPlatform);
    EXPECT_FALSE(Module.bWindowsPlatform);
    EXPECT_EQ(Module.TabIndex, 0);
    EXPECT_FALSE(Module.bBusy);
    EXPECT_EQ(Module.SteamUGC, nullptr);
    ASSERT_NE(Module.SVR, nullptr);
    ASSERT_NE(Module.ModioClient, nullptr);
    ASSERT_FALSE(Fakes.Log.Lines.empty());
    EXPECT_EQ(Fakes.Log.Lines.front().Message, "Initializing Kelvor's workshop editor plugin");
    EXPECT_EQ(Fakes.Log.Lines.front().Category, "MaptornLog");
    Module.ShutdownModule();
}

TEST_F(ModuleLifecycle, StartupStartsTheSdkWithTheConfiguredGameAndStoresTheLogoPath)
{
    FMaptornModule Module(Fakes.Platform, Config);
    Module.StartupModule();

    ASSERT_TRUE(Fakes.Session.InitOptions.has_value());
    EXPECT_EQ(Fakes.Session.InitOptions->GameId, 77);
    EXPECT_EQ(Fakes.Session.InitOptions->ApiKey, Config.ModioApiKey);
    EXPECT_EQ(Fakes.Session.InitOptions->Environment, EModioEnvironment::Live);
    EXPECT_EQ(Fakes.Session.LogLevel, EModioLogLevel::Warning);

    const std::string Logo = Fakes.Engine.Project + "Plugins/Maptorn/Resources/KelvorThumbnail.jpg";
    EXPECT_EQ(Module.ModioClient->DefaultLogoPath, Logo);
    EXPECT_TRUE(Fakes.Log.Has("LogTemp", ELogVerbosity::Log, "Logo Location: " + Logo));
    EXPECT_TRUE(Fakes.Log.Has("LogTemp", ELogVerbosity::Log, "Initializing Modio SDK"));
    Module.ShutdownModule();
}

TEST_F(ModuleLifecycle, WithoutTheModioSubsystemStartupStillStoresTheLogoPath)
{
    FMaptornPlatform NoSession = Fakes.Platform;
    NoSession.ModioSession = nullptr;
    FMaptornModule Module(NoSession, Config);
    Module.StartupModule();

    EXPECT_TRUE(Fakes.Session.Calls.empty());
    EXPECT_FALSE(Module.ModioClient->DefaultLogoPath.empty());
    Module.ShutdownModule();
    EXPECT_TRUE(Fakes.Session.Calls.empty());
}

TEST_F(ModuleLifecycle, ShutdownEndsTheSdkSessionQuietlyWhenItSucceeds)
{
    FMaptornModule Module(Fakes.Platform, Config);
    Module.StartupModule();
    Module.ShutdownModule();

    EXPECT_EQ(Module.SVR, nullptr);
    EXPECT_EQ(Module.ModioClient, nullptr);
    EXPECT_FALSE(Module.IsTickable());
    EXPECT_EQ(Fakes.Session.Calls.back(), "ShutdownAsync");
    Fakes.Session.RunPendingHandlers();
    EXPECT_EQ(Fakes.Log.CountMessage("Error Shutdown Modio SDK, the error code was "), 0);
}

TEST_F(ModuleLifecycle, AFailedSdkInitialisationIsLoggedWithTheSdkMessage)
{
    Fakes.Session.NextResult = {21000, "bad key"};
    FMaptornModule Module(Fakes.Platform, Config);
    Module.StartupModule();
    Module.Tick(0.016f);
    EXPECT_TRUE(Fakes.Log.Has("LogTemp", ELogVerbosity::Log, "Error initializing Modio SDK, the error code was bad key"));
    Module.ShutdownModule();
}

TEST_F(ModuleLifecycle, GetReturnsTheOneModuleObject)
{
    EXPECT_FALSE(FMaptornModule::IsAvailable());
    {
        std::unique_ptr<FMaptornModule> Module = InitializeModule(Fakes.Platform, Config);
        EXPECT_TRUE(FMaptornModule::IsAvailable());
        EXPECT_EQ(&FMaptornModule::Get(), Module.get());
        EXPECT_FALSE(Module->IsGameModule());
        EXPECT_TRUE(Module->SupportsDynamicReloading());
    }
    EXPECT_FALSE(FMaptornModule::IsAvailable());
}

TEST_F(ModuleLifecycle, GettingAnUnloadedModuleIsAFatalCheck)
{
    EXPECT_DEATH(FMaptornModule::Get(), "Tried to get module interface for unloaded module: 'Maptorn'");
}
