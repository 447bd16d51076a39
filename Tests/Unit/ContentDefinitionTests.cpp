#include "Content/ModDefinitions.h"
#include "Content/SVRInterface.h"
#include "Modio/ModioInterface.h"
#include "Support/FakePlatform.h"
#include "Support/TempDir.h"

#include <gtest/gtest.h>

#include <filesystem>

using namespace Maptorn;
using namespace Maptorn::Testing;
namespace fs = std::filesystem;

namespace
{
class ContentDefinitions : public ::testing::Test
{
protected:
    ContentDefinitions() { Fakes.Engine.Project = Temp.Dir(); }

    fs::path CustomMaps() const { return Temp.Path() / "Content/CustomMaps"; }

    FTempDir Temp;
    FFakePlatform Fakes;
};
}

TEST_F(ContentDefinitions, AFolderContainingUGCAnywhereIsAUGCMapAndLosesItsFirstThreeCharacters)
{
    // Containment, not a prefix, decides; the id is always the name minus three characters,
    // wherever "UGC" stood: "MyUGCMap" gives "GCMap".
    fs::create_directories(CustomMaps() / "MyUGCMap");
    FSVRInterface SVR(Fakes.Platform);
    EXPECT_TRUE(SVR.bIsUGC);
    EXPECT_EQ(SVR.Id, "GCMap");
    EXPECT_TRUE(Fakes.Log.Has("MaptornLog", ELogVerbosity::Log, "Loaded UGC ID:GCMap"));
    EXPECT_TRUE(Fakes.Log.Has("MaptornLog", ELogVerbosity::Log, "Visiting " + (CustomMaps() / "MyUGCMap").generic_string()));
}

TEST_F(ContentDefinitions, AUGCPrefixedFolderGivesTheModId)
{
    fs::create_directories(CustomMaps() / "ugc4711");
    FSVRInterface SVR(Fakes.Platform);
    EXPECT_TRUE(SVR.bIsUGC);
    EXPECT_EQ(SVR.Id, "4711");
}

TEST_F(ContentDefinitions, AnSVRFolderLosesItsPrefixAndFilesAreVisitedButIgnored)
{
    WriteTextFile(CustomMaps() / "UGC_notes.txt", "a file, not a folder");
    fs::create_directories(CustomMaps() / "SVR_Forest");
    FSVRInterface SVR(Fakes.Platform);
    EXPECT_FALSE(SVR.bIsUGC);
    EXPECT_EQ(SVR.Id, "Forest");
    EXPECT_TRUE(Fakes.Log.Has("MaptornLog", ELogVerbosity::Log, "Loaded SVR ID:Forest"));
    EXPECT_EQ(Fakes.Log.CountMessage("Visiting " + (CustomMaps() / "UGC_notes.txt").generic_string()), 1);
}

TEST_F(ContentDefinitions, TheFirstMapFolderTheWalkMeetsWins)
{
    fs::create_directories(CustomMaps() / "UGC42");
    fs::create_directories(CustomMaps() / "SVR_Desert");
    const std::string First = fs::directory_iterator(CustomMaps())->path().filename().string();

    FSVRInterface SVR(Fakes.Platform);
    EXPECT_EQ(SVR.Id, First == "UGC42" ? "42" : "Desert");
    EXPECT_EQ(SVR.bIsUGC, First == "UGC42");
}

TEST_F(ContentDefinitions, AProjectWithoutMapFoldersHasNoId)
{
    fs::create_directories(CustomMaps() / "Textures");
    FSVRInterface SVR(Fakes.Platform);
    EXPECT_EQ(SVR.Id, "");
    EXPECT_EQ(SVR.GetMapDefinition(), nullptr);
}

TEST_F(ContentDefinitions, MapNamesOfThreeToThirtyTwoCharactersAreAccepted)
{
    for (const std::string& Name : {std::string(3, 'a'), std::string(32, 'b')})
    {
        FFakePlatform Fresh;
        Fresh.Engine.Project = Temp.Dir();
        FSVRInterface SVR(Fresh.Platform);
        SVR.MapName = Name;
        const std::string Id = "Id" + std::to_string(Name.size());
        ASSERT_TRUE(SVR.CreateMapDefinition(Id)) << Name;
        EXPECT_TRUE(Fresh.Dialogs.MessageBoxes.empty());
        EXPECT_EQ(SVR.Id, Id);
        EXPECT_TRUE(fs::is_directory(CustomMaps() / ("SVR_" + Id)));
        std::shared_ptr<FKelvorDefinition> Definition = SVR.GetMapDefinition();
        ASSERT_NE(Definition, nullptr);
        EXPECT_EQ(Definition->Label, "SVR_" + Id);
        EXPECT_EQ(Definition->PackageName, "/Game/CustomMaps/SVR_" + Id + "/definition");
        EXPECT_EQ(Fresh.Definitions.DirtyPackages, std::vector<std::string>{Definition->PackageName});
        EXPECT_TRUE(Fresh.Log.Has("MaptornLog", ELogVerbosity::Log, "Creating map folder for id " + Id));
    }
}

TEST_F(ContentDefinitions, MapNamesOfTwoOrThirtyThreeCharactersAreRefusedWithoutTouchingTheProject)
{
    for (const std::string& Name : {std::string(2, 'a'), std::string(33, 'b'), std::string("\xC3\x85\xC3\x85")})
    {
        FFakePlatform Fresh;
        Fresh.Engine.Project = Temp.Dir();
        FSVRInterface SVR(Fresh.Platform);
        SVR.MapName = Name;
        EXPECT_FALSE(SVR.CreateMapDefinition("Refused"));
        ASSERT_EQ(Fresh.Dialogs.MessageBoxes.size(), 1u);
        EXPECT_EQ(Fresh.Dialogs.MessageBoxes[0].Text, "The map name needs to be 3-32 characters long");
        EXPECT_EQ(Fresh.Dialogs.MessageBoxes[0].Caption, "Error");
        EXPECT_EQ(SVR.Id, "");
        EXPECT_TRUE(Fresh.Definitions.Objects.empty());
        EXPECT_FALSE(fs::exists(CustomMaps() / "SVR_Refused"));
    }
}

TEST_F(ContentDefinitions, ASecondMapDefinitionIsRefused)
{
    FSVRInterface SVR(Fakes.Platform);
    SVR.MapName = "Forest";
    ASSERT_TRUE(SVR.CreateMapDefinition("One"));
    EXPECT_FALSE(SVR.CreateMapDefinition("Two"));
    EXPECT_TRUE(Fakes.Log.Has("MaptornLog", ELogVerbosity::Error, "Cannot create a Definition file one already exists in this project!"));
    EXPECT_EQ(SVR.Id, "One");
}

TEST_F(ContentDefinitions, AMapFolderWhoseDefinitionIsNotAMapHasNoMapDefinition)
{
    fs::create_directories(CustomMaps() / "SVR_Odd");
    Fakes.Definitions.Add("/Game/CustomMaps/SVR_Odd/definition", EModType::Mod);
    FSVRInterface SVR(Fakes.Platform);
    EXPECT_EQ(SVR.Id, "Odd");
    EXPECT_EQ(SVR.GetMapDefinition(), nullptr);
}

TEST_F(ContentDefinitions, AModDefinitionIsReturnedOnlyForItsOwnKind)
{
    Fakes.Definitions.Add("/UGC7/definition", EModType::GameMode);
    EXPECT_NE(LoadModDefinition(Fakes.Platform, "7", EModType::GameMode), nullptr);
    EXPECT_EQ(LoadModDefinition(Fakes.Platform, "7", EModType::Map), nullptr);
    EXPECT_EQ(LoadModDefinition(Fakes.Platform, "8", EModType::GameMode), nullptr);
    EXPECT_TRUE(Fakes.Log.Lines.empty()) << "quiet lookups";
}

TEST_F(ContentDefinitions, AUGCPluginIsCreatedFromTheContentOnlyTemplateWithItsDefinitionSaved)
{
    FPluginInfo PluginBrowser;
    PluginBrowser.Name = "PluginBrowser";
    PluginBrowser.BaseDir = "/engine/Engine/Plugins/Editor/PluginBrowser";
    Fakes.Engine.Plugins.push_back(PluginBrowser);
    FModioInterface Client(Fakes.Platform, FMaptornConfig{});

    ASSERT_TRUE(CreateUGCPlugin(Fakes.Platform, Client, "123", EModType::GameMode));

    ASSERT_EQ(Fakes.Engine.CreatedPlugins.size(), 1u);
    const FFakeEngine::FCreatedPlugin& Created = Fakes.Engine.CreatedPlugins[0];
    EXPECT_EQ(Created.Name, "UGC123");
    EXPECT_EQ(Created.ParentDir, Temp.Dir() + "Plugins/");
    EXPECT_EQ(Created.TemplateDir, "/engine/Engine/Plugins/Editor/PluginBrowser/Templates/ContentOnly");
    EXPECT_TRUE(Created.Descriptor.bCanContainContent);
    EXPECT_EQ(Client.CreatedMods.at("123").Name, "UGC123");

    std::shared_ptr<FKelvorDefinition> Definition = LoadModDefinition(Fakes.Platform, "123", EModType::GameMode);
    ASSERT_NE(Definition, nullptr);
    EXPECT_EQ(Definition->Label, "UGC123");
    EXPECT_EQ(Fakes.Definitions.SavedPackages, std::vector<std::string>{"/UGC123/definition"});
}

TEST_F(ContentDefinitions, AFailedPluginCreationMakesNoDefinitionAndRemembersNothing)
{
    Fakes.Engine.bFailPluginCreation = true;
    FModioInterface Client(Fakes.Platform, FMaptornConfig{});
    EXPECT_FALSE(CreateUGCPlugin(Fakes.Platform, Client, "5", EModType::Map));
    EXPECT_TRUE(Client.CreatedMods.empty());
    EXPECT_TRUE(Fakes.Definitions.Objects.empty());
}
