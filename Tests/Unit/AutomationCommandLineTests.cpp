#include "Build/AutomationCommandLine.h"
#include "Build/PackageTargets.h"

#include <gtest/gtest.h>

using namespace Maptorn;

namespace
{
FAutomationCommandInputs SampleInputs(uint8 Target)
{
    FAutomationCommandInputs In;
    In.Target = Target;
    In.ProjectDir = "/p/Proj/";
    In.ProjectFile = "/p/Proj/Proj.uproject";
    In.PlatformName = IsVeskoGroup(Target) ? VeskoPlatformName(Target) : PackagePlatformName(Target);
    In.PluginDescriptor = "/p/Proj/Plugins/UGC12/UGC12.uplugin";
    In.PluginName = "UGC12";
    In.ReleaseVersion = ReleaseVersionFor(Target);
    In.StagingDirectory = "/p/Proj/Saved/Cooked/Workshop/UGC12";
    In.StageFlag = "False";
    In.UploaderFlag = "True";
    In.MetadataFile = "/p/Proj/Saved/Cooked/Workshop/UGC12/metadata.json";
    In.StageFolder = StageFolderName(Target);
    In.NeverCookList = "+/UGC9";
    In.MapPackage = "/UGC12/Maps/Arena";
    In.CookDirectory = "/UGC12/";
    return In;
}
}

TEST(AutomationCommandLine, TheWindowsClientRunsTheProjectScriptWithItsFixedFlavourSwitches)
{
    EXPECT_EQ(MakeAutomationCommandLine(SampleInputs(0)),
        " -Compile -ScriptDir=\"/p/Proj/\" KelvorUGCPak -Project=\"/p/Proj/Proj.uproject\" -Platform=\"Windows\" "
        "-PluginPath=\"/p/Proj/Plugins/UGC12/UGC12.uplugin\" -BasedOnReleaseVersion=\"Kelvor_1.0.0\" "
        "-StagingDirectory=\"/p/Proj/Saved/Cooked/Workshop/UGC12\" -CookFlavor=ASTC -BuildFlavor=ASTC -Stage=\"False\" "
        "-ModioUploader=\"True\" -MetaDataPath=\"/p/Proj/Saved/Cooked/Workshop/UGC12/metadata.json\" -PlatformDir=\"Windows\" "
        "-IsCodeBasedProject=False -AdditionalCookerOptions=\"-NeverCookDir=\"/Game+/Maptorn+/JsonUtils+/VRFramework+/modio+/UGC9 \"\" "
        " -Map=\"/UGC12/Maps/Arena\"");
}

TEST(AutomationCommandLine, QuestBuildsTheDlcWithTheAstcFlavour)
{
    EXPECT_EQ(MakeAutomationCommandLine(SampleInputs(10)),
        "BuildCookRun -project=\"/p/Proj/Proj.uproject\" -dlcname=\"UGC12\" -basedonreleaseversion=\"KelvorVesko_1.0.0\" "
        "-StagingDirectory=\"/p/Proj/Saved/Cooked/Workshop/UGC12\" -targetplatform=\"Android\" -DLCIncludeEngineContent "
        "-DLCPakPluginFile -nodebuginfo -noP4 -cook -stage -pak -distribution -cookflavor=\"ASTC\" "
        "-AdditionalCookerOptions=\"-NeverCookDir=\"/Game+/Maptorn+/JsonUtils+/VRFramework+/modio+/UGC9 \"\" -Map=\"/UGC12/Maps/Arena\"");
}

TEST(AutomationCommandLine, ServersGetTheServerSwitchesAndAMaplessPluginCooksItsFolder)
{
    FAutomationCommandInputs Vesko = SampleInputs(1);
    Vesko.MapPackage.clear();
    const std::string VeskoLine = MakeAutomationCommandLine(Vesko);
    EXPECT_NE(VeskoLine.find("-targetplatform=\"Linux\""), std::string::npos);
    EXPECT_NE(VeskoLine.find("-cookflavor=\"\""), std::string::npos);
    EXPECT_TRUE(VeskoLine.ends_with("\"\" -CookDir=\"/UGC12/\" -Server -NoClient")) << VeskoLine;

    const std::string KelvorServer = MakeAutomationCommandLine(SampleInputs(2));
    EXPECT_EQ(KelvorServer.rfind(" -Compile", 0), 0u) << "targets 0 and 2 run the script";
    EXPECT_NE(KelvorServer.find("-PlatformDir=\"LinuxKelServer\""), std::string::npos);
    EXPECT_TRUE(KelvorServer.ends_with(" -Map=\"/UGC12/Maps/Arena\" -Server -NoClient")) << KelvorServer;
    EXPECT_EQ(MakeAutomationCommandLine(SampleInputs(0)).find("-Server"), std::string::npos);
}

TEST(PackageTargets, TheVeskoGroupIsOneThreeAndTen)
{
    for (uint8 Target = 0; Target < 16; ++Target)
    {
        EXPECT_EQ(IsVeskoGroup(Target), Target == 1 || Target == 3 || Target == 10) << int(Target);
    }
    EXPECT_STREQ(ReleaseVersionFor(3), "KelvorVesko_1.0.0");
    EXPECT_STREQ(ReleaseVersionFor(2), "Kelvor_1.0.0");
}

TEST(PackageTargets, NameTablesAnswerEmptyForUnknownTargets)
{
    const std::vector<std::tuple<uint8, std::string, std::string, std::string>> Rows = {
        {0, "Windows", "Windows", "Windows"},
        {1, "Linux", "LinuxServer", "LinuxVeskoServer"},
        {2, "Linux", "LinuxServer", "LinuxKelServer"},
        {3, "Android", "Android_ASTC", "Android_ASTC"},
        {10, "Android", "Android_ASTC", "Android_ASTC"},
        {4, "", "", ""},
    };
    for (const auto& [Target, Platform, Pak, Stage] : Rows)
    {
        EXPECT_EQ(PackagePlatformName(Target), Platform) << int(Target);
        EXPECT_EQ(PakPlatformName(Target), Pak) << int(Target);
        EXPECT_EQ(StageFolderName(Target), Stage) << int(Target);
    }
    for (uint8 Target : {1, 3, 10})
    {
        EXPECT_STREQ(VeskoPlatformName(Target), PackagePlatformName(Target));
    }
    EXPECT_STREQ(ModioFilePlatformName(10), "Oculus");
}
