#include "Platform/IniConfigCache.h"

#include "Support/TempDir.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <thread>
#include <vector>

using namespace Maptorn;
using Maptorn::Testing::FTempDir;
using Maptorn::Testing::ReadTextFile;
using Maptorn::Testing::WriteTextFile;

namespace
{
constexpr const char* Streaming = "/Script/Engine.StreamingSettings";
constexpr const char* EdlKey = "s.EventDrivenLoaderEnabled";

class IniConfigCacheTest : public ::testing::Test
{
protected:
    // Writes Text as the file's exact bytes and answers its path as the cache is given it.
    std::string MakeFile(const std::string& Text, const std::string& Name = "Config/DefaultEngine.ini")
    {
        const std::filesystem::path File = Temp.Path() / Name;
        WriteTextFile(File, Text);
        return File.generic_string();
    }

    // Sets one value, flushes, and answers the bytes on disk.
    std::string SetAndFlush(const std::string& File, const std::string& Section, const std::string& Key,
        const std::string& Value)
    {
        Cache.SetString(Section, Key, Value, File);
        EXPECT_TRUE(Cache.Flush(false, File));
        return ReadTextFile(File);
    }

    FTempDir Temp;
    FIniConfigCache Cache;
};
}

TEST_F(IniConfigCacheTest, SettingAKeyKeepsEveryOtherLineByteForByte)
{
    const std::string Before = "; Project settings\n"
                               "[/Script/EngineSettings.GameMapsSettings]\n"
                               "GameDefaultMap=/Game/Maps/Entry\n"
                               "\n"
                               "[/Script/Engine.StreamingSettings]\n"
                               "# why the loader is off\n"
                               "s.MinBulkDataSizeForAsyncLoading=131072\n"
                               "  s.EventDrivenLoaderEnabled = False\n"
                               "+ExtraPaths=(Path=\"A\")\n"
                               "s.AsyncLoadingThreadEnabled=True\n"
                               "\n"
                               "[Trailing]\n"
                               "Key=Value\n";
    const std::string File = MakeFile(Before);

    // The line keeps its indentation, the file's key spelling and the blanks around "=".
    std::string Expected = Before;
    Expected.replace(Expected.find("= False"), 7, "= True");
    EXPECT_EQ(SetAndFlush(File, "/script/engine.streamingsettings", "S.EVENTDRIVENLOADERENABLED", "True"), Expected);
}

TEST_F(IniConfigCacheTest, AKeyMissingFromItsSectionGoesAfterTheSectionsLastLine)
{
    const std::string File = MakeFile("[/Script/Engine.StreamingSettings]\n"
                                      "; comment\n"
                                      "s.AsyncLoadingThreadEnabled=True\n"
                                      "\n"
                                      "\n"
                                      "[Other]\n"
                                      "s.EventDrivenLoaderEnabled=True\n");

    EXPECT_EQ(SetAndFlush(File, Streaming, EdlKey, "False"), "[/Script/Engine.StreamingSettings]\n"
                                                             "; comment\n"
                                                             "s.AsyncLoadingThreadEnabled=True\n"
                                                             "s.EventDrivenLoaderEnabled=False\n"
                                                             "\n"
                                                             "\n"
                                                             "[Other]\n"
                                                             "s.EventDrivenLoaderEnabled=True\n");
}

TEST_F(IniConfigCacheTest, AMissingSectionIsAppendedAfterOneBlankLine)
{
    const std::string Unterminated = MakeFile("[First]\nA=1", "Unterminated.ini");
    EXPECT_EQ(SetAndFlush(Unterminated, "Second", "B", "2"), "[First]\nA=1\n\n[Second]\nB=2\n");

    // No second blank line when the file already ends with one.
    const std::string EndsBlank = MakeFile("[First]\nA=1\n\n", "EndsBlank.ini");
    EXPECT_EQ(SetAndFlush(EndsBlank, "Second", "B", "2"), "[First]\nA=1\n\n[Second]\nB=2\n");

    const std::string Empty = MakeFile("", "Empty.ini");
    EXPECT_EQ(SetAndFlush(Empty, "Only", "C", "3"), "[Only]\nC=3\n");
}

TEST_F(IniConfigCacheTest, FlushCreatesAMissingFileAndItsFolder)
{
    const std::string File = (Temp.Path() / "Saved/Config/Windows/GameUserSettings.ini").generic_string();
    EXPECT_FALSE(Cache.GetString("S", "K", File).has_value());

    Cache.SetBool("/Script/Kelvor.KelvorGameUserSettings", "bUseMods", true, File);
    ASSERT_TRUE(Cache.Flush(true, File));

    EXPECT_EQ(ReadTextFile(File), "[/Script/Kelvor.KelvorGameUserSettings]\nbUseMods=True\n");
}

TEST_F(IniConfigCacheTest, FlushWithoutChangesLeavesTheFileAlone)
{
    const std::string File = MakeFile("[S]\nK=cached\n");
    ASSERT_EQ(Cache.GetString("S", "K", File), "cached");
    WriteTextFile(File, "[S]\nK=edited elsewhere\n");

    EXPECT_TRUE(Cache.Flush(false, File));
    EXPECT_EQ(ReadTextFile(File), "[S]\nK=edited elsewhere\n");

    // Flushing a file the cache never read creates nothing.
    const std::string Unread = (Temp.Path() / "Never/Read.ini").generic_string();
    EXPECT_TRUE(Cache.Flush(false, Unread));
    EXPECT_FALSE(std::filesystem::exists(Unread));
}

TEST_F(IniConfigCacheTest, RemovingFromTheCacheRereadsTheDiskAndDropsUnflushedChanges)
{
    const std::string File = MakeFile("[S]\nK=one\n");
    ASSERT_EQ(Cache.GetString("S", "K", File), "one");

    WriteTextFile(File, "[S]\nK=two\n");
    EXPECT_EQ(Cache.GetString("S", "K", File), "one") << "the cached copy answers until it is removed";
    Cache.RemoveFromCache(File);
    EXPECT_EQ(Cache.GetString("S", "K", File), "two");

    // Flushing with removal forgets the copy too.
    Cache.SetString("S", "K", "three", File);
    ASSERT_TRUE(Cache.Flush(true, File));
    WriteTextFile(File, "[S]\nK=four\n");
    EXPECT_EQ(Cache.GetString("S", "K", File), "four");

    // Removing drops changes that were never flushed.
    Cache.SetString("S", "K", "memory", File);
    Cache.RemoveFromCache(File);
    EXPECT_EQ(Cache.GetString("S", "K", File), "four");
    EXPECT_EQ(ReadTextFile(File), "[S]\nK=four\n");
}

TEST_F(IniConfigCacheTest, BoolsReadTheEngineWordsInAnyCaseElseANumber)
{
    const std::string File = MakeFile("[B]\n"
                                      "A=True\nB=yes\nC=ON\nD=false\nE=Off\nF=NO\n"
                                      "G=0\nH=1\nI=-3\nJ=garbage\nK=\nL=7 apples\n");
    const std::vector<std::pair<std::string, bool>> Expected = {{"A", true}, {"B", true}, {"C", true}, {"D", false},
        {"E", false}, {"F", false}, {"G", false}, {"H", true}, {"I", true}, {"J", false}, {"K", false}, {"L", true}};
    for (const auto& [Key, bValue] : Expected)
    {
        EXPECT_EQ(Cache.GetBool("B", Key, File), bValue) << Key;
    }
    EXPECT_FALSE(Cache.GetBool("B", "Missing", File).has_value());

    Cache.SetBool("B", "A", false, File);
    Cache.SetBool("B", "D", true, File);
    EXPECT_EQ(Cache.GetString("B", "A", File), "False");
    EXPECT_EQ(Cache.GetString("B", "D", File), "True");
}

TEST_F(IniConfigCacheTest, OnlyKeyLinesInsideASectionAreValues)
{
    // Array commands, comments and lines before the first section are kept but never read as keys.
    const std::string Before = "Loose=1\n[S]\n+Paths=A\n-Paths=B\n.Paths=C\n!Paths=D\n;Paths=E\n#Paths=F\n";
    const std::string File = MakeFile(Before);
    EXPECT_FALSE(Cache.GetString("S", "Paths", File).has_value());
    EXPECT_FALSE(Cache.GetString("", "Loose", File).has_value());

    EXPECT_EQ(SetAndFlush(File, "S", "Paths", "G"), Before + "Paths=G\n");
}

TEST_F(IniConfigCacheTest, CrLfFilesStayCrLf)
{
    const std::string File = MakeFile("[A]\r\nK=1\r\n\r\n[B]\r\nL=2");
    Cache.SetString("A", "K", "one", File);
    Cache.SetString("A", "New", "x", File);
    Cache.SetString("B", "M", "3", File);
    Cache.SetString("C", "N", "4", File);
    ASSERT_TRUE(Cache.Flush(false, File));

    EXPECT_EQ(ReadTextFile(File), "[A]\r\nK=one\r\nNew=x\r\n\r\n[B]\r\nL=2\r\nM=3\r\n\r\n[C]\r\nN=4\r\n");
}

TEST_F(IniConfigCacheTest, QuotedValuesReadWithoutTheirQuotes)
{
    const std::string File = MakeFile("[S]\nPath = \"C:/Program Files/Kelvor\"  \nEmpty=\"\"\nPlain=  spaced out  \n");
    EXPECT_EQ(Cache.GetString("S", "Path", File), "C:/Program Files/Kelvor");
    EXPECT_EQ(Cache.GetString("S", "Empty", File), "");
    EXPECT_EQ(Cache.GetString("S", "Plain", File), "spaced out");

    // Values that trimming or unquoting would change are written quoted, so they read back as set.
    for (const std::string Value : {" padded ", "\"quoted\"", "plain value"})
    {
        Cache.SetString("S", "RoundTrip", Value, File);
        ASSERT_TRUE(Cache.Flush(true, File));
        EXPECT_EQ(Cache.GetString("S", "RoundTrip", File), Value);
    }
    EXPECT_NE(ReadTextFile(File).find("RoundTrip=plain value\n"), std::string::npos);
}

TEST_F(IniConfigCacheTest, FlushReportsAFileThatCannotBeWrittenAndKeepsTheChange)
{
    // A plain file where the folder should be makes the write fail, even for root.
    WriteTextFile(Temp.Path() / "Blocker", "not a folder");
    const std::string File = (Temp.Path() / "Blocker/Config.ini").generic_string();
    Cache.SetString("S", "K", "kept", File);

    EXPECT_FALSE(Cache.Flush(true, File));
    EXPECT_EQ(Cache.GetString("S", "K", File), "kept");
}

TEST_F(IniConfigCacheTest, ConcurrentWritersLoseNoKey)
{
    const std::string File = (Temp.Path() / "Concurrent.ini").generic_string();
    constexpr int Threads = 4;
    constexpr int KeysPerThread = 50;
    std::vector<std::thread> Workers;
    for (int Thread = 0; Thread < Threads; ++Thread)
    {
        Workers.emplace_back([this, &File, Thread]
        {
            for (int Key = 0; Key < KeysPerThread; ++Key)
            {
                Cache.SetString("S" + std::to_string(Thread), "K" + std::to_string(Key), std::to_string(Key), File);
            }
        });
    }
    for (std::thread& Worker : Workers)
    {
        Worker.join();
    }
    ASSERT_TRUE(Cache.Flush(true, File));

    for (int Thread = 0; Thread < Threads; ++Thread)
    {
        for (int Key = 0; Key < KeysPerThread; ++Key)
        {
            EXPECT_EQ(Cache.GetString("S" + std::to_string(Thread), "K" + std::to_string(Key), File),
                std::to_string(Key));
        }
    }
}
