#include "Sample/SampleProject.h"

#include "Common/FileHelper.h"
#include "Common/Paths.h"
#include "Sample/DefaultLogo.h"
#include "Sample/StandinInstall.h"

#include <nlohmann/json.hpp>

#include <filesystem>
#include <fstream>
#include <span>

namespace Maptorn::Sample
{
namespace
{
using FOrderedJson = nlohmann::ordered_json;

// A 1x1 RGB PNG made for this sample (the template icon the engine copies into new plug-ins).
constexpr unsigned char IconPng[] = {
    0x89, 0x50, 0x4e, 0x47, 0x0d, 0x0a, 0x1a, 0x0a, 0x00, 0x00, 0x00, 0x0d, 0x49, 0x48, 0x44, 0x52, 0x00, 0x00,
    0x00, 0x01, 0x00, 0x00, 0x00, 0x01, 0x08, 0x02, 0x00, 0x00, 0x00, 0x90, 0x77, 0x53, 0xde, 0x00, 0x00, 0x00,
    0x0c, 0x49, 0x44, 0x41, 0x54, 0x08, 0x99, 0x63, 0xb0, 0xca, 0x5b, 0x0a, 0x00, 0x02, 0x33, 0x01, 0x4e, 0xf3,
    0x2a, 0x2b, 0x8e, 0x00, 0x00, 0x00, 0x00, 0x49, 0x45, 0x4e, 0x44, 0xae, 0x42, 0x60, 0x82};

// Writes files and folders, remembering the first failure so the layout reads as a plain list.
class FLayoutWriter
{
public:
    void Folder(const std::string& Path)
    {
        if (bOk && !FileSystem::CreateDirectoryTree(Path))
        {
            Fail("Could not create the folder " + Path + ".");
        }
    }

    void Text(const std::string& Path, const std::string& Text)
    {
        Folder(Paths::GetPath(Path));
        if (bOk && !FileHelper::SaveStringToFile(Text, Path))
        {
            Fail("Could not write " + Path + ".");
        }
    }

    void Json(const std::string& Path, const FOrderedJson& Json) { Text(Path, Json.dump(1, '\t')); }

    // Images go through a plain binary stream: FileHelper saves text, and would re-encode
    // high bytes as UTF-16.
    void Bytes(const std::string& Path, std::span<const unsigned char> Data)
    {
        Folder(Paths::GetPath(Path));
        if (!bOk)
        {
            return;
        }
        std::ofstream Out(Path, std::ios::binary | std::ios::trunc);
        Out.write(reinterpret_cast<const char*>(Data.data()), static_cast<std::streamsize>(Data.size()));
        if (!Out)
        {
            Fail("Could not write " + Path + ".");
        }
    }

    bool IsOk() const { return bOk; }
    const std::string& GetFailReason() const { return FailReason; }

private:
    void Fail(std::string Reason)
    {
        bOk = false;
        FailReason = std::move(Reason);
    }

    bool bOk = true;
    std::string FailReason;
};

FOrderedJson MakeProjectJson()
{
    FOrderedJson Project;
    Project["FileVersion"] = 3;
    Project["EngineAssociation"] = "5.1";
    Project["Category"] = "";
    Project["Description"] = "";
    Project["Modules"] = FOrderedJson::array();
    Project["Plugins"] = FOrderedJson::array({FOrderedJson{{"Name", "Maptorn"}, {"Enabled", true}}});
    return Project;
}

FOrderedJson MakePluginJson(const std::string& FriendlyName, const std::string& VersionName,
    const std::string& Category, bool bEnabledByDefault)
{
    FOrderedJson Plugin;
    Plugin["FileVersion"] = 3;
    Plugin["Version"] = 1;
    Plugin["VersionName"] = VersionName;
    Plugin["FriendlyName"] = FriendlyName;
    Plugin["Description"] = "";
    Plugin["Category"] = Category;
    Plugin["CreatedBy"] = "";
    Plugin["CanContainContent"] = false;
    if (bEnabledByDefault)
    {
        Plugin["EnabledByDefault"] = true;
    }
    Plugin["Installed"] = false;
    return Plugin;
}

FOrderedJson MakeBuildVersionJson()
{
    FOrderedJson Build;
    Build["MajorVersion"] = 5;
    Build["MinorVersion"] = 1;
    Build["PatchVersion"] = 1;
    Build["Changelist"] = 23901901;
    Build["CompatibleChangelist"] = 23901901;
    Build["IsLicenseeVersion"] = 0;
    Build["IsPromotedBuild"] = 1;
    Build["BranchName"] = "++UE5+Release-5.1";
    return Build;
}

// A comment, an array line and a section unrelated to streaming, so that editing the loader
// switch can be checked against neighbours that must not move.
std::string MakeDefaultEngineIni(const FSampleOptions& Options)
{
    return "[/Script/EngineSettings.GameMapsSettings]\n"
           "GameDefaultMap=/Engine/Maps/Templates/Template_Default\n"
           "\n"
           "[/Script/Engine.Engine]\n"
           "+ActiveGameNameRedirects=(OldGameName=\"TP_Blank\",NewGameName=\"/Script/" + Options.ProjectName + "\")\n"
           "\n"
           "[/Script/Engine.StreamingSettings]\n"
           "; Loader setting used when cooking content for the game.\n"
           "s.EventDrivenLoaderEnabled=" + std::string(Options.bEventDrivenLoaderEnabled ? "True" : "False") + "\n";
}

std::string MakeGameUserSettingsIni(const FSampleOptions& Options)
{
    std::string Ini = "[ScalabilityGroups]\n"
                      "sg.ResolutionQuality=100.000000\n"
                      "\n"
                      "[/Script/Kelvor.KelvorGameUserSettings]\n"
                      "bUseVSync=False\n";
    if (Options.ModDirectory)
    {
        Ini += "ModDirectory=" + *Options.ModDirectory + "\n";
    }
    return Ini;
}

std::string AbsoluteRoot(const std::string& Root)
{
    std::error_code Error;
    const std::string Current = std::filesystem::current_path(Error).generic_string();
    std::string Full = Paths::ConvertRelativePathToFull(Current, Root);
    while (Full.size() > 1 && Full.back() == '/')
    {
        Full.pop_back();
    }
    return Full;
}
}

FSampleLayout CreateSampleLayout(const std::string& Root, const FSampleOptions& Options)
{
    FSampleLayout Layout;
    Layout.Root = AbsoluteRoot(Root);
    Layout.ProjectDir = Layout.Root + "/Project/";
    Layout.ProjectFile = Layout.ProjectDir + Options.ProjectName + ".uproject";
    // Named like an installed engine, so the automation tool's log folder carries the version.
    Layout.EngineRoot = Layout.Root + "/UE_5.1";
    Layout.UserSettingsDir = Layout.Root + "/UserSettings/";

    FLayoutWriter Writer;
    Writer.Json(Layout.ProjectFile, MakeProjectJson());
    Writer.Text(Layout.ProjectDir + "Config/DefaultEngine.ini", MakeDefaultEngineIni(Options));
    Writer.Folder(Layout.ProjectDir + "Content/CustomMaps");
    Writer.Json(Layout.ProjectDir + "Plugins/Maptorn/Maptorn.uplugin", MakePluginJson("Maptorn", "1.0.0", "Other", false));
    // The plug-in's own default logo: mod.io refuses logos under 512x288, so `maptorn create`
    // without --logo needs the real one.
    Writer.Bytes(Layout.ProjectDir + "Plugins/Maptorn/Resources/KelvorThumbnail.jpg", DefaultLogoJpeg());

    const std::string EngineDir = Layout.EngineRoot + "/Engine/";
    Writer.Json(EngineDir + "Build/Build.version", MakeBuildVersionJson());
    const std::string PluginBrowserDir = EngineDir + "Plugins/Editor/PluginBrowser/";
    Writer.Json(PluginBrowserDir + "PluginBrowser.uplugin", MakePluginJson("Plugin Browser", "1.0", "Editor", true));
    Writer.Bytes(PluginBrowserDir + "Templates/ContentOnly/Resources/Icon128.png", IconPng);
    Writer.Folder(PluginBrowserDir + "Templates/ContentOnly/Content");

    Writer.Folder(Layout.UserSettingsDir);
    if (Options.bWithGameInstall)
    {
        Writer.Text(Layout.UserSettingsDir + "Kelvor/Saved/Config/Windows/GameUserSettings.ini",
            MakeGameUserSettingsIni(Options));
    }

    Layout.bCreated = Writer.IsOk();
    Layout.FailReason = Writer.GetFailReason();
    if (Layout.bCreated && !Options.StandinBinary.empty())
    {
        Layout.bCreated = InstallStandinEngine(Layout.EngineRoot, Options.StandinBinary, AutomationLogsDir(Layout), Layout.FailReason);
    }
    return Layout;
}

std::string AutomationLogsDir(const FSampleLayout& Layout)
{
    return Paths::ConvertRelativePathToFull("/", Layout.UserSettingsDir + "../Roaming/Unreal Engine/AutomationTool/Logs");
}
}
