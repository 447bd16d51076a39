// Installing an unpacked plug-in folder: a rename on one file system, a copy across two, and the
// old plug-in or the new one whole whatever fails.

#include "Support/FakePlatform.h"
#include "Support/ProjectSnapshot.h"
#include "Support/TempDir.h"
#include "Transfer/PluginFolderMove.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

using namespace Maptorn;
using namespace Maptorn::Testing;
namespace fs = std::filesystem;

namespace
{
// A rename that answers as one across two file systems does.
void CrossDeviceRename(const fs::path&, const fs::path&, std::error_code& Error)
{
    Error = std::make_error_code(std::errc::cross_device_link);
}

// A rename that refuses every move out of a folder named Refused.
PluginFolders::FRenameStep RefusingRenameFrom(const fs::path& Refused)
{
    return [Refused](const fs::path& From, const fs::path& To, std::error_code& Error) {
        if (From == Refused)
        {
            Error = std::make_error_code(std::errc::permission_denied);
            return;
        }
        fs::rename(From, To, Error);
    };
}

void LayOutPlugin(const fs::path& Root, const std::string& Marker)
{
    fs::create_directories(Root / "Content/Maps");
    fs::create_directories(Root / "Resources/Empty");
    WriteTextFile(Root / (Root.filename().string() + ".uplugin"), "{\"FriendlyName\": \"" + Marker + "\"}");
    WriteTextFile(Root / "Content/definition.json", Marker);
    WriteTextFile(Root / "Content/Maps/Arena.umap", std::string(70000, 'm') + Marker);
}

class PluginFolderMove : public ::testing::Test
{
protected:
    fs::path Source() const { return Temp.Path() / "Saved/Downloads/UGC1001/UGC1001"; }
    fs::path Target() const { return Temp.Path() / "Plugins/UGC1001"; }
    fs::path Work() const { return Temp.Path() / "Saved/Downloads/.install"; }

    bool Replace(const PluginFolders::FRenameStep& Rename)
    {
        return PluginFolders::ReplacePlugin(Log, "UGC1001", Source().generic_string(), Target().generic_string(), Work().generic_string(), Rename);
    }

    FTempDir Temp;
    FRecordingLog Log;
};
}

TEST_F(PluginFolderMove, RenameAndCrossFileSystemCopyInstallTheSameTree)
{
    std::vector<FProjectSnapshot> Installed;
    for (const PluginFolders::FRenameStep& Rename : {PluginFolders::FRenameStep{}, PluginFolders::FRenameStep(CrossDeviceRename)})
    {
        fs::remove_all(Temp.Path() / "Saved");
        fs::remove_all(Target());
        LayOutPlugin(Source(), "new");
        LayOutPlugin(Target(), "old");
        WriteTextFile(Target() / "Content/OldOnly.txt", "from before");

        ASSERT_TRUE(Replace(Rename));
        Installed.push_back(SnapshotTree(Target()));
        EXPECT_FALSE(fs::exists(Source())) << "the unpacked folder is moved, not left behind";
        EXPECT_FALSE(fs::exists(Work() / "UGC1001.previous")) << "the old plug-in is deleted once the new one is in";
        EXPECT_TRUE(Log.Lines.empty());
    }
    EXPECT_EQ(Installed[0], Installed[1]);
    EXPECT_EQ(Installed[0].count("Content/OldOnly.txt"), 0u);
    EXPECT_EQ(Installed[0].at("Content/definition.json"), "new");
    EXPECT_EQ(Installed[0].at("Resources/Empty"), "<dir>");
}

TEST_F(PluginFolderMove, AFailedMoveLeavesTheOldPluginWholeAndSaysWhich)
{
    struct FCase
    {
        const char* Refused;   // the folder the rename will not move
        const char* Line;
    };
    for (const FCase& Case : {FCase{"source", "[MOD] Failed to move plugin UGC1001"},
                              FCase{"target", "[MOD] Failed to delete plugin UGC1001 prior to moving downloaded plugin"}})
    {
        SCOPED_TRACE(Case.Refused);
        fs::remove_all(Temp.Path() / "Saved");
        fs::remove_all(Target());
        Log.Lines.clear();
        LayOutPlugin(Source(), "new");
        LayOutPlugin(Target(), "old");
        const FProjectSnapshot Before = SnapshotTree(Target());

        EXPECT_FALSE(Replace(RefusingRenameFrom(std::string(Case.Refused) == "source" ? Source() : Target())));
        EXPECT_EQ(SnapshotTree(Target()), Before);
        EXPECT_FALSE(fs::exists(Work() / "UGC1001.previous"));
        EXPECT_TRUE(Log.Has("LogTemp", ELogVerbosity::Log, Case.Line));
    }
}

TEST_F(PluginFolderMove, AFolderOnAnotherFileSystemIsCopiedAndRemoved)
{
    // /dev/shm is a memory file system on most Linux machines; without a second one there is nothing to prove here.
    struct stat Shm {};
    struct stat Tmp {};
    if (stat("/dev/shm", &Shm) != 0 || stat(Temp.Path().c_str(), &Tmp) != 0 || Shm.st_dev == Tmp.st_dev || access("/dev/shm", W_OK) != 0)
    {
        GTEST_SKIP() << "no second writable file system";
    }
    const fs::path Elsewhere = fs::path("/dev/shm") / ("maptorn-move-" + std::to_string(getpid())) / "UGC1001";
    LayOutPlugin(Elsewhere, "new");
    const FProjectSnapshot Expected = SnapshotTree(Elsewhere);
    fs::create_directories(Target().parent_path());

    EXPECT_TRUE(PluginFolders::MoveFolder(Elsewhere.generic_string(), Target().generic_string()));
    EXPECT_EQ(SnapshotTree(Target()), Expected);
    EXPECT_FALSE(fs::exists(Elsewhere));
    fs::remove_all(Elsewhere.parent_path());
}
