// How a source-plug-in download walks its ranged chunks, and what its install takes from the
// unpacked archive, against an in-process HTTP port and a temporary project.

#include "Support/CannedHttp.h"
#include "Support/FakePlatform.h"
#include "Support/TempDir.h"
#include "Transfer/PluginModDownload.h"

#include <gtest/gtest.h>

#include <filesystem>

using namespace Maptorn;
using namespace Maptorn::Testing;
namespace fs = std::filesystem;

namespace
{
// Unpacks as the archive of a mod holding two plug-ins and a folder of documents would.
class FTwoPluginArchive final : public IMaptornArchive
{
public:
    bool ExtractAll(const std::string&, const std::string& DestinationDir, std::string&) override
    {
        for (const char* Plugin : {"UGC5", "UGC6"})
        {
            fs::create_directories(fs::path(DestinationDir) / Plugin / "Content");
            WriteTextFile(fs::path(DestinationDir) / Plugin / (std::string(Plugin) + ".uplugin"), "{}");
        }
        fs::create_directories(fs::path(DestinationDir) / "Docs");
        WriteTextFile(fs::path(DestinationDir) / "Docs/ReadMe.txt", "not a plug-in");
        return true;
    }
};

class PluginDownloadChunks : public ::testing::Test
{
protected:
    PluginDownloadChunks()
    {
        Fakes.Engine.BaseDir = Temp.Dir();
        Fakes.Engine.Project = Temp.Dir() + "Project/";
        Download->DownloadMod("https://cdn.example/UGC5.zip", "UGC5", 3, "5");
    }

    // Answers the request in flight; answers how many requests have been sent so far.
    size_t Answer(FCannedHttp::FAnswer Reply)
    {
        Http.Answers.push_back(std::move(Reply));
        Http.Pump();
        return Http.Sent.size();
    }

    FTempDir Temp;
    FFakePlatform Fakes;
    FCannedHttp Http;
    FTwoPluginArchive Archive;
    FMaptornPlatform Platform{Fakes.Log, Fakes.Dialogs, Fakes.Engine, Fakes.Definitions, Fakes.Processes, Fakes.Tasks, Http, Archive, &Fakes.Session};
    std::shared_ptr<FPluginModDownload> Download = std::make_shared<FPluginModDownload>(Platform);
};
}

TEST_F(PluginDownloadChunks, AServerThatIgnoresRangesIsDoneAfterOneRequest)
{
    EXPECT_EQ(Http.Sent[0]->GetHeader("Range"), "bytes=0-511999999");
    EXPECT_EQ(Answer({true, 200, "whole archive", ""}), 1u);
    EXPECT_EQ(Download->GetState(), EPluginDownloadState::Extracting);
}

TEST_F(PluginDownloadChunks, AnArchiveOfOneChunkTakesOneRequestAndOneByteMoreTakesTwo)
{
    EXPECT_EQ(Answer({true, 206, "", "bytes 0-511999999/512000000"}), 1u);
    EXPECT_EQ(Download->GetState(), EPluginDownloadState::Extracting);

    auto Longer = std::make_shared<FPluginModDownload>(Platform);
    Longer->DownloadMod("https://cdn.example/UGC6.zip", "UGC6", 1, "6");
    ASSERT_EQ(Answer({true, 206, "", "bytes 0-511999999/512000001"}), 3u) << "the next chunk is asked for";
    EXPECT_EQ(Http.Sent[2]->GetHeader("Range").rfind("bytes=512000000-", 0), 0u);
    EXPECT_EQ(Longer->GetState(), EPluginDownloadState::Downloading);
    EXPECT_EQ(Answer({true, 206, "", "bytes 512000000-512000000/512000001"}), 3u);
    EXPECT_EQ(Longer->GetState(), EPluginDownloadState::Extracting);
}

TEST_F(PluginDownloadChunks, EveryUGCFolderOfTheArchiveIsInstalledAndOtherFoldersAreNot)
{
    fs::create_directories(Temp.Path() / "Project/Plugins/Mine");
    Answer({true, 200, "archive", ""});
    Fakes.Tasks.RunBackground();
    Download->Update();

    EXPECT_EQ(Download->GetState(), EPluginDownloadState::Complete);
    EXPECT_TRUE(fs::exists(Temp.Path() / "Project/Plugins/UGC5/UGC5.uplugin"));
    EXPECT_TRUE(fs::exists(Temp.Path() / "Project/Plugins/UGC6/UGC6.uplugin"));
    EXPECT_FALSE(fs::exists(Temp.Path() / "Project/Plugins/Docs"));
    EXPECT_TRUE(fs::exists(fs::path(Download->ExtractFolder()) / "Docs/ReadMe.txt")) << "a folder that is no plug-in stays where it was unpacked";
    EXPECT_TRUE(fs::exists(Temp.Path() / "Project/Plugins/Mine")) << "the project's other plug-ins stay";
}
