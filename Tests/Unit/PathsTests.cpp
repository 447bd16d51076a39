#include "Common/Paths.h"

#include <gtest/gtest.h>

using namespace Maptorn;

TEST(Paths, CombineInsertsOneSlashOnlyWhereTheEngineWould)
{
    EXPECT_EQ(Paths::Combine("A", "B"), "A/B");
    EXPECT_EQ(Paths::Combine("A/", "/B"), "A//B");
    EXPECT_EQ(Paths::Combine("A", ""), "A/");
    EXPECT_EQ(Paths::Combine("", "B"), "B");
    EXPECT_EQ(Paths::Combine("A\\", "B"), "A\\B");
    EXPECT_EQ(Paths::Combine("A", "/B"), "A/B");
    EXPECT_EQ(Paths::Combine("Saved", "Cooked", "Depot"), "Saved/Cooked/Depot");
}

TEST(Paths, ConvertRelativePathToFullCollapsesDotsAndKeepsTrailingSlash)
{
    EXPECT_EQ(Paths::ConvertRelativePathToFull("C:/Engine/Binaries/Win64/", "../../../Proj/Saved/"), "C:/Proj/Saved/");
    EXPECT_EQ(Paths::ConvertRelativePathToFull("/base", "./a\\b/../c"), "/base/a/c");
    EXPECT_EQ(Paths::ConvertRelativePathToFull("/ignored", "/abs/x/"), "/abs/x/");
    EXPECT_EQ(Paths::ConvertRelativePathToFull("/", "../../x"), "/x");
}

TEST(Paths, MakeValidFileNameRemovesTheEngineInvalidCharacters)
{
    EXPECT_EQ(Paths::MakeValidFileName("My: Map/<1>.v2"), "My Map1.v2");
    EXPECT_EQ(Paths::MakeValidFileName("a?b", '_'), "a_b");
}

TEST(Paths, FileNamePartsSplitAtTheLastSeparator)
{
    EXPECT_EQ(Paths::GetBaseFilename("C:/a/b.tar.gz"), "b.tar");
    EXPECT_EQ(Paths::GetCleanFilename("C:\\a\\b.txt"), "b.txt");
    EXPECT_EQ(Paths::GetPath("/a/b/c.txt"), "/a/b");
}
