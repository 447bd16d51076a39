#include "Support/TempDir.h"
#include "Workshop/WorkshopRows.h"

#include <gtest/gtest.h>

using namespace Maptorn;
using namespace Maptorn::Testing;

namespace
{
FSourceModInfo ModWithThumbnail(const std::string& ThumbnailPath)
{
    FSourceModInfo Mod;
    Mod.PluginName = "UGC31";
    Mod.ThumbnailPath = ThumbnailPath;
    return Mod;
}
}

TEST(WorkshopRowArt, BothRowsDrawTheThumbnailFileTheRecordNames)
{
    const FTempDir Folder;
    const std::string Thumbnail = (Folder.Path() / "UGC31.png").generic_string();
    WriteTextFile(Thumbnail, "image");

    EXPECT_EQ(FWorkshopUploadEntry(ModWithThumbnail(Thumbnail), {}, nullptr).GetLogoPath(), Thumbnail);
    EXPECT_EQ(FWorkshopSourcePluginEntry(ModWithThumbnail(Thumbnail), {}, nullptr).GetLogoPath(), Thumbnail);
}

TEST(WorkshopRowArt, ARowWithoutAThumbnailFileShowsThePlaceholder)
{
    const FTempDir Folder;
    const std::string Missing = (Folder.Path() / "UGC31.jpg").generic_string();

    EXPECT_EQ(FWorkshopUploadEntry(ModWithThumbnail(Missing), {}, nullptr).GetLogoPath(), "");
    EXPECT_EQ(FWorkshopSourcePluginEntry(ModWithThumbnail(""), {}, nullptr).GetLogoPath(), "");
}

TEST(WorkshopRowArt, PlatformBadgesShowOnlyThePlatformsTheModIsBuiltFor)
{
    const struct
    {
        bool bWindows;
        bool bOculus;
        EVisibility PC;
        EVisibility Android;
    } Cases[] = {
        {false, false, EVisibility::Collapsed, EVisibility::Collapsed},
        {true, false, EVisibility::Visible, EVisibility::Collapsed},
        {false, true, EVisibility::Collapsed, EVisibility::Visible},
        {true, true, EVisibility::Visible, EVisibility::Visible},
    };
    for (const auto& Case : Cases)
    {
        FSourceModInfo Mod;
        Mod.bWindows = Case.bWindows;
        Mod.bOculus = Case.bOculus;
        const FWorkshopUploadEntry Upload(Mod, {}, nullptr);
        const FWorkshopSourcePluginEntry Source(Mod, {}, nullptr);
        EXPECT_EQ(Upload.GetPCBadgeVisibility(), Case.PC);
        EXPECT_EQ(Upload.GetAndroidBadgeVisibility(), Case.Android);
        EXPECT_EQ(Source.GetPCBadgeVisibility(), Case.PC);
        EXPECT_EQ(Source.GetAndroidBadgeVisibility(), Case.Android);
    }
}
