#include "Platform/StandaloneEngine.h"

#include "Common/FileHelper.h"
#include "Common/Paths.h"
#include "Common/StringUtil.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <map>

namespace Maptorn
{
namespace
{
using FJson = nlohmann::json;

std::string WithTrailingSlash(std::string Path)
{
    if (!Path.empty() && Path.back() != '/')
    {
        Path += '/';
    }
    return Path;
}

std::string WithoutTrailingSlash(std::string Path)
{
    while (Path.size() > 1 && Path.back() == '/')
    {
        Path.pop_back();
    }
    return Path;
}

bool EndsWithIgnoreCase(std::string_view Text, std::string_view Suffix)
{
    return Text.size() >= Suffix.size() && EqualsIgnoreCase(Text.substr(Text.size() - Suffix.size()), Suffix);
}

// A JSON object from a file; empty when the file is missing or is not a JSON object.
std::optional<FJson> LoadJsonObject(const std::string& FilePath)
{
    const std::optional<std::string> Text = FileHelper::LoadFileToString(FilePath);
    if (!Text)
    {
        return std::nullopt;
    }
    FJson Json = FJson::parse(*Text, nullptr, false);
    if (Json.is_discarded() || !Json.is_object())
    {
        return std::nullopt;
    }
    return Json;
}

std::string StringField(const FJson& Object, const char* Key)
{
    const auto Found = Object.find(Key);
    return Found != Object.end() && Found->is_string() ? Found->get<std::string>() : std::string();
}

bool BoolField(const FJson& Object, const char* Key)
{
    const auto Found = Object.find(Key);
    return Found != Object.end() && Found->is_boolean() && Found->get<bool>();
}

std::optional<long long> IntegerField(const FJson& Object, const char* Key)
{
    const auto Found = Object.find(Key);
    if (Found == Object.end() || !Found->is_number_integer())
    {
        return std::nullopt;
    }
    return Found->get<long long>();
}

// Descriptors below Directory, as the engine finds them: a folder that holds a .uplugin is a
// plug-in, and nothing below it is searched (its templates and content are not plug-ins).
void FindDescriptors(const std::string& Directory, std::vector<std::string>& OutDescriptors)
{
    std::vector<FileSystem::FDirectoryEntry> Entries = FileSystem::ListDirectory(Directory);
    std::sort(Entries.begin(), Entries.end(), [](const auto& A, const auto& B) { return A.Path < B.Path; });
    bool bHoldsDescriptor = false;
    for (const FileSystem::FDirectoryEntry& Entry : Entries)
    {
        if (!Entry.bIsDirectory && EndsWithIgnoreCase(Entry.Path, ".uplugin"))
        {
            OutDescriptors.push_back(Entry.Path);
            bHoldsDescriptor = true;
        }
    }
    for (const FileSystem::FDirectoryEntry& Entry : Entries)
    {
        if (!bHoldsDescriptor && Entry.bIsDirectory)
        {
            FindDescriptors(Entry.Path, OutDescriptors);
        }
    }
}

// The .uproject's explicit switches: lower-case plug-in name to its "Enabled" value.
std::map<std::string, bool> ReadProjectPluginSwitches(const std::string& ProjectFile)
{
    std::map<std::string, bool> Switches;
    const std::optional<FJson> Project = LoadJsonObject(ProjectFile);
    if (!Project || !Project->contains("Plugins") || !(*Project)["Plugins"].is_array())
    {
        return Switches;
    }
    for (const FJson& Reference : (*Project)["Plugins"])
    {
        if (!Reference.is_object() || !Reference.contains("Enabled") || !Reference["Enabled"].is_boolean())
        {
            continue;
        }
        const std::string Name = StringField(Reference, "Name");
        if (!Name.empty())
        {
            Switches[ToLower(Name)] = Reference["Enabled"].get<bool>();
        }
    }
    return Switches;
}

// What the plug-in manager knows from a descriptor; bEnabled is decided by the caller.
std::optional<FPluginInfo> ReadPluginInfo(const std::string& DescriptorFileName, bool* OutEnabledByDefault)
{
    const std::optional<FJson> Descriptor = LoadJsonObject(DescriptorFileName);
    if (!Descriptor)
    {
        return std::nullopt; // a malformed descriptor does not make a plug-in, as in the engine
    }
    FPluginInfo Info;
    Info.Name = Paths::GetBaseFilename(DescriptorFileName);
    Info.FriendlyName = StringField(*Descriptor, "FriendlyName");
    if (Info.FriendlyName.empty())
    {
        Info.FriendlyName = Info.Name;
    }
    Info.bCanContainContent = BoolField(*Descriptor, "CanContainContent");
    Info.VersionName = StringField(*Descriptor, "VersionName");
    Info.BaseDir = Paths::GetPath(DescriptorFileName);
    Info.DescriptorFileName = DescriptorFileName;
    Info.ContentDir = Info.BaseDir + "/Content";
    if (OutEnabledByDefault != nullptr)
    {
        *OutEnabledByDefault = BoolField(*Descriptor, "EnabledByDefault");
    }
    return Info;
}

bool IsValidPluginName(std::string_view Name)
{
    const auto IsNameChar = [](char C) { return std::isalnum(static_cast<unsigned char>(C)) != 0 || C == '_'; };
    return !Name.empty() && std::isalpha(static_cast<unsigned char>(Name.front())) != 0
        && std::all_of(Name.begin(), Name.end(), IsNameChar);
}

bool IsTemplateTextFile(std::string_view FileName)
{
    static constexpr std::string_view TextExtensions[] = {".h", ".cpp", ".cs", ".ini", ".json", ".txt"};
    return std::any_of(std::begin(TextExtensions), std::end(TextExtensions),
        [FileName](std::string_view Extension) { return EndsWithIgnoreCase(FileName, Extension); });
}

// Copies a template folder, renaming PLUGIN_NAME in paths and in the text of source and config
// files, as the engine's plug-in wizard does; text is saved as the engine saves it (ASCII, else
// UTF-16LE). The template's own descriptor is left out: the caller writes a fresh one.
bool CopyTemplateFolder(const std::string& SourceDir, const std::string& DestDir, const std::string& Name,
    std::string& OutFailReason)
{
    for (const FileSystem::FDirectoryEntry& Entry : FileSystem::ListDirectory(SourceDir))
    {
        const std::string FileName = Paths::GetCleanFilename(Entry.Path);
        const std::string Dest = Paths::Combine(DestDir, ReplaceAll(FileName, "PLUGIN_NAME", Name));
        bool bCopied = true;
        if (Entry.bIsDirectory)
        {
            bCopied = FileSystem::CreateDirectoryTree(Dest) && CopyTemplateFolder(Entry.Path, Dest, Name, OutFailReason);
        }
        else if (EndsWithIgnoreCase(FileName, ".uplugin"))
        {
            continue;
        }
        else if (IsTemplateTextFile(FileName))
        {
            const std::optional<std::string> Text = FileHelper::LoadFileToString(Entry.Path);
            bCopied = Text && FileHelper::SaveStringToFile(ReplaceAll(*Text, "PLUGIN_NAME", Name), Dest);
        }
        else
        {
            std::error_code Error;
            bCopied = std::filesystem::copy_file(Entry.Path, Dest, Error) && !Error;
        }
        if (!bCopied)
        {
            if (OutFailReason.empty())
            {
                OutFailReason = "Could not copy the template file " + Entry.Path + " to " + Dest + ".";
            }
            return false;
        }
    }
    return true;
}

// The fresh descriptor, keys in the order the engine's plug-in wizard writes them.
bool WriteNewDescriptor(const std::string& FilePath, const FPluginDescriptor& Descriptor)
{
    nlohmann::ordered_json Json;
    Json["FileVersion"] = 3;
    Json["Version"] = 1;
    Json["VersionName"] = Descriptor.VersionName;
    Json["FriendlyName"] = Descriptor.FriendlyName;
    Json["Description"] = Descriptor.Description;
    Json["Category"] = Descriptor.Category;
    Json["CreatedBy"] = Descriptor.CreatedBy;
    Json["CreatedByURL"] = "";
    Json["DocsURL"] = "";
    Json["MarketplaceURL"] = "";
    Json["SupportURL"] = "";
    Json["CanContainContent"] = Descriptor.bCanContainContent;
    Json["IsBetaVersion"] = false;
    Json["IsExperimentalVersion"] = false;
    Json["Installed"] = false;
    return FileHelper::SaveStringToFile(Json.dump(1, '\t'), FilePath);
}
}

FStandaloneEngine::FStandaloneEngine(const FStandaloneEngineSettings& Settings)
    : BaseDir(WithTrailingSlash(Settings.BaseDir))
{
    ProjectFile = Paths::ConvertRelativePathToFull(BaseDir, Settings.ProjectFile);
    ProjectDirectory = WithTrailingSlash(Paths::GetPath(ProjectFile));
    EngineDirectory = Paths::ConvertRelativePathToFull(BaseDir, Paths::Combine(Settings.EngineRoot, "Engine/"));
    UserSettingsDirectory = WithTrailingSlash(Paths::ConvertRelativePathToFull(BaseDir, Settings.UserSettingsDir));
    Version = ReadEngineVersion(EngineDirectory);
    ScanPlugins();
}

std::string FStandaloneEngine::GetBaseDir() { return BaseDir; }
std::string FStandaloneEngine::ProjectDir() { return ProjectDirectory; }
std::string FStandaloneEngine::GetProjectFilePath() { return ProjectFile; }
std::string FStandaloneEngine::ProjectContentDir() { return ProjectDirectory + "Content/"; }
std::string FStandaloneEngine::ProjectConfigDir() { return ProjectDirectory + "Config/"; }
std::string FStandaloneEngine::ProjectSavedDir() { return ProjectDirectory + "Saved/"; }
std::string FStandaloneEngine::ProjectPluginsDir() { return ProjectDirectory + "Plugins/"; }
std::string FStandaloneEngine::EngineDir() { return EngineDirectory; }
std::string FStandaloneEngine::UserSettingsDir() { return UserSettingsDirectory; }
IConfigCache* FStandaloneEngine::GetConfig() { return &ConfigCache; }

std::string FStandaloneEngine::EngineUserDir()
{
    // Without a readable Build.version we assume 5.1, the only engine the plug-in is built for.
    const std::string MajorMinor = Version ? Printf("%d.%d", Version->Major, Version->Minor) : "5.1";
    return UserSettingsDirectory + "UnrealEngine/" + MajorMinor + "/";
}

std::string FStandaloneEngine::EngineVersionString()
{
    return Version ? Version->Text : std::string();
}

std::optional<FStandaloneEngine::FEngineVersion> FStandaloneEngine::ReadEngineVersion(const std::string& EngineDir)
{
    const std::optional<FJson> Build = LoadJsonObject(EngineDir + "Build/Build.version");
    if (!Build)
    {
        return std::nullopt;
    }
    const std::optional<long long> Major = IntegerField(*Build, "MajorVersion");
    const std::optional<long long> Minor = IntegerField(*Build, "MinorVersion");
    const std::optional<long long> Patch = IntegerField(*Build, "PatchVersion");
    const std::optional<long long> Changelist = IntegerField(*Build, "Changelist");
    const auto Branch = Build->find("BranchName");
    if (!Major || !Minor || !Patch || !Changelist || Branch == Build->end() || !Branch->is_string())
    {
        return std::nullopt;
    }
    FEngineVersion Result;
    Result.Major = static_cast<int>(*Major);
    Result.Minor = static_cast<int>(*Minor);
    Result.Text = Printf("%lld.%lld.%lld-%lld+%s", *Major, *Minor, *Patch, *Changelist,
        Branch->get<std::string>().c_str());
    return Result;
}

void FStandaloneEngine::ScanPlugins()
{
    // An explicit entry in the .uproject wins either way; otherwise project plug-ins are
    // enabled and engine plug-ins follow their descriptor's EnabledByDefault.
    const std::map<std::string, bool> Switches = ReadProjectPluginSwitches(ProjectFile);
    const auto Scan = [&](const std::string& Root, bool bIsProjectPlugin)
    {
        std::vector<std::string> Descriptors;
        FindDescriptors(Root, Descriptors);
        for (const std::string& DescriptorFileName : Descriptors)
        {
            bool bEnabledByDefault = false;
            std::optional<FPluginInfo> Info = ReadPluginInfo(DescriptorFileName, &bEnabledByDefault);
            if (!Info)
            {
                continue;
            }
            const auto Switch = Switches.find(ToLower(Info->Name));
            Info->bEnabled = Switch != Switches.end() ? Switch->second : (bIsProjectPlugin || bEnabledByDefault);
            AddToCatalogueLocked({std::move(*Info), bIsProjectPlugin});
        }
    };
    std::lock_guard Lock(CatalogueMutex);
    Scan(ProjectPluginsDir(), true);
    Scan(EngineDirectory + "Plugins", false);
}

void FStandaloneEngine::AddToCatalogueLocked(FCatalogueEntry Entry)
{
    const auto Same = std::find_if(Catalogue.begin(), Catalogue.end(),
        [&Entry](const FCatalogueEntry& Known) { return EqualsIgnoreCase(Known.Info.Name, Entry.Info.Name); });
    if (Same != Catalogue.end())
    {
        // A project plug-in hides an engine one of the same name; otherwise the first one found stays.
        if (!Entry.bIsProjectPlugin || Same->bIsProjectPlugin)
        {
            return;
        }
        Catalogue.erase(Same);
    }
    Catalogue.push_back(std::move(Entry));
    std::sort(Catalogue.begin(), Catalogue.end(), [](const FCatalogueEntry& A, const FCatalogueEntry& B)
    {
        if (A.bIsProjectPlugin != B.bIsProjectPlugin)
        {
            return A.bIsProjectPlugin;
        }
        const std::string LowerA = ToLower(A.Info.Name);
        const std::string LowerB = ToLower(B.Info.Name);
        return LowerA != LowerB ? LowerA < LowerB : A.Info.Name < B.Info.Name;
    });
}

std::optional<FPluginInfo> FStandaloneEngine::FindPlugin(const std::string& Name)
{
    std::lock_guard Lock(CatalogueMutex);
    for (const FCatalogueEntry& Entry : Catalogue)
    {
        if (EqualsIgnoreCase(Entry.Info.Name, Name))
        {
            return Entry.Info;
        }
    }
    return std::nullopt;
}

std::vector<FPluginInfo> FStandaloneEngine::GetEnabledPlugins()
{
    std::lock_guard Lock(CatalogueMutex);
    std::vector<FPluginInfo> Enabled;
    for (const FCatalogueEntry& Entry : Catalogue)
    {
        if (Entry.Info.bEnabled)
        {
            Enabled.push_back(Entry.Info);
        }
    }
    return Enabled;
}

std::optional<std::string> FStandaloneEngine::CheckNewPluginLocked(const std::string& Name,
    const std::string& TargetDir, const std::string& TemplateDir) const
{
    if (Name.empty())
    {
        return "The plug-in needs a name.";
    }
    if (!IsValidPluginName(Name))
    {
        return "\"" + Name + "\" is not a valid plug-in name: use letters, digits and underscores, starting with a letter.";
    }
    const bool bKnown = std::any_of(Catalogue.begin(), Catalogue.end(),
        [&Name](const FCatalogueEntry& Entry) { return EqualsIgnoreCase(Entry.Info.Name, Name); });
    if (bKnown)
    {
        return "A plug-in named \"" + Name + "\" already exists.";
    }
    std::error_code Error;
    if (std::filesystem::exists(TargetDir, Error))
    {
        return "The folder " + TargetDir + " already exists.";
    }
    if (!FileSystem::DirectoryExists(TemplateDir))
    {
        return "The plug-in template folder " + TemplateDir + " does not exist.";
    }
    return std::nullopt;
}

bool FStandaloneEngine::CreateAndLoadNewPlugin(const std::string& Name, const std::string& PluginsParentDir,
    const std::string& TemplateDir, const FPluginDescriptor& Descriptor, std::string& OutFailReason)
{
    // Held throughout, so two callers cannot both create the same name.
    std::lock_guard Lock(CatalogueMutex);
    const std::string TargetDir = Paths::Combine(Paths::ConvertRelativePathToFull(BaseDir, PluginsParentDir), Name);
    const std::string Template = WithoutTrailingSlash(Paths::ConvertRelativePathToFull(BaseDir, TemplateDir));
    if (const std::optional<std::string> Reason = CheckNewPluginLocked(Name, TargetDir, Template))
    {
        OutFailReason = *Reason;
        return false;
    }

    const std::string DescriptorFileName = TargetDir + "/" + Name + ".uplugin";
    std::string Failure;
    bool bCreated = FileSystem::CreateDirectoryTree(TargetDir) && CopyTemplateFolder(Template, TargetDir, Name, Failure);
    bCreated = bCreated && (!Descriptor.bCanContainContent || FileSystem::CreateDirectoryTree(TargetDir + "/Content"));
    bCreated = bCreated && WriteNewDescriptor(DescriptorFileName, Descriptor);
    // Read back through the scanner's own path, so the catalogue says what a rescan would.
    std::optional<FPluginInfo> Info = bCreated ? ReadPluginInfo(DescriptorFileName, nullptr) : std::nullopt;
    if (!Info)
    {
        FileSystem::DeleteDirectoryRecursively(TargetDir);
        OutFailReason = !Failure.empty() ? Failure : "Could not create the plug-in folder " + TargetDir + ".";
        return false;
    }
    Info->bEnabled = true;
    const bool bIsProjectPlugin = TargetDir.starts_with(ProjectPluginsDir());
    AddToCatalogueLocked({std::move(*Info), bIsProjectPlugin});
    return true;
}
}
