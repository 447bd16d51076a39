#include "Content/ModDefinitions.h"
#include "Modio/ModioInterface.h"
#include "Support/SampleProjectPlatform.h"
#include "Support/TempDir.h"

#include <gtest/gtest.h>

#include <filesystem>

using namespace Maptorn;
using namespace Maptorn::Testing;
namespace fs = std::filesystem;

namespace
{
class JsonDefinitionsTest : public ::testing::Test
{
protected:
    FTempDir Temp;
    FSampleProjectPlatform Project{Temp.Dir() + "Sample"};
    const Sample::FSampleLayout& Layout = Project.Layout;
    FStandaloneEngine& Engine = *Project.Engine;
    FJsonDefinitions& Definitions = *Project.Definitions;
};
}

TEST_F(JsonDefinitionsTest, ASavedDefinitionReadsBackWithEveryField)
{
    std::shared_ptr<FKelvorDefinition> Created = Definitions.CreateDefinition("/Game/CustomMaps/SVR_Bay/definition", EModType::Map);
    ASSERT_NE(Created, nullptr);
    Created->Label = "SVR_Bay";
    Created->DisplayName = "Bucht \xC3\xBC"; // non-ASCII text goes through the UTF-16 file form
    Created->Version = 7;
    Created->bIsCustomGameMode = true;
    Created->CustomGameModeLabel = "Race";
    Created->Map = "/Game/CustomMaps/SVR_Bay/Bay.Bay";
    Created->VeskoMap = "/Game/CustomMaps/SVR_Bay/Bay_Quest.Bay_Quest";
    ASSERT_TRUE(Definitions.SavePackage(*Created));
    EXPECT_TRUE(fs::exists(Layout.ProjectDir + "/Content/CustomMaps/SVR_Bay/definition.json"));

    FJsonDefinitions Fresh(Engine);
    std::shared_ptr<FKelvorDefinition> Loaded = Fresh.LoadObject("/Game/CustomMaps/SVR_Bay/definition.definition");
    ASSERT_NE(Loaded, nullptr);
    EXPECT_EQ(Loaded->Class, EModType::Map);
    EXPECT_EQ(Loaded->PackageName, "/Game/CustomMaps/SVR_Bay/definition");
    EXPECT_EQ(Loaded->DisplayName, Created->DisplayName);
    EXPECT_EQ(Loaded->Version, 7);
    EXPECT_TRUE(Loaded->bIsCustomGameMode);
    EXPECT_EQ(Loaded->CustomGameModeLabel, "Race");
    EXPECT_EQ(Loaded->Map, Created->Map);
    EXPECT_EQ(Loaded->VeskoMap, Created->VeskoMap);
    EXPECT_EQ(Fresh.LoadObject("/Game/CustomMaps/SVR_Bay/definition.definition"), Loaded) << "one object per asset";
}

TEST_F(JsonDefinitionsTest, UnknownMountsMismatchedObjectNamesAndBrokenFilesLoadNothing)
{
    EXPECT_EQ(Definitions.CreateDefinition("/UGC404/definition", EModType::Mod), nullptr);
    EXPECT_EQ(Definitions.LoadObject("/UGC404/definition.definition"), nullptr);
    EXPECT_EQ(Definitions.LoadObject("/Game/CustomMaps/SVR_Bay/definition.other"), nullptr);
    WriteTextFile(Layout.ProjectDir + "/Content/Broken/definition.json", "{ \"Class\": \"Kelvor_Map\", ");
    EXPECT_EQ(Definitions.LoadObject("/Game/Broken/definition.definition"), nullptr);
    WriteTextFile(Layout.ProjectDir + "/Content/Alien/definition.json", "{ \"Class\": \"Something_Else\" }");
    EXPECT_EQ(Definitions.LoadObject("/Game/Alien/definition.definition"), nullptr);
}

TEST_F(JsonDefinitionsTest, DirtyPackagesAreWrittenOnlyWhenSaved)
{
    std::shared_ptr<FKelvorDefinition> Created = Definitions.CreateDefinition("/Game/CustomMaps/SVR_Pier/definition", EModType::Map);
    ASSERT_NE(Created, nullptr);
    Definitions.MarkPackageDirty(*Created);
    const std::string File = Layout.ProjectDir + "/Content/CustomMaps/SVR_Pier/definition.json";
    EXPECT_FALSE(fs::exists(File));
    bool bAllSaved = false;
    EXPECT_EQ(Definitions.SaveDirtyPackages(bAllSaved), std::vector<std::string>{Definitions.PackageFilePath(Created->PackageName)});
    EXPECT_TRUE(bAllSaved);
    EXPECT_TRUE(fs::exists(File));
    EXPECT_TRUE(Definitions.SaveDirtyPackages(bAllSaved).empty());
}

TEST_F(JsonDefinitionsTest, AUGCPluginMadeFromTheTemplateHoldsItsSavedDefinition)
{
    FFakePlatform& Fakes = Project.Fakes;
    FMaptornPlatform& Platform = *Project.Platform;
    FModioInterface Client(Platform, FMaptornConfig{});

    ASSERT_TRUE(CreateUGCPlugin(Platform, Client, "31", EModType::Mod));

    EXPECT_TRUE(fs::exists(Layout.ProjectDir + "/Plugins/UGC31/Content/definition.json"));
    FJsonDefinitions Fresh(Engine);
    FMaptornPlatform FreshPlatform{Fakes.Log, Fakes.Dialogs, Engine, Fresh, Fakes.Processes, Fakes.Tasks, Fakes.Http, Fakes.Archive, nullptr};
    std::shared_ptr<FKelvorDefinition> Loaded = LoadModDefinition(FreshPlatform, "31", EModType::Mod);
    ASSERT_NE(Loaded, nullptr);
    EXPECT_EQ(Loaded->Label, "UGC31");
}
