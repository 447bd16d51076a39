#include "Module/ProjectEnvironment.h"
#include "Support/FakePlatform.h"
#include "Support/TempDir.h"

#include <gtest/gtest.h>

#include <filesystem>

using namespace Maptorn;
using namespace Maptorn::Testing;
namespace fs = std::filesystem;

namespace
{
class ProjectEnvironmentTest : public ::testing::Test
{
protected:
    ProjectEnvironmentTest()
    {
        Fakes.Engine.BaseDir = Temp.Dir() + "Engine/Binaries/Win64/";
        Fakes.Engine.Project = "../../../Project/";
        Fakes.Engine.UserSettings = Temp.Dir() + "User/";
    }

    std::string GameSettingsFile() const { return Temp.Dir() + "User/Kelvor/Saved/Config/Windows/GameUserSettings.ini"; }
    void InstallGame() { fs::create_directories(Temp.Path() / "User/Kelvor"); }
    void ChooseModDirectory(const std::string& Value)
    {
        Fakes.Engine.Config.Disk[GameSettingsFile()][ProjectEnvironment::GameSettingsSection][ProjectEnvironment::ModDirectoryKey] = Value;
    }

    FTempDir Temp;
    FFakePlatform Fakes;
};
}

TEST_F(ProjectEnvironmentTest, WithoutTheGameInstalledTheModDirectoryIsTheAbsoluteSavedFolder)
{
    // A settings file elsewhere does not count: only the game folder decides.
    ChooseModDirectory(Temp.Dir());
    EXPECT_EQ(ProjectEnvironment::FindModDirectory(Fakes.Engine), Temp.Dir() + "Project/Saved/");
}

TEST_F(ProjectEnvironmentTest, WithTheGameInstalledTheDefaultIsSavedMods)
{
    InstallGame();
    EXPECT_EQ(ProjectEnvironment::FindModDirectory(Fakes.Engine), Temp.Dir() + "User/Kelvor/Saved/Mods");
}

TEST_F(ProjectEnvironmentTest, AModDirectorySettingThatNamesAnExistingFolderWins)
{
    InstallGame();
    fs::create_directories(Temp.Path() / "Elsewhere");
    ChooseModDirectory(Temp.Dir() + "Elsewhere");
    EXPECT_EQ(ProjectEnvironment::FindModDirectory(Fakes.Engine), Temp.Dir() + "Elsewhere");
}

TEST_F(ProjectEnvironmentTest, AModDirectorySettingThatNamesNoFolderKeepsTheDefault)
{
    InstallGame();
    ChooseModDirectory(Temp.Dir() + "Missing");
    EXPECT_EQ(ProjectEnvironment::FindModDirectory(Fakes.Engine), Temp.Dir() + "User/Kelvor/Saved/Mods");
    ChooseModDirectory("");
    EXPECT_EQ(ProjectEnvironment::FindModDirectory(Fakes.Engine), Temp.Dir() + "User/Kelvor/Saved/Mods");
}

TEST_F(ProjectEnvironmentTest, AOneCharacterModDirectoryNamingAnExistingFolderIsAccepted)
{
    InstallGame();
    ChooseModDirectory("/");
    EXPECT_EQ(ProjectEnvironment::FindModDirectory(Fakes.Engine), "/");
}

TEST_F(ProjectEnvironmentTest, TheGameSettingsAreReadFreshFromDiskEachTime)
{
    InstallGame();
    fs::create_directories(Temp.Path() / "Elsewhere");
    ChooseModDirectory("/");
    Fakes.Engine.Config.GetString(ProjectEnvironment::GameSettingsSection, ProjectEnvironment::ModDirectoryKey, GameSettingsFile());
    ChooseModDirectory(Temp.Dir() + "Elsewhere");
    EXPECT_EQ(ProjectEnvironment::FindModDirectory(Fakes.Engine), Temp.Dir() + "Elsewhere");
}

TEST_F(ProjectEnvironmentTest, WithoutAConfigSystemTheSettingIsNotRead)
{
    InstallGame();
    ChooseModDirectory("/");
    Fakes.Engine.bHasConfig = false;
    EXPECT_EQ(ProjectEnvironment::FindModDirectory(Fakes.Engine), Temp.Dir() + "User/Kelvor/Saved/Mods");
}

TEST_F(ProjectEnvironmentTest, DepotAndWorkshopFoldersAreUnderTheAbsoluteSavedCookedFolder)
{
    EXPECT_EQ(ProjectEnvironment::GetDepotDirectory(Fakes.Engine), Temp.Dir() + "Project/Saved/Cooked/Depot");
    EXPECT_EQ(ProjectEnvironment::GetWorkshopDirectory(Fakes.Engine), Temp.Dir() + "Project/Saved/Cooked/Workshop");
}

TEST_F(ProjectEnvironmentTest, TheStreamingFixWritesTrueAndLogsOnlyWhenTheKeyIsFalseOrMissing)
{
    const std::string Ini = Temp.Dir() + "Project/Config/DefaultEngine.ini";
    auto& Disk = Fakes.Engine.Config.Disk;

    ProjectEnvironment::EnsureEventDrivenLoaderEnabled(Fakes.Engine, Fakes.Log, ProjectEnvironment::StartupStreamingFixLine);
    EXPECT_EQ(Disk[Ini]["/Script/Engine.StreamingSettings"]["s.EventDrivenLoaderEnabled"], "True");
    EXPECT_TRUE(Fakes.Log.Has("LogTemp", ELogVerbosity::Log, "Disabling EventDrivenLoader: " + Ini));

    Disk[Ini]["/Script/Engine.StreamingSettings"]["s.EventDrivenLoaderEnabled"] = "False";
    ProjectEnvironment::EnsureEventDrivenLoaderEnabled(Fakes.Engine, Fakes.Log, ProjectEnvironment::CookStreamingFixLine);
    EXPECT_EQ(Disk[Ini]["/Script/Engine.StreamingSettings"]["s.EventDrivenLoaderEnabled"], "True");
    EXPECT_TRUE(Fakes.Log.Has("LogTemp", ELogVerbosity::Log, "Enabling EventDrivenLoader: " + Ini));

    // Already true: nothing written, nothing logged.
    const int Flushes = Fakes.Engine.Config.FlushCount;
    const std::size_t Lines = Fakes.Log.Lines.size();
    ProjectEnvironment::EnsureEventDrivenLoaderEnabled(Fakes.Engine, Fakes.Log, ProjectEnvironment::StartupStreamingFixLine);
    EXPECT_EQ(Fakes.Engine.Config.FlushCount, Flushes);
    EXPECT_EQ(Fakes.Log.Lines.size(), Lines);
}

TEST_F(ProjectEnvironmentTest, TheRegistryReadIsEmptyWithoutARegistry)
{
    EXPECT_EQ(ProjectEnvironment::ReadRegistryString("SOFTWARE\\Kelvor", "InstallDir"), "");
}
