#include "Module/MaptornModule.h"
#include "Support/FakePlatform.h"
#include "Support/TempDir.h"
#include "Workshop/WorkshopController.h"

#include <gtest/gtest.h>

using namespace Maptorn;
using namespace Maptorn::Testing;

namespace
{
class WorkshopDeploy : public ::testing::Test
{
protected:
    WorkshopDeploy()
        : Module(Fakes.Platform, FMaptornConfig{})
    {
        Fakes.Engine.Project = Project.Dir();
        Module.ModioClient = std::make_unique<FModioInterface>(Fakes.Platform, FMaptornConfig{});
        Module.SVR = std::make_unique<FSVRInterface>(Fakes.Platform);
        Module.SVR->Id = "arena";
    }

    std::shared_ptr<FKelvorDefinition> AddMapDefinition()
    {
        std::shared_ptr<FKelvorDefinition> Definition = Fakes.Definitions.Add("/Game/CustomMaps/SVR_arena/definition", EModType::Map);
        Definition->Label = "SVR_arena";
        Definition->Map = "/Game/CustomMaps/SVR_arena/Arena.Arena";
        return Definition;
    }

    void ReadyToStage()
    {
        Module.InstallDir = "C:/Games/Kelvor";
        Module.SteamUGC = std::make_unique<FSteamWorkshopDeploy>();
    }

    bool HasError(const std::string& Message) const { return Fakes.Log.Has(LogCategory::MaptornLog, ELogVerbosity::Error, Message); }

    FTempDir Project;
    FFakePlatform Fakes;
    FMaptornModule Module;
    FWorkshopController Controller;
};
}

TEST_F(WorkshopDeploy, StageIsRefusedWhileBusyThenWithoutAnInstallThenWithoutSteam)
{
    Module.bBusy = true;
    ReadyToStage();
    EXPECT_TRUE(Controller.StageButtonClicked());
    EXPECT_TRUE(HasError("Busy! can't stage at this time"));
    EXPECT_TRUE(Module.bBusy);

    Module.bBusy = false;
    Module.InstallDir.clear();
    Controller.StageButtonClicked();
    EXPECT_TRUE(HasError("Kelvor installation not found, can't stage"));
    EXPECT_EQ(Controller.GetInstallDirText(), "Kelvor installation not found, can't stage") << "the window says so before a click";

    Module.InstallDir = "C:/Games/Kelvor";
    EXPECT_EQ(Controller.GetInstallDirText(), "Kelvor install: C:/Games/Kelvor");
    Module.SteamUGC.reset();
    Controller.StageButtonClicked();
    EXPECT_TRUE(HasError("Cannot stage Android only mods, must have a valid UGC/have steam running to stage"));

    EXPECT_EQ(Fakes.Log.Lines.size(), 3u);
    EXPECT_FALSE(Module.bBusy);
    EXPECT_TRUE(Fakes.Tasks.BackgroundQueue.empty());
}

TEST_F(WorkshopDeploy, AStageWithoutAMapCooksNothingAndAFailedCookStillEndsIdle)
{
    ReadyToStage();
    Controller.StageButtonClicked();
    Fakes.Tasks.RunBackground();
    EXPECT_TRUE(Fakes.Processes.Calls.empty());
    EXPECT_TRUE(HasError("Please specify a map in the Definition file!"));
    EXPECT_FALSE(Module.bBusy);

    AddMapDefinition();
    Fakes.Processes.ReturnCode = 1;
    Controller.StageButtonClicked();
    Fakes.Tasks.RunBackground();
    EXPECT_FALSE(Module.bBusy);
    EXPECT_TRUE(HasError("Cooked content is needed for staging!"));
}

TEST_F(WorkshopDeploy, DeployNeedsADefinitionAndRefusesSteamMaps)
{
    Controller.SubmitVeskoClicked();
    ASSERT_EQ(Fakes.Dialogs.MessageBoxes.size(), 1u);
    EXPECT_EQ(Fakes.Dialogs.MessageBoxes[0].Text, "You need to create a definition before you can deploy!");
    EXPECT_EQ(Fakes.Dialogs.MessageBoxes[0].Caption, "Kelvor Build");
    EXPECT_TRUE(HasError("You need to create a definition before you can deploy!"));

    Module.SVR.reset();
    Module.SteamUGC = std::make_unique<FSteamWorkshopDeploy>();
    EXPECT_TRUE(Controller.SubmitVeskoClicked());
    ASSERT_EQ(Fakes.Dialogs.MessageBoxes.size(), 2u);
    EXPECT_EQ(Fakes.Dialogs.MessageBoxes[1].Text, "You can't deploy Steam UGC as server maps!");
    EXPECT_EQ(Fakes.Dialogs.MessageBoxes[1].Caption, "Kelvor Build");
    EXPECT_FALSE(Module.bBusy);
    EXPECT_TRUE(Fakes.Tasks.BackgroundQueue.empty());
}

TEST_F(WorkshopDeploy, DeployIsRefusedWhileBusy)
{
    AddMapDefinition();
    Module.bBusy = true;
    Controller.SubmitVeskoClicked();
    EXPECT_TRUE(HasError("Busy! can't deploy at this time"));
    EXPECT_TRUE(Fakes.Tasks.BackgroundQueue.empty());
}

TEST_F(WorkshopDeploy, TheTypedMapNameIsKeptAsAFileNameWithUnderscores)
{
    Controller.OnMapNameTextChanged("My map v2.final?");
    EXPECT_EQ(Module.SVR->MapName, "My_map_v2_final");
}
