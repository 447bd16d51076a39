#include "Transfer/PluginModDownload.h"

namespace Maptorn
{
FPluginModDownload::FPluginModDownload(FMaptornPlatform& InPlatform)
    : Platform(InPlatform)
{
}

void FPluginModDownload::Update()
{
    if (State == EPluginDownloadState::Extracting && ExtractTask && ExtractTask->IsWorkDone())
    {
        State = EPluginDownloadState::Installing;
        InstallPlugin();
    }
}

void FPluginModDownload::InstallPlugin()
{
    // The install into the project's plug-ins is not part of this build: report it as failed
    // rather than pretend the plug-in arrived.
    (void)Platform;
    State = EPluginDownloadState::Failed;
}

void FPluginModDownload::GetProgressBytes(int64& OutReceived, int64& OutTotal) const
{
    OutReceived = ReceivedBytes;
    OutTotal = TotalBytes;
}
}
