// The editor's definitions adapter on the surface's object system: what a modder edits in the
// details panel survives the workshop's loads and saves.

#include "Platform/EngineDefinitions.h"

#include "EditorEngine/SurfaceObjects.h"
#include "EditorEngine/SurfaceTestState.h"

#include "Kelvor_Map.h"
#include "Kelvor_Mod.h"
#include "UObject/Package.h"
#include "UObject/UObjectGlobals.h"

#include <gtest/gtest.h>

namespace
{
class EditorDefinitions : public ::testing::Test
{
protected:
	void SetUp() override { SurfaceTestState::Reset(); }
	void TearDown() override { SurfaceObjects::UnloadPackage(TEXT("/UGC12/definition")); }

	UKelvor_Map* Asset() { return LoadObject<UKelvor_Map>(nullptr, TEXT("/UGC12/definition.definition")); }

	FEngineDefinitions Definitions;
};

TEST_F(EditorDefinitions, AnEditMadeBetweenTwoLoadsIsSeenAndKeptBySaves)
{
	const auto Created = Definitions.CreateDefinition("/UGC12/definition", Maptorn::EModType::Map);
	ASSERT_TRUE(Created);
	Created->Label = "UGC12";
	ASSERT_TRUE(Definitions.SavePackage(*Created));

	// The modder names the map in the details panel after the workshop read it.
	Asset()->MapLabel = FText::FromString(TEXT("Arena Night"));
	const auto Loaded = Definitions.LoadObject("/UGC12/definition.definition");
	ASSERT_EQ(Loaded, Created);
	EXPECT_EQ(Loaded->DisplayName, "Arena Night");
	EXPECT_EQ(Loaded->Label, "UGC12");

	// Edited again while the workshop holds the definition: its save writes only what it changed.
	Asset()->MapLabel = FText::FromString(TEXT("Arena Dawn"));
	Loaded->Version = 4;
	ASSERT_TRUE(Definitions.SavePackage(*Loaded));
	EXPECT_EQ(Asset()->Version, 4);
	EXPECT_TRUE(Asset()->MapLabel.ToString().Equals(TEXT("Arena Dawn")));
	EXPECT_TRUE(Asset()->Id.Equals(TEXT("UGC12")));
	EXPECT_EQ(SurfaceTestState::Get().SavedPackages, (std::vector<std::string>{"/UGC12/definition", "/UGC12/definition"}));
}

TEST_F(EditorDefinitions, AChangeTheWorkshopHasNotWrittenSurvivesALoad)
{
	const auto Definition = Definitions.CreateDefinition("/UGC12/definition", Maptorn::EModType::Map);
	ASSERT_TRUE(Definition);
	Definition->Map = "/UGC12/Maps/Arena.Arena";
	Asset()->Version = 7;

	Definitions.LoadObject("/UGC12/definition.definition");
	EXPECT_EQ(Definition->Map, "/UGC12/Maps/Arena.Arena");
	EXPECT_EQ(Definition->Version, 7);

	Definitions.MarkPackageDirty(*Definition);
	EXPECT_TRUE(Asset()->Map.ToSoftObjectPath().ToString().Equals(TEXT("/UGC12/Maps/Arena.Arena")));
	EXPECT_TRUE(Asset()->GetPackage()->IsDirty());
}

TEST_F(EditorDefinitions, WrongKindsAndMissingAssetsGiveNothing)
{
	ASSERT_TRUE(Definitions.CreateDefinition("/UGC12/definition", Maptorn::EModType::Map));
	EXPECT_FALSE(Definitions.CreateDefinition("/UGC12/definition", Maptorn::EModType::Mod)) << "a map is not a content mod";
	EXPECT_FALSE(Definitions.CreateDefinition("UGC12/definition", Maptorn::EModType::Map)) << "not a long package name";
	EXPECT_FALSE(Definitions.LoadObject("/UGC13/definition.definition"));

	const auto Definition = Definitions.LoadObject("/UGC12/definition.definition");
	ASSERT_TRUE(Definition);
	EXPECT_EQ(Definition->Class, Maptorn::EModType::Map);
	SurfaceObjects::UnloadPackage(TEXT("/UGC12/definition"));
	Definition->Version = 2;
	EXPECT_FALSE(Definitions.SavePackage(*Definition)) << "the asset is gone: nothing to save";
}
}
