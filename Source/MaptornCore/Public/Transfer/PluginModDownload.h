#pragma once

#include "Common/CoreTypes.h"
#include "Platform/MaptornPlatform.h"

#include <memory>
#include <string>

namespace Maptorn
{
enum class EPluginDownloadState : uint8
{
    Downloading = 0,
    Extracting = 1,
    Installing = 2,
    Complete = 3,
    Failed = 4,
};

// One shared source plug-in on its way into the project: downloaded as a ZIP archive, extracted
// on a pool worker, then installed into the project's plug-ins.
class FPluginModDownload
{
public:
    explicit FPluginModDownload(FMaptornPlatform& InPlatform);

    // Polled every frame on the game thread: hands a finished extraction over to the install.
    void Update();
    void InstallPlugin();

    EPluginDownloadState GetState() const { return State; }
    float GetProgress() const { return Progress; }
    void GetProgressBytes(int64& OutReceived, int64& OutTotal) const;
    bool IsExtractionStarted() const { return ExtractTask != nullptr; }

    std::string ModName;
    std::string ModId;
    std::string DownloadUrl;
    bool bAppend = false;
    int64 TotalBytes = 0;
    int64 ReceivedBytes = 0;
    int64 NextOffset = 0;
    float Progress = 0.0f;
    EPluginDownloadState State = EPluginDownloadState::Downloading;
    std::shared_ptr<ITaskHandle> ExtractTask;

private:
    FMaptornPlatform& Platform;
};
}
