// Start-up and shut-down of the module on a real temporary project, with the standalone host's
// engine, INI and definition adapters.

#include "Module/MaptornModule.h"
#include "Support/SampleProjectPlatform.h"
#include "Support/TempDir.h"

#include <gtest/gtest.h>

#include <filesystem>

using namespace Maptorn;
using namespace Maptorn::Testing;
namespace fs = std::filesystem;

namespace
{
class ModuleStartup : public ::testing::Test
{
protected:
    void Lay(const Sample::FSampleOptions& Options = {})
    {
        Project = std::make_unique<FSampleProjectPlatform>(Temp.Dir() + "Sample", Options);
        ASSERT_TRUE(Project->Layout.bCreated) << Project->Layout.FailReason;
        Module = std::make_unique<FMaptornModule>(*Project->Platform, FMaptornConfig{"1234560", "http://127.0.0.1:1", 5, "k"});
    }

    std::string InProject(const std::string& Relative) const { return Project->InProject(Relative); }
    std::string IniPath() const { return InProject("Config/DefaultEngine.ini"); }
    std::string GameSettings() const { return Project->Layout.UserSettingsDir + "Kelvor/Saved/Config/Windows/GameUserSettings.ini"; }
    FRecordingLog& Log() { return Project->Fakes.Log; }

    FTempDir Temp;
    FScopedWorkingDirectory WorkingDirectory{Temp.Path()};
    std::unique_ptr<FSampleProjectPlatform> Project;
    std::unique_ptr<FMaptornModule> Module;
};
}

TEST_F(ModuleStartup, AFalseStreamingSettingIsSetTrueKeepingEveryOtherLine)
{
    Lay();
    const std::string Before = ReadTextFile(IniPath());
    ASSERT_NE(Before.find("s.EventDrivenLoaderEnabled=False"), std::string::npos);

    Module->StartupModule();

    std::string Expected = Before;
    Expected.replace(Expected.find("s.EventDrivenLoaderEnabled=False"), 32, "s.EventDrivenLoaderEnabled=True");
    EXPECT_EQ(ReadTextFile(IniPath()), Expected);
    const std::string AbsoluteIni = fs::path(IniPath()).lexically_normal().generic_string();
    EXPECT_TRUE(Log().Has("LogTemp", ELogVerbosity::Log, "Disabling EventDrivenLoader: " + AbsoluteIni));
    Module->ShutdownModule();
}

TEST_F(ModuleStartup, WithoutTheGameTheModDirectoryIsTheAbsoluteSavedFolder)
{
    Lay();
    Module->StartupModule();
    EXPECT_EQ(Module->ModioClient->ModDirectory, InProject("Saved/"));
    Module->ShutdownModule();
}

TEST_F(ModuleStartup, TheProjectMapIsFoundAtStartup)
{
    Lay();
    fs::create_directories(InProject("Content/CustomMaps/SVR_Harbour"));
    Module->StartupModule();
    EXPECT_EQ(Module->SVR->Id, "Harbour");
    EXPECT_TRUE(Log().Has("MaptornLog", ELogVerbosity::Log, "Loaded SVR ID:Harbour"));
    Module->ShutdownModule();
}
