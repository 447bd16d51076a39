// The editor's archive adapter on the surface's real file system, side by side with the
// standalone host's libzip extractor: it refuses what the standalone refuses, with the same
// words, and installs what the standalone installs, byte for byte.

#include "Platform/EngineArchive.h"

#include "Platform/ZipArchive.h"
#include "Support/ProjectSnapshot.h"
#include "Support/TempDir.h"
#include "Support/TestZip.h"

#include <gtest/gtest.h>

#include <zlib.h>

#include <filesystem>
#include <string>
#include <vector>

namespace
{
namespace fs = std::filesystem;
using Maptorn::Testing::CentralRecordOf;
using Maptorn::Testing::FProjectSnapshot;
using Maptorn::Testing::FTestZipEntry;
using Maptorn::Testing::PatchUint32;
using Maptorn::Testing::ReadTextFile;
using Maptorn::Testing::SnapshotTree;
using Maptorn::Testing::VariedBytes;
using Maptorn::Testing::WriteBinaryFile;
using Maptorn::Testing::WriteTestZip;
using Maptorn::Testing::WriteTextFile;
using Maptorn::Testing::ZipFolder;

void Append16(std::string& Bytes, uint32 Value)
{
	Bytes.push_back(static_cast<char>(Value & 0xFF));
	Bytes.push_back(static_cast<char>((Value >> 8) & 0xFF));
}

void Append32(std::string& Bytes, uint32 Value)
{
	Append16(Bytes, Value & 0xFFFF);
	Append16(Bytes, Value >> 16);
}

void Append64(std::string& Bytes, uint64 Value)
{
	Append32(Bytes, static_cast<uint32>(Value));
	Append32(Bytes, static_cast<uint32>(Value >> 32));
}

// One stored entry in the ZIP64 layout archivers use past 4 GiB or 65535 entries: its sizes and
// offset only in the ZIP64 extra field, the counts only in the ZIP64 end record.
std::string Zip64Archive(const std::string& Name, const std::string& Data)
{
	const uint32 Crc = static_cast<uint32>(crc32(0L, reinterpret_cast<const Bytef*>(Data.data()), static_cast<uInt>(Data.size())));
	std::string Zip;
	Append32(Zip, 0x04034b50);
	Append16(Zip, 45);
	Append16(Zip, 0x0800);
	Append16(Zip, 0);
	Append32(Zip, 0);
	Append32(Zip, Crc);
	Append32(Zip, 0xFFFFFFFF);
	Append32(Zip, 0xFFFFFFFF);
	Append16(Zip, static_cast<uint32>(Name.size()));
	Append16(Zip, 20);
	Zip += Name;
	Append16(Zip, 0x0001);
	Append16(Zip, 16);
	Append64(Zip, Data.size());
	Append64(Zip, Data.size());
	Zip += Data;
	const uint64 DirectoryOffset = Zip.size();
	Append32(Zip, 0x02014b50);
	Append16(Zip, (3u << 8) | 45);
	Append16(Zip, 45);
	Append16(Zip, 0x0800);
	Append16(Zip, 0);
	Append32(Zip, 0);
	Append32(Zip, Crc);
	Append32(Zip, 0xFFFFFFFF);
	Append32(Zip, 0xFFFFFFFF);
	Append16(Zip, static_cast<uint32>(Name.size()));
	Append16(Zip, 28);
	Append16(Zip, 0);
	Append16(Zip, 0);
	Append16(Zip, 0);
	Append32(Zip, 0100644u << 16);
	Append32(Zip, 0xFFFFFFFF);
	Zip += Name;
	Append16(Zip, 0x0001);
	Append16(Zip, 24);
	Append64(Zip, Data.size());
	Append64(Zip, Data.size());
	Append64(Zip, 0);
	const uint64 DirectorySize = Zip.size() - DirectoryOffset;
	const uint64 Zip64EndOffset = Zip.size();
	Append32(Zip, 0x06064b50);
	Append64(Zip, 44);
	Append16(Zip, 45);
	Append16(Zip, 45);
	Append32(Zip, 0);
	Append32(Zip, 0);
	Append64(Zip, 1);
	Append64(Zip, 1);
	Append64(Zip, DirectorySize);
	Append64(Zip, DirectoryOffset);
	Append32(Zip, 0x07064b50);
	Append32(Zip, 0);
	Append64(Zip, Zip64EndOffset);
	Append32(Zip, 1);
	Append32(Zip, 0x06054b50);
	Append16(Zip, 0);
	Append16(Zip, 0);
	Append16(Zip, 0xFFFF);
	Append16(Zip, 0xFFFF);
	Append32(Zip, 0xFFFFFFFF);
	Append32(Zip, 0xFFFFFFFF);
	Append16(Zip, 0);
	return Zip;
}

class EditorArchive : public ::testing::Test
{
protected:
	Maptorn::Testing::FTempDir Temp;
	fs::path ArchivePath = Temp.Path() / "UGC1005.zip";
	fs::path Destination = Temp.Path() / "Plugins" / "Shared";
	FEngineArchive Archive;
	std::string Error;

	bool Extract() { return Archive.ExtractAll(ArchivePath.string(), Destination.generic_string() + "/", Error); }

	// What the standalone host's extractor makes of the same archive, in a folder of its own.
	bool ExtractWithStandalone(const fs::path& Folder, std::string& OutError)
	{
		Maptorn::FZipArchive Standalone;
		return Standalone.ExtractAll(ArchivePath.string(), Folder.generic_string() + "/", OutError);
	}

	// Both hosts install the archive, and the two trees are the same, byte for byte.
	void ExpectSameTreeAsStandalone()
	{
		Maptorn::Testing::FTempDir Elsewhere;
		std::string StandaloneError;
		ASSERT_TRUE(ExtractWithStandalone(Elsewhere.Path() / "Shared", StandaloneError)) << StandaloneError;
		ASSERT_TRUE(Extract()) << Error;
		EXPECT_EQ(SnapshotTree(Destination), SnapshotTree(Elsewhere.Path() / "Shared"));
	}

	// The destination holds an installed plug-in; the refused archive leaves every byte of the
	// temporary folder as it was, and the standalone refuses it with the same words.
	void ExpectRefusedLikeStandalone(const std::string& Expected)
	{
		WriteTextFile(Destination / "UGC1000" / "UGC1000.uplugin", "{\"FileVersion\": 3}");
		const FProjectSnapshot Before = SnapshotTree(Temp.Path());
		EXPECT_FALSE(Extract());
		EXPECT_NE(Error.find(Expected), std::string::npos) << Error;
		EXPECT_EQ(SnapshotTree(Temp.Path()), Before);
		std::string StandaloneError;
		EXPECT_FALSE(ExtractWithStandalone(Temp.Path() / "Standalone", StandaloneError));
		EXPECT_EQ(Error, StandaloneError);
		fs::remove_all(Temp.Path() / "Standalone");
	}

	std::string Patched(const std::vector<FTestZipEntry>& Entries, const std::string& Name, size_t Field, uint32 Value, size_t Width = 4)
	{
		WriteTestZip(ArchivePath, Entries);
		std::string Bytes = ReadTextFile(ArchivePath);
		const size_t Record = CentralRecordOf(Bytes, Name);
		EXPECT_NE(Record, std::string::npos) << Name;
		if (Width == 2)
		{
			Bytes[Record + Field] = static_cast<char>(Value & 0xFF);
			Bytes[Record + Field + 1] = static_cast<char>(Value >> 8);
		}
		else
		{
			PatchUint32(Bytes, Record + Field, Value);
		}
		return Bytes;
	}
};

TEST_F(EditorArchive, RefusesEveryUnsafeEntryTheStandaloneRefusesBeforeWritingAnything)
{
	for (const FTestZipEntry& Bad : Maptorn::Testing::UnsafeZipEntries())
	{
		SCOPED_TRACE(Bad.Name);
		WriteTestZip(ArchivePath, { { "UGC1005/UGC1005.uplugin", "{}" }, Bad });
		ExpectRefusedLikeStandalone("'" + Bad.Name + "'");
	}
	EXPECT_FALSE(fs::exists("/tmp/maptorn-evil.txt"));
	EXPECT_FALSE(fs::exists(Temp.Path() / "Escaped.txt"));
	EXPECT_FALSE(fs::exists(Destination.parent_path() / "Escaped.txt"));
}

// Archives whose central directory lies about an entry, patched after libzip wrote them.
TEST_F(EditorArchive, RefusesEntriesWhoseRecordsDeclareTooMuchOrWhatCannotBeRead)
{
	const std::vector<FTestZipEntry> Stored = { { "UGC1005/UGC1005.uplugin", "{}" }, { "UGC1005/Patched.bin", "ten bytes.", false, ZIP_CM_STORE } };
	struct FCase
	{
		const char* What;
		size_t Field;
		uint32 Value;
		size_t Width;
		const char* Expected;
	};
	const FCase Cases[] = {
		{ "a size inflated to nearly 4 GiB", 24, 0xFFFFFFF0u, 4, "'UGC1005/Patched.bin' declares 4294967280 bytes from 10 compressed" },
		{ "the encryption flag", 8, 0x0001u, 2, "'UGC1005/Patched.bin' is encrypted" },
		{ "a FIFO's mode", 38, 0010644u << 16, 4, "'UGC1005/Patched.bin' is neither a file nor a folder" },
	};
	for (const FCase& Case : Cases)
	{
		SCOPED_TRACE(Case.What);
		WriteBinaryFile(ArchivePath, Patched(Stored, "UGC1005/Patched.bin", Case.Field, Case.Value, Case.Width));
		ExpectRefusedLikeStandalone(Case.Expected);
	}

	// Five entries of 3.75 GiB each: each is under the entry limit, together over 16 GiB.
	std::vector<FTestZipEntry> Parts;
	for (int Number = 0; Number < 5; ++Number)
	{
		Parts.push_back({ "UGC1005/Part" + std::to_string(Number) + ".bin", "tiny", false, ZIP_CM_STORE });
	}
	WriteTestZip(ArchivePath, Parts);
	std::string Bytes = ReadTextFile(ArchivePath);
	for (const FTestZipEntry& Part : Parts)
	{
		PatchUint32(Bytes, CentralRecordOf(Bytes, Part.Name) + 20, 0xF0000000u);
		PatchUint32(Bytes, CentralRecordOf(Bytes, Part.Name) + 24, 0xF0000000u);
	}
	WriteBinaryFile(ArchivePath, Bytes);
	ExpectRefusedLikeStandalone("over the limit of 16 GiB");
}

TEST_F(EditorArchive, RefusesACompressionMethodItCannotInflate)
{
	WriteBinaryFile(ArchivePath, Patched({ { "UGC1005/Packed.bin", "packed" } }, "UGC1005/Packed.bin", 10, 97, 2));
	const FProjectSnapshot Before = SnapshotTree(Temp.Path());
	EXPECT_FALSE(Extract());
	EXPECT_NE(Error.find("entry 'UGC1005/Packed.bin' uses compression method 97, which cannot be read"), std::string::npos) << Error;
	EXPECT_EQ(SnapshotTree(Temp.Path()), Before);
}

TEST_F(EditorArchive, InstallsTheSameTreeAsTheStandaloneByteForByte)
{
	const std::string Map = VariedBytes(3 * 1024 * 1024 + 17, 1);  // spans several 1 MiB chunks
	struct FCase
	{
		const char* What;
		std::vector<FTestZipEntry> Entries;
	};
	const FCase Cases[] = {
		{ "a plug-in folder",
			{
				ZipFolder("UGC1005/"),
				{ "UGC1005/UGC1005.uplugin", "{\n\t\"FileVersion\": 3\n}\n" },
				{ "UGC1005/Content/Maps/Deep/Keep.umap", Map },
				{ "UGC1005/Content/Stored.bin", VariedBytes(4096, 2), false, ZIP_CM_STORE },
				{ "UGC1005/Content/StoredLarge.bin", VariedBytes((2u << 20) + 5, 3), false, ZIP_CM_STORE },
				{ "UGC1005/Content/Empty.txt", "" },
				{ "UGC1005/Content/EmptyStored.txt", "", false, ZIP_CM_STORE },
				ZipFolder("UGC1005/Resources/Empty/"),
			} },
		{ "a small entry compressed far past 1000:1", { { "UGC1005/Zeros.bin", std::string(1u << 20, '\0') } } },
		{ "dot segments and backslashes", { { "UGC1005\\Content\\.\\Win.txt", "crlf\r\n" }, { "./UGC1005//Top.txt", "top" } } },
		{ "a name in code page 437", { { "UGC1005/Caf\x82-\x81" "ber.txt", "cp437", false, ZIP_CM_DEFLATE, ZIP_FL_ENC_CP437 } } },
		{ "a name in UTF-8", { { "UGC1005/Caf\xC3\xA9.txt", "utf-8" } } },
	};
	for (const FCase& Case : Cases)
	{
		SCOPED_TRACE(Case.What);
		fs::remove_all(Destination);
		WriteTestZip(ArchivePath, Case.Entries);
		ExpectSameTreeAsStandalone();
	}
	EXPECT_EQ(ReadTextFile(Destination / "UGC1005" / "Caf\xC3\xA9.txt"), "utf-8");
}

TEST_F(EditorArchive, ReadsTheZip64LayoutOfLargeArchives)
{
	const std::string Data = VariedBytes(70000, 5);
	WriteBinaryFile(ArchivePath, Zip64Archive("UGC1005/Content/Big.umap", Data));
	ExpectSameTreeAsStandalone();
	EXPECT_EQ(ReadTextFile(Destination / "UGC1005" / "Content" / "Big.umap"), Data);
}

TEST_F(EditorArchive, ReinstallOverwritesFilesKeepsUnrelatedOnesAndReplacesLinksWithoutFollowingThem)
{
	const fs::path Outside = Temp.Path() / "Outside.txt";
	WriteTextFile(Outside, "keep me");
	WriteTextFile(Destination / "UGC1005" / "UGC1005.uplugin", "an older descriptor that was much longer than the new one");
	WriteTextFile(Destination / "UGC1005" / "Notes.txt", "mine");
	fs::create_symlink(Outside, Destination / "UGC1005" / "Linked.txt");
	fs::create_symlink(Temp.Path() / "Dangling.txt", Destination / "UGC1005" / "Dangling.txt");
	WriteTestZip(ArchivePath, { { "UGC1005/UGC1005.uplugin", "{\"FileVersion\": 3}" }, { "UGC1005/Linked.txt", "new" }, { "UGC1005/Dangling.txt", "new" } });

	ASSERT_TRUE(Extract()) << Error;

	EXPECT_EQ(ReadTextFile(Destination / "UGC1005" / "UGC1005.uplugin"), "{\"FileVersion\": 3}");
	EXPECT_EQ(ReadTextFile(Destination / "UGC1005" / "Notes.txt"), "mine");
	EXPECT_EQ(ReadTextFile(Outside), "keep me");
	EXPECT_FALSE(fs::exists(Temp.Path() / "Dangling.txt"));
	for (const char* Name : { "Linked.txt", "Dangling.txt" })
	{
		EXPECT_FALSE(fs::is_symlink(Destination / "UGC1005" / Name)) << Name;
		EXPECT_EQ(ReadTextFile(Destination / "UGC1005" / Name), "new") << Name;
	}
	EXPECT_EQ(SnapshotTree(Destination).size(), 5u) << "no staging folder left behind";
}

// A download that breaks part-way through: the files already inflated are taken back, and the
// plug-in installed before is as it was.
TEST_F(EditorArchive, ADamagedEntryLeavesTheInstalledPluginAsItWas)
{
	const std::string Map = VariedBytes(300000, 4);
	const std::vector<FTestZipEntry> Entries = {
		{ "UGC1005/UGC1005.uplugin", "{\"FileVersion\": 4}" },
		{ "UGC1005/New/Fresh.txt", "fresh" },
		{ "UGC1005/Content/Keep.umap", Map, false, ZIP_CM_STORE },
	};
	struct FCase
	{
		const char* What;
		const char* Expected;
		void (*Damage)(std::string& Bytes, const std::string& Map);
	};
	const FCase Cases[] = {
		{ "one flipped byte", "CRC-32",
			[](std::string& Bytes, const std::string& Data) { Bytes[Bytes.find(Data.substr(0, 64)) + 150000] ^= 0x5A; } },
		{ "a stored size one byte short", "holds more bytes than the 299999 it declares",
			[](std::string& Bytes, const std::string&) { PatchUint32(Bytes, CentralRecordOf(Bytes, "UGC1005/Content/Keep.umap") + 24, 299999); } },
		{ "a local header outside the file", "its local header is missing",
			[](std::string& Bytes, const std::string&) { PatchUint32(Bytes, CentralRecordOf(Bytes, "UGC1005/Content/Keep.umap") + 42, 0x7FFFFFF0); } },
		{ "data past the end of the file", "its data runs past the end of the archive",
			[](std::string& Bytes, const std::string&) {
				const size_t Record = CentralRecordOf(Bytes, "UGC1005/Content/Keep.umap");
				PatchUint32(Bytes, Record + 20, 0x7FFFFFF0);
				PatchUint32(Bytes, Record + 24, 0x7FFFFFF0);
			} },
	};
	for (const FCase& Case : Cases)
	{
		SCOPED_TRACE(Case.What);
		WriteTextFile(Destination / "UGC1005" / "UGC1005.uplugin", "{\"FileVersion\": 3}");
		WriteTextFile(Destination / "UGC1005" / "Content" / "Keep.umap", "the old map");
		WriteTestZip(ArchivePath, Entries);
		std::string Bytes = ReadTextFile(ArchivePath);
		Case.Damage(Bytes, Map);
		WriteBinaryFile(ArchivePath, Bytes);
		const FProjectSnapshot Before = SnapshotTree(Temp.Path());

		EXPECT_FALSE(Extract());
		EXPECT_NE(Error.find("'UGC1005/Content/Keep.umap'"), std::string::npos) << Error;
		EXPECT_NE(Error.find("'" + ArchivePath.string() + "'"), std::string::npos) << Error;
		EXPECT_NE(Error.find(Case.Expected), std::string::npos) << Error;
		EXPECT_EQ(SnapshotTree(Temp.Path()), Before);
	}
}

TEST_F(EditorArchive, ADamagedDeflateStreamIsReportedAndLeavesNothing)
{
	const std::string Map = VariedBytes(300000, 6);
	WriteTestZip(ArchivePath, { { "UGC1005/Content/Keep.umap", Map } });
	std::string Bytes = ReadTextFile(ArchivePath);
	const size_t Data = Bytes.find("UGC1005/Content/Keep.umap") + 25;
	for (size_t At = Data + 1000; At < Data + 1400; ++At)
	{
		Bytes[At] = static_cast<char>(0xFF);
	}
	WriteBinaryFile(ArchivePath, Bytes);

	EXPECT_FALSE(Extract());
	EXPECT_NE(Error.find("'UGC1005/Content/Keep.umap'"), std::string::npos) << Error;
	EXPECT_FALSE(fs::exists(Destination)) << "the folders it made are removed too";
}

TEST_F(EditorArchive, FilesThatAreNoArchiveOrOnlyPartOfOneAreRefused)
{
	struct FCase
	{
		const char* What;
		std::string Bytes;
		const char* Expected;
	};
	WriteTestZip(ArchivePath, { { "UGC1005/UGC1005.uplugin", "{}" }, { "UGC1005/Content/Keep.umap", VariedBytes(200000, 3) } });
	const std::string Whole = ReadTextFile(ArchivePath);
	const FCase Cases[] = {
		{ "an error page", "<html>502 Bad Gateway</html>", "it is not a ZIP archive" },
		{ "an empty file", "", "it is not a ZIP archive" },
		{ "half a download", Whole.substr(0, Whole.size() / 2), "it is not a ZIP archive" },
		{ "a download without its last bytes", Whole.substr(0, Whole.size() - 30), "" },
	};
	for (const FCase& Case : Cases)
	{
		SCOPED_TRACE(Case.What);
		WriteBinaryFile(ArchivePath, Case.Bytes);
		EXPECT_FALSE(Extract());
		EXPECT_NE(Error.find("'" + ArchivePath.string() + "'"), std::string::npos) << Error;
		EXPECT_NE(Error.find(Case.Expected), std::string::npos) << Error;
		EXPECT_FALSE(fs::exists(Destination));
	}

	fs::remove(ArchivePath);
	EXPECT_FALSE(Extract());
	EXPECT_NE(Error.find("Cannot open archive '" + ArchivePath.string() + "': no such file"), std::string::npos) << Error;
}
}
