#include "Module/GameInstall.h"
#include "Module/MaptornModule.h"
#include "Support/FakePlatform.h"
#include "Support/TempDir.h"

#include "Common/FileHelper.h"

#include <gtest/gtest.h>

using namespace Maptorn;
using namespace Maptorn::Testing;

namespace
{
class SteamGameInstall : public ::testing::Test
{
protected:
    void Write(const std::string& RelativePath, const std::string& Text) { ASSERT_TRUE(FileHelper::SaveStringToFile(Text, Temp.Dir() + RelativePath)); }
    void MakeFolder(const std::string& RelativePath) { ASSERT_TRUE(FileSystem::CreateDirectoryTree(Temp.Dir() + RelativePath)); }
    std::string Steam() const { return Temp.Dir() + "Steam"; }

    FTempDir Temp;
};

TEST_F(SteamGameInstall, TheGameIsFoundInWhicheverLibraryHoldsItsManifest)
{
    // Steam writes Windows paths with doubled backslashes; a second library lives on another drive.
    Write("Steam/steamapps/libraryfolders.vdf", "\"libraryfolders\"\n{\n\t\"0\"\n\t{\n\t\t\"path\"\t\t\"" + Steam()
        + "\"\n\t}\n\t\"1\"\n\t{\n\t\t\"path\"\t\t\"" + Temp.Dir() + "Games\\\\Library\"\n\t\t\"apps\"\n\t\t{\n\t\t\t\"2116120\"\t\t\"123\"\n\t\t}\n\t}\n}\n");
    Write("Games/Library/steamapps/appmanifest_2116120.acf", "\"AppState\"\n{\n\t\"appid\"\t\t\"2116120\"\n\t\"installdir\"\t\t\"Kelvor\"\n}\n");
    MakeFolder("Games/Library/steamapps/common/Kelvor");

    EXPECT_EQ(GameInstall::ReadSteamLibraries(Steam()), (std::vector<std::string>{Steam(), Temp.Dir() + "Games/Library"}));
    EXPECT_EQ(GameInstall::FindGameInstallDir(Steam(), "2116120"), Temp.Dir() + "Games/Library/steamapps/common/Kelvor");
}

TEST_F(SteamGameInstall, NothingIsFoundForAnAbsentGameAFolderThatIsGoneOrAManifestThatPointsElsewhere)
{
    Write("Steam/steamapps/appmanifest_1.acf", "\"AppState\" { \"installdir\" \"Gone\" }");
    Write("Steam/steamapps/appmanifest_2.acf", "\"AppState\" { \"installdir\" \"..\" }");
    Write("Steam/steamapps/appmanifest_3.acf", "\"AppState\" { \"installdir\" \"../../etc\" }");
    MakeFolder("Steam/steamapps/common");
    for (const char* AppId : {"1", "2", "3", "4", "", "1/../2"})
    {
        EXPECT_EQ(GameInstall::FindGameInstallDir(Steam(), AppId), "") << AppId;
    }
    EXPECT_EQ(GameInstall::FindGameInstallDir("", "1"), "");
}

TEST_F(SteamGameInstall, AKnownFolderGivesTheModuleItsInstallAndTheSteamDeployObject)
{
    FFakePlatform Fakes;
    FMaptornModule Module(Fakes.Platform, FMaptornConfig{});
    EXPECT_FALSE(GameInstall::UseGameInstall(Module, Temp.Dir() + "Missing"));
    EXPECT_TRUE(Module.InstallDir.empty());
    EXPECT_FALSE(Module.SteamUGC);

    MakeFolder("Kelvor");
    EXPECT_TRUE(GameInstall::UseGameInstall(Module, Temp.Dir() + "Kelvor"));
    EXPECT_EQ(Module.InstallDir, Temp.Dir() + "Kelvor");
    EXPECT_TRUE(Module.SteamUGC);
}
}
