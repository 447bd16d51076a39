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

TEST_F(ModuleStartup, AMissingStreamingSettingIsAddedInItsOwnSection)
{
    Lay();
    WriteTextFile(IniPath(), "; the project's own notes\n[/Script/EngineSettings.GameMapsSettings]\nGameDefaultMap=/Game/Start\n");
    Module->StartupModule();
    const std::string After = ReadTextFile(IniPath());
    EXPECT_EQ(After.rfind("; the project's own notes\n[/Script/EngineSettings.GameMapsSettings]\nGameDefaultMap=/Game/Start\n", 0), 0u);
    EXPECT_NE(After.find("[/Script/Engine.StreamingSettings]\ns.EventDrivenLoaderEnabled=True"), std::string::npos);
    Module->ShutdownModule();
}

TEST_F(ModuleStartup, ATrueStreamingSettingIsNeitherWrittenNorLogged)
{
    Sample::FSampleOptions Options;
    Options.bEventDrivenLoaderEnabled = true;
    Lay(Options);
    const auto Before = fs::last_write_time(IniPath());
    const std::string Text = ReadTextFile(IniPath());

    Module->StartupModule();

    EXPECT_EQ(ReadTextFile(IniPath()), Text);
    EXPECT_EQ(fs::last_write_time(IniPath()), Before);
    for (const FLogLine& Line : Log().Lines)
    {
        EXPECT_EQ(Line.Message.find("EventDrivenLoader"), std::string::npos) << Line.Message;
    }
    Module->ShutdownModule();
}

TEST_F(ModuleStartup, WithoutTheGameTheModDirectoryIsTheAbsoluteSavedFolder)
{
    Lay();
    Module->StartupModule();
    EXPECT_EQ(Module->ModioClient->ModDirectory, InProject("Saved/"));
    Module->ShutdownModule();
}

TEST_F(ModuleStartup, WithTheGameTheModDirectoryFollowsItsSettingWhenTheFolderExists)
{
    Sample::FSampleOptions Options;
    Options.bWithGameInstall = true;
    Options.ModDirectory = Temp.Dir() + "NoSuchFolder";
    Lay(Options);
    Module->StartupModule();
    EXPECT_EQ(Module->ModioClient->ModDirectory, Project->Layout.UserSettingsDir + "Kelvor/Saved/Mods");
    Module->ShutdownModule();

    fs::create_directories(Temp.Path() / "Mods Elsewhere");
    WriteTextFile(GameSettings(), "[/Script/Kelvor.KelvorGameUserSettings]\nModDirectory=" + Temp.Dir() + "Mods Elsewhere\n");
    Module->StartupModule();
    EXPECT_EQ(Module->ModioClient->ModDirectory, Temp.Dir() + "Mods Elsewhere");
    Module->ShutdownModule();

    WriteTextFile(GameSettings(), "[/Script/Kelvor.KelvorGameUserSettings]\nModDirectory=/\n");
    Module->StartupModule();
    EXPECT_EQ(Module->ModioClient->ModDirectory, "/") << "one character naming an existing folder";
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
