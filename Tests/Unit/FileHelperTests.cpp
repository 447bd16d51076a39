#include "Common/FileHelper.h"
#include "Common/NativePath.h"
#include "Support/TempDir.h"

#include <gtest/gtest.h>

using namespace Maptorn;
using namespace Maptorn::Testing;

TEST(FileHelper, AsciiTextIsSavedAsSingleBytesAndOtherTextAsUtf16WithABom)
{
    FTempDir Temp;
    ASSERT_TRUE(FileHelper::SaveStringToFile("Build:0", Temp.Dir() + "New/Folder/a.txt")) << "the folder is made on demand";
    EXPECT_EQ(ReadTextFile(Temp.Path() / "New/Folder/a.txt"), "Build:0");

    ASSERT_TRUE(FileHelper::SaveStringToFile("K\xC3\xA9", Temp.Dir() + "b.txt"));
    EXPECT_EQ(ReadTextFile(Temp.Path() / "b.txt"), std::string("\xFF\xFEK\0\xE9\0", 6));
    EXPECT_EQ(FileHelper::LoadFileToString(Temp.Dir() + "b.txt"), "K\xC3\xA9");
}

TEST(FileHelper, FoldersAndMissingFilesReadAsNothing)
{
    FTempDir Temp;
    EXPECT_EQ(FileHelper::LoadFileToString(Temp.Dir()), std::nullopt);
    EXPECT_EQ(FileHelper::LoadFileToString(Temp.Dir() + "missing.txt"), std::nullopt);
    EXPECT_FALSE(FileHelper::LoadFileToStringWithLineVisitor(Temp.Dir(), [](const std::string&) {}));
}

TEST(FileHelper, TheLineVisitorSeesLinesWithoutTheirTerminators)
{
    FTempDir Temp;
    WriteTextFile(Temp.Path() / "log.txt", "one\r\ntwo\nthree");
    std::vector<std::string> Lines;
    ASSERT_TRUE(FileHelper::LoadFileToStringWithLineVisitor(Temp.Dir() + "log.txt", [&](const std::string& Line) { Lines.push_back(Line); }));
    EXPECT_EQ(Lines, (std::vector<std::string>{"one", "two", "three"}));
}

namespace
{
// A project under "C:\Users\Zoë\Projects" on Windows: the UTF-8 path the core holds must name the
// same folder the file system lists back.
TEST(NativePathTest, ANonAsciiFolderIsWrittenListedAndReadUnderTheSameName)
{
    FTempDir Temp;
    const std::string Folder = Temp.Dir() + "Zo\xC3\xAB/Projects/";
    ASSERT_TRUE(FileHelper::SaveStringToFile("Arena", Folder + "Caf\xC3\xA9.txt"));

    EXPECT_EQ(FileSystem::ListFilesRecursively(Temp.Dir() + "Zo\xC3\xAB"), (std::vector<std::string>{Folder + "Caf\xC3\xA9.txt"}));
    EXPECT_EQ(FileHelper::LoadFileToString(Folder + "Caf\xC3\xA9.txt"), std::optional<std::string>("Arena"));
    EXPECT_EQ(NativePath::ToUtf8(NativePath::FromUtf8(Folder)), Folder);
}
}
