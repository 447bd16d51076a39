// Sending a mod file to the sandbox service with the uploader: part by part with its announced
// layout, and as one form-data body streamed from the Saved folder.

#include "Common/Md5.h"
#include "Transfer/FormDataBody.h"
#include "Transfer/GrowingFile.h"
#include "Transfer/ModioMultipartUpload.h"
#include "Support/SandboxFixture.h"

#include <httplib.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <optional>
#include <thread>

using namespace Maptorn;
using namespace Maptorn::Testing;
namespace fs = std::filesystem;

namespace
{
constexpr int32 P = FModioMultipartUpload::PartSize;

class ModFileUpload : public FSandboxTest
{
protected:
    void SetUp() override
    {
        FSandboxTest::SetUp();
        Sandbox.SetAcceptLegacyContentRange(true);
        fs::create_directories(Temp.Path() / "Project/Saved");
        fs::create_directories(Temp.Path() / "Files");
    }

    std::shared_ptr<FModioMultipartUpload> MakeUpload(const std::string& FileName)
    {
        auto Upload = std::make_shared<FModioMultipartUpload>(Platform, Sandbox.GetBaseUrl(), 1);
        Upload->ModId = "1001";
        Upload->AuthToken = Sandbox.IssueTokenFor("modder@example.com");
        Upload->FileName = FileName;
        Upload->FileFolder = Temp.Dir() + "Files";
        Upload->FilePath = Temp.Dir() + "Files/" + FileName;
        Upload->OnFinished = [this](bool bSucceeded) { Finished.push_back(bSucceeded); };
        return Upload;
    }

    void WaitForEnd() { TickUntil([this] { return !Finished.empty(); }); }

    // A sparse file: sizes of parts and ranges without writing hundreds of megabytes.
    std::string SparseFile(const std::string& Name, int64 Size)
    {
        const fs::path Path = Temp.Path() / "Files" / Name;
        std::ofstream(Path, std::ios::binary).close();
        fs::resize_file(Path, static_cast<std::uintmax_t>(Size));
        return Name;
    }

    // A small real ZIP archive (the service only takes ZIP mod files).
    std::string ZipFile(const std::string& Name)
    {
        const fs::path Source = Temp.Path() / "ZipSource";
        fs::create_directories(Source);
        WriteTextFile(Source / "readme.txt", std::string(5000, 'k'));
        const std::string Command = "cd '" + Source.string() + "' && zip -qr '" + (Temp.Path() / "Files" / Name).string() + "' .";
        EXPECT_EQ(std::system(Command.c_str()), 0);
        return Name;
    }

    std::vector<Sandbox::FRecordedRequest> Requests(const std::string& Method, const std::string& PathPart) const
    {
        std::vector<Sandbox::FRecordedRequest> Found;
        for (const Sandbox::FRecordedRequest& Request : Sandbox.RequestLog())
        {
            if (Request.Method == Method && Request.Path.find(PathPart) != std::string::npos)
            {
                Found.push_back(Request);
            }
        }
        return Found;
    }

    std::vector<bool> Finished;
};
}

TEST(MultipartLayout, OnePartUpToOneByteShortOfFiftyMebibytesThenTheAnnouncedLayout)
{
    const auto Single = FModioMultipartUpload::MakeParts(P);
    ASSERT_EQ(Single.size(), 1u);
    EXPECT_EQ(Single[0].Size, P);

    // One byte more: the count truncates to 1 and the trailing part is declared a part further on.
    const auto Two = FModioMultipartUpload::MakeParts(P + 1);
    ASSERT_EQ(Two.size(), 2u);
    EXPECT_EQ(Two[0].Offset, 0);
    EXPECT_EQ(Two[0].Size, P);
    EXPECT_EQ(Two[1].Offset, 104857598);
    EXPECT_EQ(Two[1].Size, P);
    EXPECT_EQ(Two[1].Index, 1);

    const auto Three = FModioMultipartUpload::MakeParts(104857600);
    ASSERT_EQ(Three.size(), 3u);
    EXPECT_EQ(FModioMultipartUpload::MakeContentRange(Three[0], 104857600), "0-52428799/104857600");
    EXPECT_EQ(FModioMultipartUpload::MakeContentRange(Three[1], 104857600), "52428799-52428799/104857600");
}

TEST_F(ModFileUpload, ASmallFileIsOpenedSentAsOnePartAndCompletedWith201)
{
    auto Upload = MakeUpload(ZipFile("UGC1001.zip"));
    const int64 Size = static_cast<int64>(fs::file_size(Upload->FilePath));
    std::vector<float> Progress;
    Upload->OnProgress = [&](float Value) { Progress.push_back(Value); };
    Upload->Start();
    WaitForEnd();

    EXPECT_EQ(Finished, std::vector<bool>{true});
    EXPECT_FALSE(Upload->bBusy);
    const auto Parts = Requests("PUT", "/files/multipart");
    ASSERT_EQ(Parts.size(), 1u);
    EXPECT_EQ(Parts[0].Headers.at("content-range"), "0-" + std::to_string(Size) + "/" + std::to_string(Size));
    EXPECT_EQ(Parts[0].BodySize, static_cast<size_t>(Size));
    EXPECT_EQ(Parts[0].Headers.at("authorization").rfind("Bearer sbx.", 0), 0u);
    const auto Created = Requests("POST", "/files/multipart");
    ASSERT_GE(Created.size(), 2u);
    EXPECT_EQ(Created[0].Headers.at("content-type"), "application/x-www-form-urlencoded");
    EXPECT_EQ(Created.back().Status, 201);
    EXPECT_TRUE(Fakes.Log.Has("LogTemp", ELogVerbosity::Log, "Create multipart mod file upload succeed"));
    EXPECT_TRUE(Fakes.Log.Has("LogTemp", ELogVerbosity::Log, "Uploading 1 parts"));
    ASSERT_FALSE(Progress.empty());
    EXPECT_FLOAT_EQ(Progress.back(), 1.0f);
}

TEST_F(ModFileUpload, PartsGoOneAfterAnotherWithTheirRangesAndTheDeclaredTrailingPartCannotBeRead)
{
    auto Upload = MakeUpload(SparseFile("Big.zip", 104857600));
    Upload->Start();
    WaitForEnd();

    const auto Parts = Requests("PUT", "/files/multipart");
    ASSERT_EQ(Parts.size(), 2u);
    EXPECT_EQ(Parts[0].Headers.at("content-range"), "0-52428799/104857600");
    EXPECT_EQ(Parts[1].Headers.at("content-range"), "52428799-52428799/104857600");
    EXPECT_EQ(Parts[1].BodySize, static_cast<size_t>(P));
    EXPECT_TRUE(Fakes.Log.Has("LogTemp", ELogVerbosity::Log, "Uploading 3 parts"));
    // The third part is declared past the end of the file, so reading it fails and nothing completes.
    EXPECT_EQ(Finished, std::vector<bool>{false});
    EXPECT_TRUE(Fakes.Log.Has("LogTemp", ELogVerbosity::Error,
        "Uploading part failed to read to buffer " + Upload->FilePath + ", Part.Size = "));
    EXPECT_TRUE(Requests("POST", "/multipart/complete").empty());
    EXPECT_LE(Upload->PartBuffer.capacity(), static_cast<size_t>(P)) << "one reused part buffer";
}

TEST_F(ModFileUpload, OnlyA201CompletesTheUpload)
{
    Sandbox.InjectFault({"/v1/games/1/mods/1001/files/multipart/complete", "POST", 1, Sandbox::EFaultKind::Status, 200});
    auto Upload = MakeUpload(ZipFile("UGC1001.zip"));
    Upload->Start();
    WaitForEnd();
    EXPECT_EQ(Finished, std::vector<bool>{false});
    EXPECT_FALSE(Upload->bBusy);
    EXPECT_TRUE(Fakes.Log.Has("LogTemp", ELogVerbosity::Error, "Create multipart upload failed"));
}

TEST_F(ModFileUpload, ServerFaultsAndAbortsEndOnceWithFalse)
{
    Sandbox.InjectFault({"/v1/games/1/mods/1001/files/multipart", "POST", 1, Sandbox::EFaultKind::Status, 500});
    auto Refused = MakeUpload(ZipFile("UGC1001.zip"));
    Refused->Start();
    WaitForEnd();
    EXPECT_EQ(Finished, std::vector<bool>{false});
    EXPECT_FALSE(Refused->bBusy);
    bool bCreateLine = false;
    for (const FLogLine& Line : Fakes.Log.Lines)
    {
        bCreateLine = bCreateLine || Line.Message.rfind("Create multipart upload failed with error 500 \n\n{", 0) == 0;
    }
    EXPECT_TRUE(bCreateLine);

    Finished.clear();
    Sandbox.InjectFault({"/v1/games/1/mods/1001/files/multipart", "PUT", 1, Sandbox::EFaultKind::CloseMidBody});
    auto Dropped = MakeUpload("UGC1001.zip");
    Dropped->Start();
    WaitForEnd();
    EXPECT_EQ(Finished, std::vector<bool>{false});
    EXPECT_TRUE(Fakes.Log.Has("LogTemp", ELogVerbosity::Error, "Upload multipart failed"));

    Finished.clear();
    auto Aborted = MakeUpload("UGC1001.zip");
    Aborted->Start();
    Aborted->Abort();
    WaitForEnd();
    EXPECT_EQ(Finished, std::vector<bool>{false});
    EXPECT_FALSE(Aborted->bBusy);
    EXPECT_TRUE(Fakes.Log.Has("LogTemp", ELogVerbosity::Error, "Create multipart upload was aborted"));
}

TEST_F(ModFileUpload, AFormDataBodyIsStreamedFromSavedAndTheServiceKeepsTheFileAndItsFields)
{
    auto Upload = MakeUpload(ZipFile("UGC1001.zip"));
    Upload->Version = "7";
    Upload->Changelog = "Brighter harbour";
    Upload->Platform = "windows";
    Upload->SendFormData(true);
    WaitForEnd();
    ASSERT_EQ(Finished, std::vector<bool>{true});
    EXPECT_FALSE(Upload->bBusy);

    const fs::path Body = Temp.Path() / "Project/Saved/modio_upload.tmp";
    ASSERT_TRUE(fs::exists(Body)) << "the body stays until the next upload";
    const auto Posts = Requests("POST", "/v1/games/1/mods/1001/files");
    ASSERT_EQ(Posts.size(), 1u);
    EXPECT_EQ(Posts[0].Headers.at("content-type"), "multipart/form-data; boundary=f0Qkq8EArxUcuH62RDyzNZKjZ5uYeJu5pBH5b9lZ");
    EXPECT_EQ(Posts[0].Headers.at("content-length"), std::to_string(fs::file_size(Body)));

    httplib::Client Client("127.0.0.1", Sandbox.GetPort());
    const auto Listed = Client.Get("/v1/games/1/mods/1001/files?api_key=" + std::string(ApiKey));
    ASSERT_TRUE(Listed);
    const nlohmann::json Files = nlohmann::json::parse(Listed->body)["data"];
    ASSERT_FALSE(Files.empty());
    const nlohmann::json& Newest = Files.back();
    EXPECT_EQ(Newest["version"], "7");
    EXPECT_EQ(Newest["changelog"], "Brighter harbour");
    EXPECT_EQ(Newest["filesize"], fs::file_size(Temp.Path() / "Files/UGC1001.zip"));
    EXPECT_EQ(Newest["platforms"][0]["platform"], "windows");
}

TEST_F(ModFileUpload, ABodyWithoutTheFileIsRefusedByTheServiceAndReportedAsFailure)
{
    auto Upload = MakeUpload("UGC1001.zip");
    Upload->Version = "1";
    Upload->Platform = "android";
    Upload->SendFormData(false);
    WaitForEnd();
    EXPECT_EQ(Finished, std::vector<bool>{false});
    const auto Posts = Requests("POST", "/v1/games/1/mods/1001/files");
    ASSERT_EQ(Posts.size(), 1u);
    EXPECT_EQ(Posts[0].Headers.at("content-length"), std::to_string(fs::file_size(Temp.Path() / "Project/Saved/modio_upload.tmp")));
    EXPECT_EQ(Posts[0].Status, 422);
}

TEST_F(ModFileUpload, ATemporaryBodyThatCannotBeDeletedStopsBeforeAnythingIsSent)
{
    const fs::path Body = Temp.Path() / "Project/Saved/modio_upload.tmp";
    WriteTextFile(Body, "an earlier body");
    const std::string Protect = "chattr +i '" + Body.string() + "' 2>/dev/null";
    if (std::system(Protect.c_str()) != 0)
    {
        GTEST_SKIP() << "this file system cannot make a file undeletable";
    }
    auto Upload = MakeUpload(ZipFile("UGC1001.zip"));
    Upload->SendFormData(true);
    std::system(("chattr -i '" + Body.string() + "'").c_str());

    EXPECT_EQ(Finished, std::vector<bool>{false});
    EXPECT_FALSE(Upload->bBusy);
    EXPECT_TRUE(Fakes.Log.Has("LogTemp", ELogVerbosity::Error, "Assertion failed: PlatformFile.FileExists(*TmpFilePath) == false"));
    EXPECT_EQ(ReadTextFile(Body), "an earlier body");
    EXPECT_TRUE(Requests("POST", "/files").empty());
}

TEST_F(ModFileUpload, AMissingFileEndsTheFormDataUploadWithoutARequest)
{
    auto Upload = MakeUpload("Missing.zip");
    Upload->SendFormData(true);
    EXPECT_EQ(Finished, std::vector<bool>{false});
    EXPECT_TRUE(Fakes.Log.Has("LogTemp", ELogVerbosity::Error,
        "Upload file failed to open for read, disk might be full or no-read/write permissions"));
    EXPECT_TRUE(Requests("POST", "/files").empty());
}

// A body sent while another thread still writes it: every read waits for the writer, so the
// service stores the archive whole however slowly it is written; a writer that stops short gives
// up the request instead of sending what is not there.
TEST_F(ModFileUpload, ABodyStillBeingWrittenIsSentWholeOrNotAtAll)
{
    const std::string Archive = ZipFile("UGC1001.zip");
    const std::string ArchiveBytes = ReadTextFile(Temp.Path() / "Files" / Archive);
    FFormDataFields Fields;
    Fields.Version = "3";
    Fields.Platform = "windows";
    Fields.bIncludeFile = true;
    Fields.FileName = Archive;
    const std::string Body = MakeFormDataHead(Fields) + ArchiveBytes + MakeFormDataTail();
    const std::string BodyPath = Temp.Dir() + "growing.tmp";
    const auto StoredFiles = [&]
    {
        httplib::Client Client("127.0.0.1", Sandbox.GetPort());
        return nlohmann::json::parse(Client.Get("/v1/games/1/mods/1001/files?api_key=" + std::string(ApiKey))->body)["data"];
    };

    for (const bool bWriterFails : {false, true})
    {
        const std::size_t StoredBefore = StoredFiles().size();
        WriteTextFile(BodyPath, "");
        auto Writer = std::make_shared<FGrowingFile>();
        FHttpRequestPtr Request = Http.CreateRequest();
        Request->SetVerb("POST");
        Request->SetURL(Sandbox.GetBaseUrl() + "/v1/games/1/mods/1001/files");
        Request->SetHeader("Authorization", "Bearer " + Sandbox.IssueTokenFor("modder@example.com"));
        Request->SetHeader("Content-Type", std::string("multipart/form-data; boundary=") + FormDataBoundary);
        ASSERT_TRUE(Request->SetContentAsGrowingFile(BodyPath, static_cast<int64>(Body.size()), Writer));
        std::optional<bool> bConnected;
        int32 Status = 0;
        Request->OnProcessRequestComplete() = [&](FHttpRequestPtr, FHttpResponsePtr Response, bool bOk)
        {
            bConnected = bOk;
            Status = Response ? Response->GetResponseCode() : 0;
        };
        ASSERT_TRUE(Request->ProcessRequest());
        // Three pieces with pauses between them; a failing writer stops after the first.
        std::thread Writing([&]
        {
            std::ofstream File(BodyPath, std::ios::binary);
            const std::size_t Piece = Body.size() / 3 + 1;
            for (std::size_t Offset = 0; Offset < Body.size(); Offset += Piece)
            {
                const std::size_t Size = std::min(Piece, Body.size() - Offset);
                File.write(Body.data() + Offset, static_cast<std::streamsize>(Size)).flush();
                Writer->Advance(static_cast<int64>(Size));
                std::this_thread::sleep_for(std::chrono::milliseconds(150));
                if (bWriterFails)
                {
                    break;
                }
            }
            Writer->Finish(!bWriterFails);
        });
        TickUntil([&] { return bConnected.has_value(); });
        Writing.join();

        const nlohmann::json Stored = StoredFiles();
        if (bWriterFails)
        {
            EXPECT_FALSE(*bConnected);
            EXPECT_EQ(Stored.size(), StoredBefore);
        }
        else
        {
            EXPECT_TRUE(*bConnected);
            EXPECT_EQ(Status, 201);
            ASSERT_EQ(Stored.size(), StoredBefore + 1);
            EXPECT_EQ(Stored.back()["filehash"]["md5"], FMd5::OfText(ArchiveBytes));
        }
    }
}
