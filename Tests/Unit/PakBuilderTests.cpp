#include "Build/PakBuilder.h"
#include "Common/JsonWriter.h"
#include "Support/FakePlatform.h"
#include "Support/TempDir.h"

#include <gtest/gtest.h>

#include <filesystem>

using namespace Maptorn;
using namespace Maptorn::Testing;
namespace fs = std::filesystem;

namespace
{
const std::string PakTool = "\"/engine/Engine/Binaries/Win64/UnrealPak.exe\"";

class PakBuilderTest : public ::testing::Test
{
protected:
    PakBuilderTest()
    {
        Fakes.Engine.Project = Temp.Dir();
        Fakes.Engine.BaseDir = Temp.Dir();
    }

    std::string Saved() const { return Temp.Dir() + "Saved/"; }
    std::string CookedFile(const std::string& Platform, const std::string& Relative) const
    {
        return Saved() + "Cooked/" + Platform + "/UGC12/" + Relative;
    }
    void Cook(const std::string& Platform, const std::string& Relative, const std::string& Bytes)
    {
        WriteTextFile(CookedFile(Platform, Relative), Bytes);
    }
    std::string OutputDir() const { return Temp.Dir() + "Workshop/12"; }
    std::string PakList() const { return ReadTextFile(Saved() + "custommap_paklist.txt"); }
    std::string Metadata() const { return ReadTextFile(OutputDir() + "/metadata.json"); }

    bool Build(const std::string& Platform = "Windows")
    {
        return BuildPak(Fakes.Platform, "12", Platform, OutputDir(), PakSize);
    }

    FTempDir Temp;
    FFakePlatform Fakes;
    int64 PakSize = 0;
};

std::string PrettyLines(std::initializer_list<std::string> Lines)
{
    std::string Text;
    for (const std::string& Line : Lines)
    {
        Text += (Text.empty() ? "" : std::string(Json::PlatformLineTerminator)) + Line;
    }
    return Text;
}
}

TEST_F(PakBuilderTest, EachCookedFileIsListedQuotedUnderTheMapMountInPathOrderWithCrLf)
{
    Fakes.Definitions.Add("/UGC12/definition", EModType::Map);
    Cook("Windows", "Maps/Arena Night.umap", "map");
    Cook("Windows", "AssetRegistry.bin", "registry");
    Cook("Windows", "Maps/Arena Night.uexp", "exports");

    EXPECT_TRUE(Build());

    EXPECT_EQ(PakList(),
        "\"" + CookedFile("Windows", "AssetRegistry.bin") + "\" \"../../../UGCCustomMaps/AssetRegistry.bin\"\r\n"
        "\"" + CookedFile("Windows", "Maps/Arena Night.uexp") + "\" \"../../../UGCCustomMaps/Maps/Arena Night.uexp\"\r\n"
        "\"" + CookedFile("Windows", "Maps/Arena Night.umap") + "\" \"../../../UGCCustomMaps/Maps/Arena Night.umap\"\r\n");
    EXPECT_TRUE(Fakes.Log.Has("LogTemp", ELogVerbosity::Log, "Adding to paklist Maps/Arena Night.umap"));
    EXPECT_TRUE(Fakes.Log.Has("LogTemp", ELogVerbosity::Log, "Adding to paklist AssetRegistry.bin"));
}

TEST_F(PakBuilderTest, ThePakToolIsTheEnginesQuotedUnrealPakGivenThePakTheListAndThePlatform)
{
    Fakes.Definitions.Add("/UGC12/definition", EModType::Map);
    Cook("Windows", "Maps/Arena.umap", "map");

    Build();

    ASSERT_EQ(Fakes.Processes.Calls.size(), 1u);
    EXPECT_EQ(Fakes.Processes.Calls[0].first, PakTool);
    EXPECT_EQ(Fakes.Processes.Calls[0].second,
        "\"" + OutputDir() + "/UGC12.pak\" -create=\"" + Saved() + "custommap_paklist.txt\" "
        "-platform=\"Windows\" -UTF8Output -multiprocess -patchpaddingalign=2048");
}

TEST_F(PakBuilderTest, ARelativeSavedFolderIsMadeAbsoluteAgainstTheBaseFolder)
{
    Fakes.Engine.BaseDir = Temp.Dir() + "Engine/Binaries/Win64/";
    Fakes.Engine.Project = "../../../";
    Fakes.Definitions.Add("/UGC12/definition", EModType::Map);
    Cook("Windows", "Maps/Arena.umap", "map");

    Build();

    EXPECT_EQ(PakList(), "\"" + CookedFile("Windows", "Maps/Arena.umap") + "\" \"../../../UGCCustomMaps/Maps/Arena.umap\"\r\n");
    ASSERT_EQ(Fakes.Processes.Calls.size(), 1u);
    EXPECT_NE(Fakes.Processes.Calls[0].second.find("-create=\"" + Saved() + "custommap_paklist.txt\""), std::string::npos);
}

TEST_F(PakBuilderTest, TheDefinitionsKindChoosesTheMountAndTheMetadataType)
{
    Fakes.Definitions.Add("/UGC12/definition", EModType::GameMode);
    Cook("Windows", "Logic.uasset", "logic");

    Build();

    EXPECT_EQ(PakList(), "\"" + CookedFile("Windows", "Logic.uasset") + "\" \"../../../UGCCustomGameModes/Logic.uasset\"\r\n");
    EXPECT_EQ(Metadata(), PrettyLines({"{", "\t\"EngineVersion\": \"5.1.1\",", "\t\"ModType\": 2", "}"}));
}

TEST_F(PakBuilderTest, TheMountPointNamesTheContentFolderOfTheTypeAndNeverTheModId)
{
    EXPECT_EQ(MakePakMountPoint(0, "12"), "../../../UGCCustomMaps");
    EXPECT_EQ(MakePakMountPoint(1, "12"), "../../../UGCCustomMods");
    EXPECT_EQ(MakePakMountPoint(2, "12"), "../../../UGCCustomGameModes");
    EXPECT_EQ(MakePakMountPoint(7, "12"), "../../../UGC");
}

TEST_F(PakBuilderTest, APlatformNameInLowerCaseReadsItsOwnCookedFolderButPaksForWindows)
{
    EXPECT_EQ(PakPlatformFor("android_astc"), "Android_ASTC");
    EXPECT_EQ(PakPlatformFor("LinuxServer"), "Linux");
    EXPECT_EQ(PakPlatformFor("WindowsClient"), "Linux");

    Fakes.Definitions.Add("/UGC12/definition", EModType::Map);
    Cook("windows", "Maps/Arena.umap", "map");

    Build("windows");

    EXPECT_EQ(PakList(), "\"" + CookedFile("windows", "Maps/Arena.umap") + "\" \"../../../UGCCustomMaps/Maps/Arena.umap\"\r\n");
    ASSERT_EQ(Fakes.Processes.Calls.size(), 1u);
    EXPECT_NE(Fakes.Processes.Calls[0].second.find(" -platform=\"Windows\" "), std::string::npos);
}

TEST_F(PakBuilderTest, MetadataCarriesTheVersionBeforeTheDashOnlyWhenItCanBeCut)
{
    EXPECT_EQ(MakePakMetadataJson("5.1.1-23901901+++UE5+Release-5.1", 0),
        PrettyLines({"{", "\t\"EngineVersion\": \"5.1.1\",", "\t\"ModType\": 0", "}"}));
    EXPECT_EQ(MakePakMetadataJson("5.1.1", 1), PrettyLines({"{", "\t\"ModType\": 1", "}"}));
    EXPECT_EQ(MakePakMetadataJson("5.1.1-", 1), PrettyLines({"{", "\t\"ModType\": 1", "}"}));

    Fakes.Definitions.Add("/UGC12/definition", EModType::Mod);
    Fakes.Engine.EngineVersion = "5.1.1";
    Build();
    EXPECT_EQ(Metadata(), PrettyLines({"{", "\t\"ModType\": 1", "}"}));
}

TEST_F(PakBuilderTest, ThePakSizeIsWhatTheToolLeftOrMinusOneWithoutAPak)
{
    Fakes.Definitions.Add("/UGC12/definition", EModType::Map);

    Build();
    EXPECT_EQ(PakSize, -1);

    WriteTextFile(OutputDir() + "/UGC12.pak", std::string(4096, 'P'));
    Build();
    EXPECT_EQ(PakSize, 4096);
}

TEST_F(PakBuilderTest, AToolThatCannotStartIsLoggedWithItsCommandAndMetadataIsStillWritten)
{
    Fakes.Definitions.Add("/UGC12/definition", EModType::Map);
    Fakes.Processes.bStartable = false;
    EXPECT_FALSE(Build());
    ASSERT_EQ(Fakes.Processes.Calls.size(), 1u);
    EXPECT_TRUE(Fakes.Log.Has("LogTemp", ELogVerbosity::Error,
        "Pak command failed: " + PakTool + " " + Fakes.Processes.Calls[0].second));
    EXPECT_EQ(Metadata(), PrettyLines({"{", "\t\"EngineVersion\": \"5.1.1\",", "\t\"ModType\": 0", "}"}));
    EXPECT_EQ(PakSize, -1);
}

TEST_F(PakBuilderTest, AToolThatFailsIsLoggedWithItsCodeAndOutputsAndMetadataIsStillWritten)
{
    Fakes.Definitions.Add("/UGC12/definition", EModType::Map);
    Fakes.Processes.ReturnCode = 3;
    Fakes.Processes.StdOut = "LogPakFile: Display: Collecting files";
    Fakes.Processes.StdErr = "LogPakFile: Error: Failed to create pak";

    EXPECT_FALSE(Build());

    EXPECT_TRUE(Fakes.Log.Has("LogTemp", ELogVerbosity::Error,
        "Pak command returned non-zero value: 3 \nLogPakFile: Display: Collecting files LogPakFile: Error: Failed to create pak"));
    EXPECT_TRUE(fs::exists(OutputDir() + "/metadata.json"));
}

TEST_F(PakBuilderTest, WithoutADefinitionNothingIsRunOrWritten)
{
    Cook("Windows", "Maps/Arena.umap", "map");
    Fakes.Definitions.Add("/UGC99/definition", EModType::Map);

    EXPECT_FALSE(Build());
    EXPECT_FALSE(BuildPak(Fakes.Platform, "../12", "Windows", OutputDir(), PakSize));

    EXPECT_TRUE(Fakes.Processes.Calls.empty());
    EXPECT_FALSE(fs::exists(Saved() + "custommap_paklist.txt"));
    EXPECT_FALSE(fs::exists(OutputDir()));
    for (const FLogLine& Line : Fakes.Log.Lines)
    {
        EXPECT_EQ(Line.Message, "Cannot find Definition for ../12");
    }
}
