#include "Transfer/FormDataBody.h"
#include "Support/TempDir.h"

#include <gtest/gtest.h>

using namespace Maptorn;
using namespace Maptorn::Testing;

namespace
{
const std::string B = "f0Qkq8EArxUcuH62RDyzNZKjZ5uYeJu5pBH5b9lZ";

std::string ExpectedTextFields(const std::string& Version, const std::string& Changelog, const std::string& Platform)
{
    return "\r\n--" + B + "\r\nContent-Disposition: form-data; name=\"version\"\r\n\r\n" + Version +
           "\r\n--" + B + "\r\nContent-Disposition: form-data; name=\"changelog\"\r\n\r\n" + Changelog +
           "\r\n--" + B + "\r\nContent-Disposition: form-data; name=\"platforms[]\"\r\n\r\n" + Platform;
}
}

TEST(FormDataBody, WithoutTheFileTheBodyHoldsTheThreeFieldsAndTheClosingBoundary)
{
    FTempDir Temp;
    std::vector<uint8> Buffer;
    int64 Size = 0;
    ASSERT_EQ(WriteFormDataBody({"3", "Fixed lamps", "windows", false, ""}, "", Temp.Dir() + "body.tmp", Buffer, Size), EFormDataBodyError::None);
    const std::string Expected = ExpectedTextFields("3", "Fixed lamps", "windows") + "\r\n--" + B + "--\r\n";
    EXPECT_EQ(ReadTextFile(Temp.Path() / "body.tmp"), Expected);
    EXPECT_EQ(Size, static_cast<int64>(Expected.size()));
}

TEST(FormDataBody, EmptyFieldsStillWriteTheirHeaderLines)
{
    EXPECT_EQ(MakeFormDataHead({"", "", "android", false, ""}), ExpectedTextFields("", "", "android"));
}

TEST(FormDataBody, TheFileIsCopiedByteForByteInChunksBetweenItsHeadersAndTheTail)
{
    FTempDir Temp;
    std::string Bytes;
    for (int Index = 0; Index < 1000; ++Index)
    {
        Bytes += static_cast<char>(Index % 256);
    }
    Bytes += "\r\n--" + B + "--\r\n";   // bytes that look like a boundary travel untouched
    WriteTextFile(Temp.Path() / "UGC12.zip", Bytes);
    std::vector<uint8> Buffer;
    int64 Size = 0;
    ASSERT_EQ(WriteFormDataBody({"4", "", "oculus", true, "UGC12.zip"}, Temp.Dir() + "UGC12.zip", Temp.Dir() + "body.tmp", Buffer, Size, 7),
        EFormDataBodyError::None);
    const std::string Expected = ExpectedTextFields("4", "", "oculus") + "\r\n--" + B +
        "\r\nContent-Disposition: form-data; name=\"filedata\"; filename=\"UGC12.zip\"\r\nContent-Type: application/octet-stream\r\n\r\n" +
        Bytes + "\r\n--" + B + "--\r\n";
    EXPECT_EQ(ReadTextFile(Temp.Path() / "body.tmp"), Expected);
    EXPECT_LE(Buffer.size(), 7u) << "one reused buffer of at most one chunk";
}

TEST(FormDataBody, AMissingFileOrAnUnwritableBodyIsReported)
{
    FTempDir Temp;
    std::vector<uint8> Buffer;
    int64 Size = 0;
    EXPECT_EQ(WriteFormDataBody({"1", "", "windows", true, "x.zip"}, Temp.Dir() + "x.zip", Temp.Dir() + "body.tmp", Buffer, Size),
        EFormDataBodyError::FileNotReadable);
    EXPECT_EQ(WriteFormDataBody({"1", "", "windows", false, ""}, "", Temp.Dir() + "no/such/folder/body.tmp", Buffer, Size),
        EFormDataBodyError::BodyNotWritable);
}

TEST(FormDataBody, AFileOnAnotherFileSystemMakesTheSameBodyAndACancelStopsTheCopy)
{
    FTempDir Temp;
    std::string Bytes(300000, '\0');
    for (std::size_t Index = 0; Index < Bytes.size(); ++Index)
    {
        Bytes[Index] = static_cast<char>((Index * 7) % 251);
    }
    // The kernel's copy within one file system; /dev/shm, where present, is another one, whose
    // copy may fall back to reading and writing.
    std::vector<std::filesystem::path> Sources = {Temp.Path() / "UGC12.zip"};
    const std::filesystem::path Shm = "/dev/shm/maptorn-body-" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) + ".zip";
    std::error_code Error;
    if (std::filesystem::is_directory("/dev/shm", Error))
    {
        Sources.push_back(Shm);
    }
    std::vector<std::string> Bodies;
    for (const std::filesystem::path& Source : Sources)
    {
        WriteTextFile(Source, Bytes);
        std::vector<uint8> Buffer;
        int64 Size = 0;
        ASSERT_EQ(WriteFormDataBody({"4", "", "windows", true, "UGC12.zip"}, Source.string(), Temp.Dir() + "body.tmp", Buffer, Size, 65536),
            EFormDataBodyError::None);
        Bodies.push_back(ReadTextFile(Temp.Path() / "body.tmp"));
        EXPECT_EQ(Size, static_cast<int64>(Bodies.back().size()));
    }
    std::filesystem::remove(Shm, Error);
    EXPECT_EQ(Bodies.front().size(), MakeFormDataHead({"4", "", "windows", true, "UGC12.zip"}).size() + Bytes.size() + MakeFormDataTail().size());
    EXPECT_NE(Bodies.front().find(Bytes), std::string::npos);
    for (const std::string& Body : Bodies)
    {
        EXPECT_EQ(Body, Bodies.front());
    }

    const std::atomic<bool> bCancelled = true;
    std::vector<uint8> Buffer;
    int64 Size = 0;
    EXPECT_EQ(WriteBodyAroundFile("head", Sources.front().string(), "tail", Temp.Dir() + "cancelled.tmp", Buffer, Size, 65536, &bCancelled),
        EFormDataBodyError::Cancelled);
}
