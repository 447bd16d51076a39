#include "Module/MaptornModule.h"
#include "Support/FakePlatform.h"
#include "Support/TempDir.h"
#include "Workshop/WorkshopController.h"

#include <gtest/gtest.h>

using namespace Maptorn;
using namespace Maptorn::Testing;

namespace
{
FSourceModInfo OwnMod(const std::string& PluginName, EModType Type)
{
    FSourceModInfo Mod;
    Mod.PluginName = PluginName;
    Mod.Name = PluginName + " name";
    Mod.ModType = Type;
    Mod.ProfileUrl = "https://mod.io/g/kelvor/m/" + PluginName;
    return Mod;
}

class WorkshopUpload : public ::testing::Test
{
protected:
    WorkshopUpload()
        : Module(Fakes.Platform, FMaptornConfig{})
    {
        Module.ModioClient = std::make_unique<FModioInterface>(Fakes.Platform, FMaptornConfig{});
        Client = Module.ModioClient.get();
        Client->OwnMods = {OwnMod("UGC11", EModType::Map), OwnMod("UGC12", EModType::Mod), OwnMod("UGC13", EModType::GameMode)};
        Controller = std::make_unique<FWorkshopController>();
    }

    FFakePlatform Fakes;
    FMaptornModule Module;
    FModioInterface* Client = nullptr;
    std::unique_ptr<FWorkshopController> Controller;
};
}

TEST_F(WorkshopUpload, ChoosingAMapClearsShareModAssetsAndAContentModKeepsIt)
{
    Client->bShareSource = true;
    Controller->OnSelectUploadModClicked("12");
    EXPECT_EQ(Client->SelectedModId, "12");
    EXPECT_TRUE(Client->bShareSource);

    Controller->OnSelectUploadModClicked("11");
    EXPECT_EQ(Client->SelectedModId, "11");
    EXPECT_FALSE(Client->bShareSource);

    Client->bShareSource = true;
    Controller->OnSelectUploadModClicked("99");
    EXPECT_FALSE(Client->bShareSource);
}

TEST_F(WorkshopUpload, TheSelectionComboChoosesTheModAndAnEmptyChoiceClearsIt)
{
    Controller->OnUploadSelectionChanged("13");
    EXPECT_EQ(Controller->GetUploadSelectionText(), "13");
    EXPECT_EQ(Controller->GetModId(), "13");

    Controller->OnUploadSelectionChanged("");
    EXPECT_EQ(Client->SelectedModId, "");
    EXPECT_EQ(Controller->GetModId(), "");
    EXPECT_EQ(Controller->GetUploadSelectionText(), "");
}

TEST_F(WorkshopUpload, UploadModStaysHiddenUntilAPlatformOrSharingIsChosen)
{
    Controller->OnSelectUploadModClicked("12");
    EXPECT_EQ(Controller->GetUploadModVisibility(), EVisibility::Hidden);

    Controller->OnModioBuildAndroidStateChanged(ECheckBoxState::Checked);
    EXPECT_EQ(Controller->GetUploadModVisibility(), EVisibility::Visible);
    Controller->OnModioBuildAndroidStateChanged(ECheckBoxState::Unchecked);

    Controller->OnModioBuildWindowsStateChanged(ECheckBoxState::Checked);
    EXPECT_EQ(Controller->GetUploadModVisibility(), EVisibility::Visible);
    Controller->OnModioBuildWindowsStateChanged(ECheckBoxState::Unchecked);

    Controller->OnModioBuildSourceStateChanged(ECheckBoxState::Checked);
    EXPECT_EQ(Controller->GetUploadModVisibility(), EVisibility::Visible);
}

TEST_F(WorkshopUpload, UploadModNeedsAnIdleClientAndAnOwnModMatchedIgnoringCase)
{
    Client->OwnMods.push_back(OwnMod("ugcAb7", EModType::Mod));
    Client->bBuildWindows = true;
    Controller->OnSelectUploadModClicked("AB7");
    EXPECT_EQ(Controller->GetUploadModVisibility(), EVisibility::Visible);
    EXPECT_TRUE(Controller->CanBuildSource());
    Client->bIsModioBusy = true;
    EXPECT_EQ(Controller->GetUploadModVisibility(), EVisibility::Hidden);

    Client->bIsModioBusy = false;
    Client->OwnMods.pop_back();
    EXPECT_EQ(Controller->GetUploadModVisibility(), EVisibility::Hidden);
    EXPECT_EQ(Controller->GetStageModVisibility(), EVisibility::Hidden);
}

TEST_F(WorkshopUpload, StageModNeedsWindowsAndAnExistingStageFolder)
{
    FTempDir Stage;
    Controller->OnSelectUploadModClicked("11");
    Client->bBuildAndroid = true;
    Client->StageDir = Stage.Dir();
    EXPECT_EQ(Controller->GetStageModVisibility(), EVisibility::Hidden);

    Client->bBuildWindows = true;
    EXPECT_EQ(Controller->GetStageModVisibility(), EVisibility::Visible);

    Client->StageDir = Stage.Dir() + "missing";
    EXPECT_EQ(Controller->GetStageModVisibility(), EVisibility::Hidden);
    Client->StageDir.clear();
    EXPECT_EQ(Controller->GetStageModVisibility(), EVisibility::Hidden);
}

TEST_F(WorkshopUpload, CheckBoxesSetTheirChoiceAndSayWhatChanged)
{
    Controller->OnModioBuildWindowsStateChanged(ECheckBoxState::Checked);
    EXPECT_EQ(Controller->IsWindowsBuild(), ECheckBoxState::Checked);
    EXPECT_TRUE(Fakes.Log.Has(LogCategory::MaptornLog, ELogVerbosity::Log, "Checked windows build"));

    EXPECT_TRUE(Controller->OnModioBuildWindowsStateChanged());
    EXPECT_FALSE(Client->bBuildWindows);
    Controller->OnModioBuildAndroidStateChanged();
    EXPECT_EQ(Controller->IsAndroidBuild(), ECheckBoxState::Checked);

    Controller->OnModioBuildSourceStateChanged(ECheckBoxState::Checked);
    Controller->OnModioBuildSourceStateChanged(ECheckBoxState::Undetermined);
    EXPECT_EQ(Controller->IsSharingSource(), ECheckBoxState::Unchecked);
}

TEST_F(WorkshopUpload, SharingIsOnlyOfferedForContentModsAndTheDefinitionDecidesTheKind)
{
    Controller->OnSelectUploadModClicked("12");
    EXPECT_TRUE(Controller->CanBuildSource());
    EXPECT_EQ(Controller->GetSourceBuildText(),
        "You must have the rights to share the assets inside your plugin folder. This will upload your plugin for other modders to use on mod.io");

    Controller->OnSelectUploadModClicked("11");
    EXPECT_FALSE(Controller->CanBuildSource());
    EXPECT_EQ(Controller->GetSourceBuildText(), "Cannot distribute Maps or GameModes, this feature is for Content Mods.");

    // UGC11 is listed as a map; its definition says otherwise and is read again each time.
    const std::shared_ptr<FKelvorDefinition> Definition = Fakes.Definitions.Add("/UGC11/definition", EModType::Mod);
    Controller->OnSelectUploadModClicked("11");
    EXPECT_NE(Controller->GetSourceBuildText().find("You must have the rights"), std::string::npos);

    Definition->Class = EModType::Map;
    EXPECT_EQ(Controller->GetSourceBuildText(), "Cannot distribute Maps or GameModes, this feature is for Content Mods.");
}

// Picking a folder that is gone, or cancelling the picker, keeps the stage folder as it was.
TEST_F(WorkshopUpload, AMissingOrCancelledStageFolderChangesNothing)
{
    FTempDir Stage;
    Fakes.Dialogs.NextPickedPath = Stage.Dir() + "missing";
    EXPECT_TRUE(Controller->SelectStageDir());
    EXPECT_EQ(Client->StageDir, "");
    ASSERT_EQ(Fakes.Dialogs.FileDialogs.size(), 1u);
    EXPECT_EQ(Fakes.Dialogs.FileDialogs[0].Title, "Select your Steam Kelvor folder");
    Client->StageDir = Stage.Dir();
    Fakes.Dialogs.NextPickedPath.reset();
    Controller->SelectStageDir();
    EXPECT_EQ(Client->StageDir, Stage.Dir());
}

TEST_F(WorkshopUpload, ProgressReadsPackagingUntilTheUploadStartsThenNamesTheStepTheTotalAndTheWholePercent)
{
    Client->bIsModioBusy = true;
    EXPECT_EQ(Controller->GetModUploadProgressVisibility(), EVisibility::Hidden);
    EXPECT_EQ(Controller->GetBuildProgressText(), "Packaging...");
    Client->UploadProgress = 0.5f;
    EXPECT_EQ(Controller->GetBuildProgress(), std::optional<float>(0.0f));

    Client->bIsUploading = true;
    EXPECT_EQ(Controller->GetModUploadProgressVisibility(), EVisibility::Visible);
    EXPECT_EQ(Controller->GetBuildProgress(), std::optional<float>(0.5f));

    Client->StepsTotal = 3;
    Client->StepsQueued = 2;
    Client->StepOffset = 0;
    Client->UploadProgress = 0.29f;
    EXPECT_EQ(Controller->GetBuildProgressText(), "Uploading 2/3 - 29%");

    Client->bCompressing = true;
    Client->StepsQueued = 1;
    Client->UploadProgress = 0.057f;
    EXPECT_EQ(Controller->GetBuildProgressText(), "Compressing 3/3 - 5%");
}

TEST_F(WorkshopUpload, ARowOutlivingItsWindowChoosesNothing)
{
    Controller->RefreshUploadModList();
    const FWorkshopUploadEntry Row = Controller->GetUploadRows()[0];
    Controller.reset();
    Row.OnModButtonClicked();
    EXPECT_EQ(Client->SelectedModId, "");
    Client->OnUploadListUpdated.Broadcast();
}

TEST_F(WorkshopUpload, ARowsButtonChoosesItsModWithoutThePrefixAndTheChosenRowIsGreenIgnoringCase)
{
    Client->OwnMods.push_back(OwnMod("ugcab", EModType::Mod));
    Controller->RefreshUploadModList();
    const std::vector<FWorkshopUploadEntry>& Rows = Controller->GetUploadRows();
    const FWorkshopColor Dark = FWorkshopColor::FromHex("151515FF");
    EXPECT_EQ(Rows[3].GetSelectColor(), Dark);
    EXPECT_TRUE(Rows[3].OnModButtonClicked());
    EXPECT_EQ(Client->SelectedModId, "ab");

    Controller->OnSelectUploadModClicked("AB");
    EXPECT_EQ(Rows[3].GetSelectColor(), (FWorkshopColor{0, 255, 0, 255}));
    EXPECT_EQ(Rows[0].GetSelectColor(), Dark);

    Module.ModioClient.reset();
    EXPECT_EQ(Rows[3].GetSelectColor(), Dark);
}

TEST_F(WorkshopUpload, ARowOpensItsModPageAndItsButtonIsUsableOnlyWhileTheClientIsIdle)
{
    Controller->RefreshUploadModList();
    const FWorkshopUploadEntry Row = Controller->GetUploadRows()[1];
    EXPECT_TRUE(Row.OnOpenModPageClicked());
    EXPECT_EQ(Fakes.Dialogs.OpenedUrls, std::vector<std::string>{"https://mod.io/g/kelvor/m/UGC12"});
    EXPECT_TRUE(Row.IsButtonEnabled());
    Client->bIsModioBusy = true;
    EXPECT_FALSE(Row.IsButtonEnabled());
    Module.ModioClient.reset();
    EXPECT_FALSE(Row.IsButtonEnabled());
}

TEST_F(WorkshopUpload, ModIdItemsAreRebuiltOnlyWhenTheirNumberChanges)
{
    EXPECT_EQ(Controller->GetModIds(), (std::vector<std::string>{"11", "12", "13"}));

    Client->OwnMods[0].PluginName = "UGC31";
    EXPECT_EQ(Controller->GetModIds()[0], "11");

    Client->OwnMods.pop_back();
    EXPECT_EQ(Controller->GetModIds(), (std::vector<std::string>{"31", "12"}));
}
