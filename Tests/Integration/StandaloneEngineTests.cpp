#include "Platform/StandaloneEngine.h"
#include "Sample/SampleProject.h"

#include "Support/TempDir.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

using namespace Maptorn;
using Maptorn::Testing::FTempDir;
using Maptorn::Testing::ReadTextFile;
using Maptorn::Testing::WriteTextFile;
namespace fs = std::filesystem;

namespace
{
std::string PluginJson(const std::string& FriendlyName, bool bCanContainContent, bool bEnabledByDefault = false)
{
    nlohmann::json Json = {{"FileVersion", 3}, {"VersionName", "2.3"}, {"CanContainContent", bCanContainContent}};
    if (!FriendlyName.empty())
    {
        Json["FriendlyName"] = FriendlyName;
    }
    if (bEnabledByDefault)
    {
        Json["EnabledByDefault"] = true;
    }
    return Json.dump();
}

std::vector<std::string> Names(const std::vector<FPluginInfo>& Plugins)
{
    std::vector<std::string> Result;
    for (const FPluginInfo& Plugin : Plugins)
    {
        Result.push_back(Plugin.Name);
    }
    return Result;
}

// A fresh sample layout on disk; each test adds what it needs before it creates the engine.
class StandaloneEngineTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        Layout = Sample::CreateSampleLayout(Temp.Path().generic_string(), {});
        ASSERT_TRUE(Layout.bCreated) << Layout.FailReason;
    }

    FStandaloneEngine& Engine()
    {
        if (!EngineInstance)
        {
            EngineInstance = std::make_unique<FStandaloneEngine>(FStandaloneEngineSettings{
                Layout.ProjectFile, Layout.EngineRoot, Layout.UserSettingsDir, Temp.Dir() + "Engine/Binaries/Linux/"});
        }
        return *EngineInstance;
    }

    void AddProjectPluginReference(const std::string& Name, bool bEnabled)
    {
        nlohmann::json Project = nlohmann::json::parse(ReadTextFile(Layout.ProjectFile));
        Project["Plugins"].push_back({{"Name", Name}, {"Enabled", bEnabled}});
        WriteTextFile(Layout.ProjectFile, Project.dump(1, '\t'));
    }

    std::string ContentOnlyTemplate() const
    {
        return Layout.EngineRoot + "/Engine/Plugins/Editor/PluginBrowser/Templates/ContentOnly";
    }

    FTempDir Temp;
    Sample::FSampleLayout Layout;
    std::unique_ptr<FStandaloneEngine> EngineInstance;
};
}

TEST_F(StandaloneEngineTest, EngineVersionIsEmptyWhenBuildVersionIsUnreadable)
{
    WriteTextFile(Layout.EngineRoot + "/Engine/Build/Build.version", "{\"MajorVersion\": 5, \"MinorVersion\": ");
    EXPECT_EQ(Engine().EngineVersionString(), "");
}

TEST_F(StandaloneEngineTest, CatalogueDescribesEachPlugin)
{
    const std::string Plugins = Layout.ProjectDir + "Plugins/";
    WriteTextFile(Plugins + "Group/Deeper/Nested/Nested.uplugin", PluginJson("Nested Friendly", true));
    WriteTextFile(Plugins + "Plain/Plain.uplugin", PluginJson("", false));
    // Nothing below a folder that holds a descriptor is a plug-in.
    WriteTextFile(Plugins + "Plain/Templates/Hidden/Hidden.uplugin", PluginJson("Hidden", false));
    WriteTextFile(Plugins + "Broken/Broken.uplugin", "{ not json");

    const std::optional<FPluginInfo> Nested = Engine().FindPlugin("nested");
    ASSERT_TRUE(Nested.has_value());
    EXPECT_EQ(Nested->Name, "Nested");
    EXPECT_EQ(Nested->FriendlyName, "Nested Friendly");
    EXPECT_TRUE(Nested->bCanContainContent);
    EXPECT_TRUE(Nested->bEnabled);
    EXPECT_EQ(Nested->VersionName, "2.3");
    EXPECT_EQ(Nested->BaseDir, Plugins + "Group/Deeper/Nested");
    EXPECT_EQ(Nested->DescriptorFileName, Plugins + "Group/Deeper/Nested/Nested.uplugin");
    EXPECT_EQ(Nested->ContentDir, Plugins + "Group/Deeper/Nested/Content");

    const std::optional<FPluginInfo> Plain = Engine().FindPlugin("Plain");
    ASSERT_TRUE(Plain.has_value());
    EXPECT_EQ(Plain->FriendlyName, "Plain") << "the name stands in for a missing friendly name";
    EXPECT_FALSE(Plain->bCanContainContent);

    EXPECT_FALSE(Engine().FindPlugin("Hidden").has_value());
    EXPECT_FALSE(Engine().FindPlugin("Broken").has_value());
    EXPECT_FALSE(Engine().FindPlugin("Missing").has_value());
}

TEST_F(StandaloneEngineTest, EnabledPluginsFollowTheProjectAndEngineDefaults)
{
    const std::string ProjectPlugins = Layout.ProjectDir + "Plugins/";
    const std::string EnginePlugins = Layout.EngineRoot + "/Engine/Plugins/";
    WriteTextFile(ProjectPlugins + "Zeta/Zeta.uplugin", PluginJson("Zeta", true));
    WriteTextFile(ProjectPlugins + "Switched/Switched.uplugin", PluginJson("Switched Off", true));
    WriteTextFile(EnginePlugins + "Misc/OptIn/OptIn.uplugin", PluginJson("Opt In", false));
    WriteTextFile(EnginePlugins + "Misc/Dormant/Dormant.uplugin", PluginJson("Dormant", false));
    WriteTextFile(EnginePlugins + "Misc/Alpha/Alpha.uplugin", PluginJson("Alpha", false, true));
    // The project's copy hides the engine's plug-in of the same name.
    WriteTextFile(EnginePlugins + "Misc/Zeta/Zeta.uplugin", PluginJson("Engine Zeta", false, true));
    AddProjectPluginReference("switched", false);
    AddProjectPluginReference("OptIn", true);

    EXPECT_EQ(Names(Engine().GetEnabledPlugins()),
        (std::vector<std::string>{"Maptorn", "Zeta", "Alpha", "OptIn", "PluginBrowser"}));

    const std::optional<FPluginInfo> Switched = Engine().FindPlugin("Switched");
    ASSERT_TRUE(Switched.has_value());
    EXPECT_FALSE(Switched->bEnabled);
    EXPECT_FALSE(Engine().FindPlugin("Dormant")->bEnabled);
    EXPECT_EQ(Engine().FindPlugin("Zeta")->FriendlyName, "Zeta");
}

TEST_F(StandaloneEngineTest, CreatingAPluginFromTheContentOnlyTemplate)
{
    // The sample template holds only an icon and an empty Content/; add what the copy must rewrite or skip.
    WriteTextFile(ContentOnlyTemplate() + "/Config/DefaultPLUGIN_NAME.ini", "[PLUGIN_NAME]\nName=PLUGIN_NAME\n");
    WriteTextFile(ContentOnlyTemplate() + "/PLUGIN_NAME.uplugin", "{}");
    FPluginDescriptor Descriptor;
    Descriptor.FriendlyName = "Desert Outpost";
    Descriptor.Description = "A small map";
    Descriptor.CreatedBy = "Tester";

    std::string FailReason;
    ASSERT_TRUE(Engine().CreateAndLoadNewPlugin("DesertOutpost", Engine().ProjectPluginsDir(), ContentOnlyTemplate(),
        Descriptor, FailReason)) << FailReason;

    const std::string PluginDir = Layout.ProjectDir + "Plugins/DesertOutpost";
    const std::string Template = ContentOnlyTemplate();
    EXPECT_EQ(ReadTextFile(PluginDir + "/Resources/Icon128.png"), ReadTextFile(Template + "/Resources/Icon128.png"));
    EXPECT_EQ(ReadTextFile(PluginDir + "/Config/DefaultDesertOutpost.ini"), "[DesertOutpost]\nName=DesertOutpost\n");
    EXPECT_TRUE(fs::is_directory(PluginDir + "/Content"));
    EXPECT_FALSE(fs::exists(PluginDir + "/PLUGIN_NAME.uplugin"));

    EXPECT_EQ(ReadTextFile(PluginDir + "/DesertOutpost.uplugin"),
        "{\n\t\"FileVersion\": 3,\n\t\"Version\": 1,\n\t\"VersionName\": \"1.0\",\n"
        "\t\"FriendlyName\": \"Desert Outpost\",\n\t\"Description\": \"A small map\",\n\t\"Category\": \"Other\",\n"
        "\t\"CreatedBy\": \"Tester\",\n\t\"CreatedByURL\": \"\",\n\t\"DocsURL\": \"\",\n\t\"MarketplaceURL\": \"\",\n"
        "\t\"SupportURL\": \"\",\n\t\"CanContainContent\": true,\n\t\"IsBetaVersion\": false,\n"
        "\t\"IsExperimentalVersion\": false,\n\t\"Installed\": false\n}");

    const std::optional<FPluginInfo> Created = Engine().FindPlugin("desertoutpost");
    ASSERT_TRUE(Created.has_value());
    EXPECT_EQ(Created->FriendlyName, "Desert Outpost");
    EXPECT_TRUE(Created->bCanContainContent);
    EXPECT_EQ(Created->ContentDir, PluginDir + "/Content");
    const std::vector<std::string> Enabled = Names(Engine().GetEnabledPlugins());
    EXPECT_EQ(Enabled, (std::vector<std::string>{"DesertOutpost", "Maptorn", "PluginBrowser"}));

    // A second plug-in of the same name is refused and the first stays as it was.
    const std::string FirstDescriptor = ReadTextFile(PluginDir + "/DesertOutpost.uplugin");
    Descriptor.FriendlyName = "Impostor";
    EXPECT_FALSE(Engine().CreateAndLoadNewPlugin("DesertOutpost", Engine().ProjectPluginsDir(), Template,
        Descriptor, FailReason));
    EXPECT_NE(FailReason.find("DesertOutpost"), std::string::npos) << FailReason;
    EXPECT_EQ(ReadTextFile(PluginDir + "/DesertOutpost.uplugin"), FirstDescriptor);
    EXPECT_EQ(Engine().FindPlugin("DesertOutpost")->FriendlyName, "Desert Outpost");
}

TEST_F(StandaloneEngineTest, PluginCreationFailuresLeaveNothingBehind)
{
    const std::string Parent = Engine().ProjectPluginsDir();
    const auto Create = [&](const std::string& Name, const std::string& TemplateDir)
    {
        std::string FailReason;
        const bool bCreated = Engine().CreateAndLoadNewPlugin(Name, Parent, TemplateDir, FPluginDescriptor(), FailReason);
        EXPECT_FALSE(FailReason.empty()) << Name;
        return bCreated;
    };

    EXPECT_FALSE(Create("NoTemplate", Layout.Root + "/Missing/Template"));
    EXPECT_FALSE(Create("", ContentOnlyTemplate()));
    EXPECT_FALSE(Create("9Lives", ContentOnlyTemplate()));
    EXPECT_FALSE(Create("Has Space", ContentOnlyTemplate()));
    EXPECT_FALSE(Create("../Escape", ContentOnlyTemplate()));
    EXPECT_FALSE(Create("pluginbrowser", ContentOnlyTemplate())) << "names the engine already knows are taken";

    fs::create_directories(Parent + "Leftover");
    EXPECT_FALSE(Create("Leftover", ContentOnlyTemplate()));
    EXPECT_TRUE(fs::is_empty(Parent + "Leftover")) << "an existing folder is not written into";

    // A template file that cannot be read (a dangling link) fails the copy half-way; the
    // half-made folder goes.
    fs::create_symlink(Layout.Root + "/does-not-exist", ContentOnlyTemplate() + "/Resources/Broken.txt");
    EXPECT_FALSE(Create("HalfMade", ContentOnlyTemplate()));

    std::vector<std::string> Left;
    for (const fs::directory_entry& Entry : fs::directory_iterator(Parent))
    {
        Left.push_back(Entry.path().filename().string());
    }
    std::sort(Left.begin(), Left.end());
    EXPECT_EQ(Left, (std::vector<std::string>{"Leftover", "Maptorn"}));
    EXPECT_EQ(Names(Engine().GetEnabledPlugins()), (std::vector<std::string>{"Maptorn", "PluginBrowser"}));
}
