#include "Platform/ZipArchive.h"

#include "Support/ProjectSnapshot.h"
#include "Support/TempDir.h"

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <sys/stat.h>
#include <zip.h>

using namespace Maptorn;
using namespace Maptorn::Testing;
namespace fs = std::filesystem;

namespace
{
struct FTestEntry
{
    std::string Name;
    std::string Bytes;
    bool bSymbolicLink = false;
    zip_int32_t Compression = ZIP_CM_DEFLATE;
};

FTestEntry Folder(const std::string& Name) { return { Name, {} }; }

// Written by libzip itself, the way a mod.io upload of a plug-in folder arrives.
void WriteZip(const fs::path& Path, const std::vector<FTestEntry>& Entries)
{
    int Error = 0;
    zip_t* Archive = zip_open(Path.c_str(), ZIP_CREATE | ZIP_TRUNCATE, &Error);
    ASSERT_NE(Archive, nullptr);
    for (const FTestEntry& Entry : Entries)
    {
        if (Entry.Name.ends_with("/") && Entry.Bytes.empty())
        {
            ASSERT_GE(zip_dir_add(Archive, Entry.Name.c_str(), ZIP_FL_ENC_UTF_8), 0) << Entry.Name;
            continue;
        }
        zip_source_t* Source = zip_source_buffer(Archive, Entry.Bytes.data(), Entry.Bytes.size(), 0);
        ASSERT_NE(Source, nullptr);
        const zip_int64_t Index = zip_file_add(Archive, Entry.Name.c_str(), Source, ZIP_FL_ENC_UTF_8);
        ASSERT_GE(Index, 0) << Entry.Name << ": " << zip_strerror(Archive);
        const auto Indexu = static_cast<zip_uint64_t>(Index);
        ASSERT_EQ(zip_set_file_compression(Archive, Indexu, Entry.Compression, 0), 0);
        if (Entry.bSymbolicLink)
        {
            const zip_uint32_t Mode = (S_IFLNK | 0777u) << 16;
            ASSERT_EQ(zip_file_set_external_attributes(Archive, Indexu, 0, ZIP_OPSYS_UNIX, Mode), 0);
        }
    }
    ASSERT_EQ(zip_close(Archive), 0);
}

std::string ReadBytes(const fs::path& Path) { return ReadTextFile(Path); }

void WriteBytes(const fs::path& Path, const std::string& Bytes)
{
    std::ofstream(Path, std::ios::binary | std::ios::trunc) << Bytes;
}

// Varied bytes that deflate cannot shrink to nothing: every byte value, in a pseudo-random walk.
std::string VariedBytes(std::size_t Size, unsigned Seed)
{
    std::string Bytes(Size, '\0');
    unsigned State = Seed * 2654435761u + 1;
    for (char& Byte : Bytes)
    {
        State = State * 1103515245u + 12345u;
        Byte = static_cast<char>(State >> 16);
    }
    return Bytes;
}

// The central directory record of the entry with this name: "PK\1\2" and 46 bytes of fields.
std::size_t CentralRecordOf(const std::string& Archive, const std::string& Name)
{
    for (std::size_t At = Archive.find("PK\1\2"); At != std::string::npos; At = Archive.find("PK\1\2", At + 4))
    {
        if (Archive.compare(At + 46, Name.size(), Name) == 0)
        {
            return At;
        }
    }
    return std::string::npos;
}

void PatchUint32(std::string& Bytes, std::size_t At, uint32 Value)
{
    for (int Byte = 0; Byte < 4; ++Byte)
    {
        Bytes[At + Byte] = static_cast<char>((Value >> (8 * Byte)) & 0xFF);
    }
}

class ZipArchiveTest : public ::testing::Test
{
protected:
    FTempDir Temp;
    fs::path ArchivePath = Temp.Path() / "UGC1005.zip";
    fs::path Destination = Temp.Path() / "Plugins" / "Shared";
    FZipArchive Archive;
    std::string Error;

    bool Extract() { return Archive.ExtractAll(ArchivePath.string(), Destination.generic_string() + "/", Error); }

    // The destination already holds an installed plug-in; a refused archive must not touch it.
    void ExpectRefusedAndUntouched(const std::vector<FTestEntry>& Entries, const std::string& BadEntry)
    {
        WriteTextFile(Destination / "UGC1000" / "UGC1000.uplugin", "{\"FileVersion\": 3}");
        WriteZip(ArchivePath, Entries);
        const FProjectSnapshot Before = SnapshotTree(Temp.Path());
        EXPECT_FALSE(Extract());
        EXPECT_NE(Error.find("'" + BadEntry + "'"), std::string::npos) << Error;
        EXPECT_EQ(SnapshotTree(Temp.Path()), Before);
        EXPECT_FALSE(fs::exists(Destination / "UGC1005"));
    }
};
}

TEST_F(ZipArchiveTest, PluginFolderRoundTripKeepsEveryByteAndFolder)
{
    const std::string Map = VariedBytes(3 * 1024 * 1024 + 17, 1);  // spans several read chunks
    const std::string Descriptor = "{\n\t\"FileVersion\": 3,\n\t\"FriendlyName\": \"Frozen Keep\"\n}\n";
    WriteZip(ArchivePath, {
                              Folder("UGC1005/"),
                              { "UGC1005/UGC1005.uplugin", Descriptor },
                              { "UGC1005/Content/definition.json", "{\"Name\":\"Frozen Keep\"}" },
                              { "UGC1005/Content/Maps/Deep/Keep.umap", Map },
                              { "UGC1005/Content/Stored.bin", VariedBytes(4096, 2), false, ZIP_CM_STORE },
                              { "UGC1005/Content/Empty.txt", "" },
                              Folder("UGC1005/Resources/Empty/"),
                          });

    ASSERT_TRUE(Extract()) << Error;

    const FProjectSnapshot Expected = {
        { "UGC1005", "<dir>" },
        { "UGC1005/UGC1005.uplugin", Descriptor },
        { "UGC1005/Content", "<dir>" },
        { "UGC1005/Content/definition.json", "{\"Name\":\"Frozen Keep\"}" },
        { "UGC1005/Content/Maps", "<dir>" },
        { "UGC1005/Content/Maps/Deep", "<dir>" },
        { "UGC1005/Content/Maps/Deep/Keep.umap", Map },
        { "UGC1005/Content/Stored.bin", VariedBytes(4096, 2) },
        { "UGC1005/Content/Empty.txt", "" },
        { "UGC1005/Resources", "<dir>" },
        { "UGC1005/Resources/Empty", "<dir>" },
    };
    EXPECT_EQ(SnapshotTree(Destination), Expected);
}

TEST_F(ZipArchiveTest, ExistingFileIsOverwrittenAndUnrelatedFilesAreKept)
{
    WriteTextFile(Destination / "UGC1005" / "UGC1005.uplugin", "an older descriptor that was much longer than the new one");
    WriteTextFile(Destination / "UGC1005" / "Notes.txt", "mine");
    WriteTextFile(Destination / "UGC1000" / "UGC1000.uplugin", "{}");
    WriteZip(ArchivePath, { { "UGC1005/UGC1005.uplugin", "{\"FileVersion\": 3}" } });

    ASSERT_TRUE(Extract()) << Error;

    EXPECT_EQ(ReadBytes(Destination / "UGC1005" / "UGC1005.uplugin"), "{\"FileVersion\": 3}");
    EXPECT_EQ(ReadBytes(Destination / "UGC1005" / "Notes.txt"), "mine");
    EXPECT_EQ(ReadBytes(Destination / "UGC1000" / "UGC1000.uplugin"), "{}");
}

TEST_F(ZipArchiveTest, LinkLeftInTheDestinationIsReplacedNotFollowed)
{
    const fs::path Outside = Temp.Path() / "Outside.txt";
    WriteTextFile(Outside, "keep me");
    fs::create_directories(Destination / "UGC1005");
    fs::create_symlink(Outside, Destination / "UGC1005" / "UGC1005.uplugin");
    WriteZip(ArchivePath, { { "UGC1005/UGC1005.uplugin", "{}" } });

    ASSERT_TRUE(Extract()) << Error;

    EXPECT_EQ(ReadBytes(Outside), "keep me");
    EXPECT_FALSE(fs::is_symlink(Destination / "UGC1005" / "UGC1005.uplugin"));
    EXPECT_EQ(ReadBytes(Destination / "UGC1005" / "UGC1005.uplugin"), "{}");
}

// Each archive holds a good descriptor and one bad entry; it is refused before anything is written.
TEST_F(ZipArchiveTest, EntriesThatWouldLeaveTheDestinationOrInflateTooMuchAreRefused)
{
    FTestEntry Link{ "UGC1005/Content/Link", "/etc/passwd" };
    Link.bSymbolicLink = true;
    const std::vector<FTestEntry> BadEntries = {
        { "/tmp/maptorn-evil.txt", "x" },
        { "C:/Windows/evil.dll", "x" },
        { "\\\\server\\share\\evil.txt", "x" },
        { "UGC1005/../../../Escaped.txt", "x" },
        { "..\\Escaped.txt", "x" },
        Link,
        // 4 MiB of zeros deflates to about 4 KiB: a ratio just above 1000:1.
        { "UGC1005/Bomb.bin", std::string(4u << 20, '\0') },
    };
    for (const FTestEntry& Bad : BadEntries)
    {
        SCOPED_TRACE(Bad.Name);
        ExpectRefusedAndUntouched({ { "UGC1005/UGC1005.uplugin", "{}" }, Bad }, Bad.Name);
    }
    EXPECT_FALSE(fs::exists("/tmp/maptorn-evil.txt"));
    EXPECT_FALSE(fs::exists(Temp.Path() / "Escaped.txt"));
    EXPECT_FALSE(fs::exists(Destination.parent_path() / "Escaped.txt"));
}

TEST_F(ZipArchiveTest, SmallEntryMayCompressAsWellAsItLikes)
{
    WriteZip(ArchivePath, { { "UGC1005/Zeros.bin", std::string(1u << 20, '\0') } });
    ASSERT_TRUE(Extract()) << Error;
    EXPECT_EQ(ReadBytes(Destination / "UGC1005" / "Zeros.bin"), std::string(1u << 20, '\0'));
}

TEST_F(ZipArchiveTest, EntriesDeclaringMoreThanSixteenGibibytesInTotalAreRefused)
{
    // Five stored entries whose central records claim 3.75 GiB each, compressed and not.
    std::vector<FTestEntry> Entries;
    for (int Number = 0; Number < 5; ++Number)
    {
        Entries.push_back({ "UGC1005/Part" + std::to_string(Number) + ".bin", "tiny", false, ZIP_CM_STORE });
    }
    WriteZip(ArchivePath, Entries);
    std::string Bytes = ReadBytes(ArchivePath);
    for (const FTestEntry& Entry : Entries)
    {
        const std::size_t Record = CentralRecordOf(Bytes, Entry.Name);
        ASSERT_NE(Record, std::string::npos);
        PatchUint32(Bytes, Record + 20, 0xF0000000u);
        PatchUint32(Bytes, Record + 24, 0xF0000000u);
    }
    WriteBytes(ArchivePath, Bytes);
    const FProjectSnapshot Before = SnapshotTree(Temp.Path());

    EXPECT_FALSE(Extract());
    EXPECT_NE(Error.find("16 GiB"), std::string::npos) << Error;
    EXPECT_EQ(SnapshotTree(Temp.Path()), Before);
}

TEST_F(ZipArchiveTest, EntryWhoseDeclaredSizeWasInflatedIsRefused)
{
    WriteZip(ArchivePath, { { "UGC1005/UGC1005.uplugin", "{}" }, { "UGC1005/Patched.bin", "ten bytes.", false, ZIP_CM_STORE } });
    std::string Bytes = ReadBytes(ArchivePath);
    const std::size_t Record = CentralRecordOf(Bytes, "UGC1005/Patched.bin");
    ASSERT_NE(Record, std::string::npos);
    PatchUint32(Bytes, Record + 24, 0xFFFFFFF0u);
    WriteBytes(ArchivePath, Bytes);
    const FProjectSnapshot Before = SnapshotTree(Temp.Path());

    EXPECT_FALSE(Extract());
    EXPECT_NE(Error.find("'UGC1005/Patched.bin'"), std::string::npos) << Error;
    EXPECT_EQ(SnapshotTree(Temp.Path()), Before);
}

TEST_F(ZipArchiveTest, FileThatIsNotAZipFailsWithLibzipsReason)
{
    WriteTextFile(ArchivePath, "<html>502 Bad Gateway</html>");
    EXPECT_FALSE(Extract());
    EXPECT_NE(Error.find("Not a zip archive"), std::string::npos) << Error;
    EXPECT_FALSE(fs::exists(Destination));
}

TEST_F(ZipArchiveTest, MissingArchiveFailsWithLibzipsReason)
{
    EXPECT_FALSE(Extract());
    EXPECT_NE(Error.find("No such file"), std::string::npos) << Error;
    EXPECT_NE(Error.find("UGC1005.zip"), std::string::npos) << Error;
}

TEST_F(ZipArchiveTest, TruncatedDownloadFails)
{
    WriteZip(ArchivePath, { { "UGC1005/UGC1005.uplugin", "{}" }, { "UGC1005/Content/Keep.umap", VariedBytes(200000, 3) } });
    fs::resize_file(ArchivePath, fs::file_size(ArchivePath) / 2);
    EXPECT_FALSE(Extract());
    EXPECT_FALSE(Error.empty());
    EXPECT_FALSE(fs::exists(Destination / "UGC1005" / "Content" / "Keep.umap"));
}

TEST_F(ZipArchiveTest, CorruptEntryFailsItsChecksumAndLeavesNoPartialFile)
{
    const std::string Map = VariedBytes(300000, 4);
    WriteZip(ArchivePath, { { "UGC1005/Content/Keep.umap", Map, false, ZIP_CM_STORE } });
    std::string Bytes = ReadBytes(ArchivePath);
    const std::size_t Data = Bytes.find(Map.substr(0, 64));
    ASSERT_NE(Data, std::string::npos);
    Bytes[Data + 150000] = static_cast<char>(Bytes[Data + 150000] ^ 0x5A);
    WriteBytes(ArchivePath, Bytes);

    EXPECT_FALSE(Extract());
    EXPECT_NE(Error.find("UGC1005/Content/Keep.umap"), std::string::npos) << Error;
    EXPECT_NE(Error.find("CRC"), std::string::npos) << Error;
    EXPECT_FALSE(fs::exists(Destination / "UGC1005" / "Content" / "Keep.umap"));
}
