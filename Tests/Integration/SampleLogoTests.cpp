#include "Sample/SampleProject.h"

#include "Support/TempDir.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>

using namespace Maptorn;
using Maptorn::Testing::FTempDir;

namespace
{
std::string ReadBytes(const std::string& Path)
{
    std::ifstream In(Path, std::ios::binary);
    return {std::istreambuf_iterator<char>(In), std::istreambuf_iterator<char>()};
}
}

// `maptorn create` without --logo and `maptorn demo` send the sample plug-in's default logo, so
// it must be the file the plug-in ships, byte for byte, not a stand-in mod.io would refuse.
TEST(SampleProject, ItsDefaultLogoIsThePluginsOwn)
{
    FTempDir Temp;
    const Sample::FSampleLayout Layout = Sample::CreateSampleLayout(Temp.Dir() + "Sample");
    ASSERT_TRUE(Layout.bCreated) << Layout.FailReason;

    const std::string Shipped = ReadBytes(MAPTORN_RESOURCES_DIR "KelvorThumbnail.jpg");
    ASSERT_GT(Shipped.size(), 1000u);
    EXPECT_TRUE(ReadBytes(Layout.ProjectDir + "Plugins/Maptorn/Resources/KelvorThumbnail.jpg") == Shipped);
}
