#include "WorkshopSupport.h"

#include "Common/ByteFormat.h"
#include "Common/Paths.h"
#include "Common/StringUtil.h"
#include "Platform/EnginePort.h"
#include "Modio/ModioInterface.h"
#include "Module/MaptornModule.h"

#include <cmath>

namespace Maptorn::WorkshopSupport
{
FMaptornModule* FindModule()
{
    return FMaptornModule::IsAvailable() ? &FMaptornModule::Get() : nullptr;
}

FModioInterface* FindClient()
{
    FMaptornModule* Module = FindModule();
    return Module ? Module->ModioClient.get() : nullptr;
}

const FSourceModInfo* FindOwnMod(const FModioInterface& Client, const std::string& ModId)
{
    if (ModId.empty())
    {
        return nullptr;
    }
    const std::string PluginName = "UGC" + ModId;
    for (const FSourceModInfo& Mod : Client.OwnMods)
    {
        if (EqualsIgnoreCase(Mod.PluginName, PluginName))
        {
            return &Mod;
        }
    }
    return nullptr;
}

std::string ModIdOf(const std::string& PluginName)
{
    return StartsWithIgnoreCase(PluginName, "UGC") ? PluginName.substr(3) : PluginName;
}

std::string TruncateCharacters(const std::string& Utf8Text, std::size_t MaxCharacters)
{
    std::size_t Characters = 0;
    for (std::size_t Index = 0; Index < Utf8Text.size(); ++Index)
    {
        // A lead byte (not 10xxxxxx) starts the next character.
        if ((static_cast<unsigned char>(Utf8Text[Index]) & 0xC0) != 0x80 && Characters++ == MaxCharacters)
        {
            return Utf8Text.substr(0, Index);
        }
    }
    return Utf8Text;
}

int32 WholePercent(float Fraction)
{
    return static_cast<int32>(std::floor(static_cast<double>(Fraction) * 100.0 + 1e-4));
}

std::string UploadProgressText(const FModioInterface& Client)
{
    const int32 Step = Client.StepOffset - Client.StepsQueued + Client.StepsTotal + 1;
    return Printf("%s %d/%d - %d%%", Client.bCompressing ? "Compressing" : "Uploading", Step, Client.StepsTotal,
        WholePercent(Client.UploadProgress));
}

std::string DownloadProgressText(const FModioInterface& Client)
{
    const FPluginModDownload& Download = *Client.ActiveDownload;
    int64 Received = 0;
    int64 Total = 0;
    Download.GetProgressBytes(Received, Total);
    const std::string Size = Printf("%s/%s", FormatFileSize(Received).c_str(), FormatFileSize(Total).c_str());
    // The running download counts itself among the remaining ones.
    const int32 Remaining = Client.DownloadsRemaining + 1;
    return Printf("Downloading %s - %s %d%% - %d Mods Remaining", Download.ModName.empty() ? "None" : Download.ModName.c_str(),
        Size.c_str(), WholePercent(Download.GetProgress()), Remaining);
}

void LogWindow(ELogVerbosity Verbosity, const std::string& Message)
{
    if (FMaptornModule* Module = FindModule())
    {
        Module->GetPlatform().Log.Log(LogCategory::MaptornLog, Verbosity, Message);
    }
}

std::string ProjectFolder(IMaptornEngine& Engine)
{
    return Paths::GetPath(Paths::ConvertRelativePathToFull(Engine.GetBaseDir(), Engine.GetProjectFilePath()));
}
}
