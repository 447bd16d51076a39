#pragma once

#include "Common/CoreTypes.h"
#include "Platform/MaptornPlatform.h"

#include <atomic>
#include <functional>
#include <memory>
#include <string>

namespace Maptorn
{
class FModioInterface;
struct FKelvorDefinition;

// Packages the plug-in "UGC<SelectedModId>" per platform with the engine's automation tool, then
// queues each output folder for upload, or stages it into the client's StageDir. Runs on a
// worker while bBusy is set; clears bBusy and empties the queue on every failure.
class MAPTORNCORE_API FPackager
{
public:
    // Made on the game thread: it reads the chosen mod's definition there, since definitions are
    // engine objects, and the worker packages from that copy.
    FPackager(FMaptornPlatform& InPlatform, FModioInterface& InClient, std::atomic<bool>& InBusy);

    // One automation-tool run for one target. False only when the plug-in is missing or the tool
    // could not be started; a non-zero exit code is logged and still counts as packaged.
    bool Package(uint8 Target);

    // Given the message the modder was shown.
    using FOnPackagingFailed = std::function<void(const std::string& Message)>;

    // The platforms the user ticked, in a fixed order; posts OnComplete to the game thread when
    // every step succeeded, OnFailed after a failed step.
    void RunPackagingTask(std::function<void()> OnComplete, FOnPackagingFailed OnFailed = {});

private:
    // The message of the first failed step, or null.
    const char* PackageChosenPlatforms();
    std::string ResolveStagingDirectory(uint8 Target, const std::string& PluginId);
    void WriteMetadata(const std::string& PluginId);
    std::string MakeNeverCookList(const std::string& PluginId);
    void MoveVeskoPak(uint8 Target, const std::string& PluginName, std::string StagingDirectory);
    void EchoAutomationLog();
    void FailPackaging(const char* Message);

    FMaptornPlatform& Platform;
    FModioInterface& Client;
    std::atomic<bool>& bBusy;
    // The chosen mod's definition as it was when packaging began; null when it has none.
    std::shared_ptr<const FKelvorDefinition> Definition;
};

// Starts the packaging task on a background worker (call it on the game thread).
void StartPackagingTask(FMaptornPlatform& Platform, FModioInterface& Client, std::atomic<bool>& bBusy,
    std::function<void()> OnComplete, FPackager::FOnPackagingFailed OnFailed = {});
}
