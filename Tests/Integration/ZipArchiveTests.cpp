#include "Platform/ZipArchive.h"

#include "Support/ProjectSnapshot.h"
#include "Support/TempDir.h"
#include "Support/TestZip.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include <zip.h>

using namespace Maptorn;
using namespace Maptorn::Testing;
namespace fs = std::filesystem;

namespace
{
class ZipArchiveTest : public ::testing::Test
{
protected:
    FTempDir Temp;
    fs::path ArchivePath = Temp.Path() / "UGC1005.zip";
    fs::path Destination = Temp.Path() / "Plugins" / "Shared";
    FZipArchive Archive;
    std::string Error;

    bool Extract() { return Archive.ExtractAll(ArchivePath.string(), Destination.generic_string() + "/", Error); }
};
}

// What a plug-in folder holds comes out byte for byte as the editor's extractor leaves it: the
// EditorArchive suite installs the same archives with both and compares the trees.

TEST_F(ZipArchiveTest, AReinstallOverwritesFilesKeepsUnrelatedOnesAndReplacesLinksWithoutFollowingThem)
{
    const fs::path Outside = Temp.Path() / "Outside.txt";
    WriteTextFile(Outside, "keep me");
    WriteTextFile(Destination / "UGC1005" / "UGC1005.uplugin", "an older descriptor that was much longer than the new one");
    WriteTextFile(Destination / "UGC1005" / "Notes.txt", "mine");
    WriteTextFile(Destination / "UGC1000" / "UGC1000.uplugin", "{}");
    fs::create_symlink(Outside, Destination / "UGC1005" / "Linked.txt");
    WriteTestZip(ArchivePath, { { "UGC1005/UGC1005.uplugin", "{\"FileVersion\": 3}" }, { "UGC1005/Linked.txt", "new" } });

    ASSERT_TRUE(Extract()) << Error;

    EXPECT_EQ(ReadTextFile(Destination / "UGC1005" / "UGC1005.uplugin"), "{\"FileVersion\": 3}");
    EXPECT_EQ(ReadTextFile(Destination / "UGC1005" / "Notes.txt"), "mine");
    EXPECT_EQ(ReadTextFile(Destination / "UGC1000" / "UGC1000.uplugin"), "{}");
    EXPECT_EQ(ReadTextFile(Outside), "keep me");
    EXPECT_FALSE(fs::is_symlink(Destination / "UGC1005" / "Linked.txt"));
    EXPECT_EQ(ReadTextFile(Destination / "UGC1005" / "Linked.txt"), "new");
}

// The refusals themselves (unsafe names, links, declared sizes, the total) are run through this
// extractor and the editor's side by side in the EditorArchive suite, which needs them to agree.

// A missing archive, an error page saved as one and a download cut in half: each fails with
// libzip's reason and leaves nothing extracted.
TEST_F(ZipArchiveTest, AnArchiveThatIsMissingNotAZipOrCutShortFailsWithItsReason)
{
    EXPECT_FALSE(Extract());
    EXPECT_NE(Error.find("No such file"), std::string::npos) << Error;
    EXPECT_NE(Error.find("UGC1005.zip"), std::string::npos) << Error;

    WriteTextFile(ArchivePath, "<html>502 Bad Gateway</html>");
    EXPECT_FALSE(Extract());
    EXPECT_NE(Error.find("Not a zip archive"), std::string::npos) << Error;
    EXPECT_FALSE(fs::exists(Destination));

    WriteTestZip(ArchivePath, { { "UGC1005/UGC1005.uplugin", "{}" }, { "UGC1005/Content/Keep.umap", VariedBytes(200000, 3) } });
    fs::resize_file(ArchivePath, fs::file_size(ArchivePath) / 2);
    Error.clear();
    EXPECT_FALSE(Extract());
    EXPECT_FALSE(Error.empty());
    EXPECT_FALSE(fs::exists(Destination / "UGC1005" / "Content" / "Keep.umap"));
}

TEST_F(ZipArchiveTest, CorruptEntryFailsItsChecksumAndLeavesNoPartialFile)
{
    const std::string Map = VariedBytes(300000, 4);
    WriteTestZip(ArchivePath, { { "UGC1005/Content/Keep.umap", Map, false, ZIP_CM_STORE } });
    std::string Bytes = ReadTextFile(ArchivePath);
    const std::size_t Data = Bytes.find(Map.substr(0, 64));
    ASSERT_NE(Data, std::string::npos);
    Bytes[Data + 150000] = static_cast<char>(Bytes[Data + 150000] ^ 0x5A);
    WriteBinaryFile(ArchivePath, Bytes);

    EXPECT_FALSE(Extract());
    EXPECT_NE(Error.find("UGC1005/Content/Keep.umap"), std::string::npos) << Error;
    EXPECT_NE(Error.find("CRC"), std::string::npos) << Error;
    EXPECT_FALSE(fs::exists(Destination / "UGC1005" / "Content" / "Keep.umap"));
}
