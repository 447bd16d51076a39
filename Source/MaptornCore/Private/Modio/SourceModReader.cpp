#include "Modio/SourceModReader.h"

#include "Common/FileHelper.h"
#include "Common/Paths.h"
#include "Common/StringUtil.h"
#include "Content/ModDefinitions.h"
#include "Modio/JsonFields.h"
#include "Modio/ModioInterface.h"

#include <algorithm>
#include <cstdlib>

namespace Maptorn
{
namespace
{
using FJson = nlohmann::json;
using namespace JsonFields;

bool IsActiveDownload(const FModioInterface& Client, const std::string& PluginName)
{
    return Client.ActiveDownload && MakeUGCPluginName(Client.ActiveDownload->ModId) == PluginName;
}

bool IsQueuedForDownload(const FModioInterface& Client, const std::string& PluginName)
{
    return std::any_of(Client.DownloadQueue.begin(), Client.DownloadQueue.end(),
        [&](const FSourceModInfo& Queued) { return EqualsIgnoreCase(Queued.PluginName, PluginName); });
}

bool IsInstalledThisRun(const FModioInterface& Client, const std::string& ModId, const std::string& Version)
{
    const auto Found = Client.FinishedDownloads.find(ModId);
    return Found != Client.FinishedDownloads.end() && Found->second >= VersionNumber(Version);
}

ESourceModInstallState DecideInstallState(FMaptornPlatform& Platform, const FModioInterface& Client, const FSourceModInfo& Info, const std::string& ModId)
{
    if (IsActiveDownload(Client, Info.PluginName))
    {
        return ESourceModInstallState::Downloading;
    }
    if (IsQueuedForDownload(Client, Info.PluginName))
    {
        return ESourceModInstallState::DownloadPending;
    }
    if (IsInstalledThisRun(Client, ModId, Info.Version))
    {
        return ESourceModInstallState::InstalledRestartRequired;
    }
    if (!Platform.Engine.FindPlugin(Info.PluginName))
    {
        return ESourceModInstallState::NotInstalled;
    }
    const std::shared_ptr<FKelvorDefinition> Definition = LoadModDefinition(Platform, ModId, Info.ModType);
    return Definition && std::to_string(Definition->Version) == Info.Version ? ESourceModInstallState::Installed
                                                                             : ESourceModInstallState::RequiresUpdate;
}

void ReadPlatforms(const FJson& ModObject, FSourceModInfo& Info)
{
    if (const FJson* Platforms = TryGetArray(ModObject, "platforms"))
    {
        for (const FJson& Entry : *Platforms)
        {
            const std::string Name = GetString(Entry, "platform");
            Info.bWindows = Info.bWindows || Name == "windows";
            Info.bOculus = Info.bOculus || Name == "oculus";
        }
    }
}

void ReadModfile(const FJson& ModObject, FSourceModInfo& Info)
{
    const FJson* Modfile = TryGetObject(ModObject, "modfile");
    if (!Modfile)
    {
        return;
    }
    // mod.io's version is text ("1.2.3"); a number read from it would be cut short.
    Info.Version = GetString(*Modfile, "version");
    Info.FileSize = TruncateToInt64(GetNumber(*Modfile, "filesize"));
    if (const FJson* Hash = TryGetObject(*Modfile, "filehash"))
    {
        Info.FileMd5 = GetString(*Hash, "md5");
    }
    if (const FJson* Download = TryGetObject(*Modfile, "download"))
    {
        Info.BinaryUrl = GetString(*Download, "binary_url");
    }
}
}

const char* InstallStateWord(uint8 InstallState)
{
    switch (static_cast<ESourceModInstallState>(InstallState))
    {
    case ESourceModInstallState::NotInstalled: return "Not Installed";
    case ESourceModInstallState::Installed: return "Installed";
    case ESourceModInstallState::RequiresUpdate: return "Requires Update";
    case ESourceModInstallState::Downloading: return "Downloading";
    case ESourceModInstallState::DownloadPending: return "Download Pending";
    case ESourceModInstallState::InstalledRestartRequired: return "Installed, Editor Restart Required";
    }
    return "";
}

EModType ModTypeFromTags(const std::vector<std::string>& Tags, EModType Fallback)
{
    for (EModType Type : {EModType::Map, EModType::Mod, EModType::GameMode})
    {
        if (std::any_of(Tags.begin(), Tags.end(), [Type](const std::string& Tag) { return EqualsIgnoreCase(Tag, ModTypeWord(Type)); }))
        {
            return Type;
        }
    }
    return Fallback;
}

std::string ThumbnailCacheDir(IMaptornEngine& Engine)
{
    return Paths::Combine(Paths::ConvertRelativePathToFull(Engine.GetBaseDir(), Engine.ProjectSavedDir()), "ModThumbnails");
}

std::string DefaultThumbnailPath(IMaptornEngine& Engine)
{
    return Paths::ConvertRelativePathToFull(Engine.GetBaseDir(), Paths::Combine(Engine.ProjectPluginsDir(), "Maptorn", "Resources", "KelvorThumbnail.jpg"));
}

std::string FindThumbnailPath(IMaptornEngine& Engine, const std::string& PluginName)
{
    const std::string Base = Paths::Combine(ThumbnailCacheDir(Engine), PluginName);
    for (const char* Format : {"%s.jpg", "%s.jpeg", "%s.png"})
    {
        const std::string Candidate = ReplaceAll(Format, "%s", Base);
        if (FileSystem::FileExists(Candidate))
        {
            return Candidate;
        }
    }
    return DefaultThumbnailPath(Engine);
}

FSourceModInfo ReadSourceModInfo(FMaptornPlatform& Platform, const FModioInterface& Client, const FJson& ModObject)
{
    FSourceModInfo Info;
    const std::string ModId = GetString(ModObject, "id");
    if (!IsPlainModId(ModId))
    {
        return Info;
    }
    Info.PluginName = MakeUGCPluginName(ModId);
    Info.Name = GetString(ModObject, "name");
    Info.Summary = GetString(ModObject, "summary");
    Info.ProfileUrl = GetString(ModObject, "profile_url");
    Info.ThumbnailPath = FindThumbnailPath(Platform.Engine, Info.PluginName);
    if (const FJson* Tags = TryGetArray(ModObject, "tags"))
    {
        for (const FJson& Tag : *Tags)
        {
            Info.Tags.push_back(GetString(Tag, "name"));
        }
    }
    Info.ModType = ModTypeFromTags(Info.Tags, Info.ModType);
    if (const FJson* Logo = TryGetObject(ModObject, "logo"))
    {
        Info.LogoUrl = GetString(*Logo, "thumb_320x180");
    }
    if (const FJson* SubmittedBy = TryGetObject(ModObject, "submitted_by"))
    {
        Info.Author = GetString(*SubmittedBy, "username");
    }
    ReadModfile(ModObject, Info);
    ReadPlatforms(ModObject, Info);
    Info.InstallState = static_cast<uint8>(DecideInstallState(Platform, Client, Info, ModId));
    return Info;
}

int32 VersionNumber(const std::string& VersionText)
{
    return IsPlainModId(VersionText) ? TruncateToInt32(std::strtod(VersionText.c_str(), nullptr)) : 0;
}

FPageNumbers ComputePageNumbers(int64 Count, int64 Offset, int64 Limit, int64 Total)
{
    if (Limit <= 0)
    {
        return {};
    }
    FPageNumbers Page;
    Page.TotalPages = TruncateToInt32(static_cast<double>((Total + Limit - 1) / Limit));
    Page.CurrentPage = TruncateToInt32(static_cast<double>((Offset + Count + Limit - 1) / Limit));
    return Page;
}

bool ReadSourceModList(FMaptornPlatform& Platform, const FModioInterface& Client, const std::string& Body, FSourceModList& OutList)
{
    const FJson Answer = FJson::parse(Body, nullptr, false);
    if (Answer.is_discarded() || !Answer.is_object())
    {
        return false;
    }
    OutList = FSourceModList{};
    double Count = 0.0;
    if (!TryGetNumber(Answer, "result_count", Count))
    {
        return true;
    }
    // Clamped so that hostile numbers cannot overflow the page arithmetic.
    const auto Clamp = [](double Value) { return static_cast<int64>(TruncateToInt32(Value)); };
    const FPageNumbers Page = ComputePageNumbers(Clamp(Count), Clamp(GetNumber(Answer, "result_offset")),
        Clamp(GetNumber(Answer, "result_limit")), Clamp(GetNumber(Answer, "result_total")));
    OutList.CurrentPage = Page.CurrentPage;
    OutList.TotalPages = Page.TotalPages;
    OutList.TotalResults = TruncateToInt32(GetNumber(Answer, "result_total"));
    Platform.Log.Log(LogCategory::LogTemp, ELogVerbosity::Log, Printf("Source Mod Page %d/%d", OutList.CurrentPage, OutList.TotalPages));
    if (const FJson* Data = TryGetArray(Answer, "data"))
    {
        for (const FJson& ModObject : *Data)
        {
            FSourceModInfo Info = ReadSourceModInfo(Platform, Client, ModObject);
            if (!Info.PluginName.empty())
            {
                OutList.Mods.push_back(std::move(Info));
            }
        }
    }
    return true;
}
}
