// The archive guards both hosts share, on the values a ZIP container declares.

#include "Transfer/ArchiveEntryGuard.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

using namespace Maptorn;
namespace Guard = Maptorn::ArchiveEntryGuard;

namespace
{
Guard::FEntryFacts File(std::string_view Name, uint64 Size = 10, uint64 CompressedSize = 10)
{
    Guard::FEntryFacts Facts;
    Facts.Name = Name;
    Facts.Size = Size;
    Facts.CompressedSize = CompressedSize;
    return Facts;
}

std::string RefusalOf(const Guard::FEntryFacts& Facts)
{
    Guard::FExtractionPlan Plan;
    std::string Error;
    const bool bAccepted = Guard::PlanEntry("A.zip", 0, Facts, Plan, Error);
    EXPECT_EQ(bAccepted, Error.empty()) << Error;
    return Error;
}
}

TEST(ArchiveEntryGuard, EveryUnsafeEntryIsRefusedWithItsReason)
{
    using namespace std::string_literals;
    Guard::FEntryFacts Link = File("P/Link");
    Link.UnixMode = 0120777;
    Guard::FEntryFacts Device = File("P/Device");
    Device.UnixMode = 0020644;
    Guard::FEntryFacts Unsized = File("P/Unsized");
    Unsized.CompressedSize.reset();
    Guard::FEntryFacts Encrypted = File("P/Secret");
    Encrypted.bEncrypted = true;
    Guard::FEntryFacts Bzip = File("P/Packed");
    Bzip.Method = 12;
    Bzip.bMethodReadable = false;
    const std::string NulName = "P/a\0b"s;
    const struct
    {
        Guard::FEntryFacts Facts;
        std::string Expected;
    } Cases[] = {
        { File(""), "entry '' has an empty name" },
        { File(NulName), "contains a NUL character" },
        { File("/etc/passwd"), "is an absolute path" },
        { File("c:evil.dll"), "is an absolute path" },
        { File("\\\\server\\share\\x"), "is an absolute path" },
        { File("P/../../x"), "climbs out of the destination with '..'" },
        { File("P/.."), "climbs out of the destination with '..'" },
        { File("P/."), "has no file name" },
        { File("./"), "" },
        { Link, "entry 'P/Link' is a symbolic link" },
        { Device, "is neither a file nor a folder" },
        { Unsized, "does not declare its size" },
        { File("P/Huge", (4ull << 30) + 1, 4ull << 30), "declares 4294967297 bytes, over the limit of 4 GiB per entry" },
        { File("P/Bomb", (1ull << 20) * 1000 + 1000, 1ull << 20), "over the limit of 1000:1" },
        { File("P/Small", 1ull << 20, 1), "" },
        { Encrypted, "is encrypted" },
        { Bzip, "uses compression method 12, which cannot be read" },
    };
    for (const auto& Case : Cases)
    {
        SCOPED_TRACE(std::string(Case.Facts.Name));
        const std::string Error = RefusalOf(Case.Facts);
        if (Case.Expected.empty())
        {
            EXPECT_EQ(Error, "");
            continue;
        }
        EXPECT_EQ(Error.rfind("Refused archive 'A.zip': entry '", 0), 0u) << Error;
        EXPECT_NE(Error.find(Case.Expected), std::string::npos) << Error;
    }
}

TEST(ArchiveEntryGuard, PlanHoldsEachFileOnceAndEveryFolderParentsFirst)
{
    Guard::FExtractionPlan Plan;
    std::string Error;
    ASSERT_TRUE(Guard::PlanEntry("A.zip", 0, File("P\\Content\\Maps\\Keep.umap", 7, 3), Plan, Error)) << Error;
    ASSERT_TRUE(Guard::PlanEntry("A.zip", 1, File("P/Resources/Empty/", 0, 0), Plan, Error)) << Error;
    ASSERT_TRUE(Guard::FinishPlan("A.zip", Plan, Error)) << Error;
    ASSERT_EQ(Plan.Files.size(), 1u);
    EXPECT_EQ(Plan.Files[0].RelativePath, "P/Content/Maps/Keep.umap");
    EXPECT_EQ(Plan.Files[0].Name, "P\\Content\\Maps\\Keep.umap");
    EXPECT_EQ(Plan.TotalSize, 7u);
    EXPECT_EQ(Plan.Directories, (std::set<std::string>{ "P", "P/Content", "P/Content/Maps", "P/Resources", "P/Resources/Empty" }));
}

TEST(ArchiveEntryGuard, ArchiveWideLimitsAreRefused)
{
    EXPECT_EQ(Guard::CheckEntryCount("A.zip", Guard::MaxEntryCount), "");
    EXPECT_EQ(Guard::CheckEntryCount("A.zip", Guard::MaxEntryCount + 1), "Refused archive 'A.zip': it holds 200001 entries, over the limit of 200000");

    Guard::FExtractionPlan Both;
    std::string Error;
    ASSERT_TRUE(Guard::PlanEntry("A.zip", 0, File("P/Keep"), Both, Error));
    ASSERT_TRUE(Guard::PlanEntry("A.zip", 1, File("P/Keep/Inner.txt"), Both, Error));
    EXPECT_FALSE(Guard::FinishPlan("A.zip", Both, Error));
    EXPECT_EQ(Error, "Refused archive 'A.zip': entry 'P/Keep' is both a file and a folder");

    Guard::FExtractionPlan Large;
    for (int Number = 0; Number < 5; ++Number)
    {
        const std::string Name = "P/Part" + std::to_string(Number);
        ASSERT_TRUE(Guard::PlanEntry("A.zip", Number, File(Name, 0xF0000000ull, 0xF0000000ull), Large, Error)) << Error;
    }
    EXPECT_FALSE(Guard::FinishPlan("A.zip", Large, Error));
    EXPECT_EQ(Error, "Refused archive 'A.zip': its entries declare 20132659200 bytes in total, over the limit of 16 GiB");
}
