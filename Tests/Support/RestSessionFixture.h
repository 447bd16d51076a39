#pragma once

#include "ModioService/ModioSandbox.h"
#include "Platform/CurlHttp.h"
#include "Platform/RestModioSession.h"
#include "Platform/StandaloneTasks.h"
#include "Support/SandboxAccounts.h"
#include "Support/TempDir.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace Maptorn::Testing
{
// The standalone mod.io session against the seeded sandbox on loopback, over the real HTTP
// adapter. The host's tick is imitated: pump the game thread, then RunPendingHandlers; every
// callback and event must come from inside the latter.
class FRestSessionTest : public ::testing::Test
{
protected:
    static constexpr const char* ApiKey = SandboxApiKey;
    static constexpr FModioModID ModderModId = 1001;  // seeded, the modder's
    static constexpr FModioModID StrangerModId = 1005; // seeded, someone else's

    FRestSessionTest();
    void SetUp() override;
    void TearDown() override;

    // An initialised session whose temporary upload files go to UploadFolder, logged in as the
    // modder (Token) when bLoggedIn. Its Uploaded events are collected in Events.
    std::unique_ptr<FRestModioSession> MakeSession(bool bLoggedIn = true);
    void Tick(FRestModioSession& Session);
    // A frame cap far beyond any stall timeout, so a hang fails instead of blocking.
    void TickUntil(FRestModioSession& Session, const std::function<bool()>& Done);

    // Submits the folder and ticks until its Uploaded event, sampling QueryCurrentModUpdate into
    // Progress before and after each RunPendingHandlers.
    FModioModManagementEvent UploadAndWait(FRestModioSession& Session, FModioModID Mod, const FModioCreateModFileParams& Params);

    nlohmann::json GetJson(const std::string& PathAndQuery) const;
    std::string GetBytes(const std::string& Url) const;
    // The mod's newest file as the service lists it; null when it has none.
    nlohmann::json NewestModfile(FModioModID Mod) const;
    // Entry name → bytes; folders end in "/" and have no bytes.
    std::map<std::string, std::string> ArchiveEntries(const std::string& ArchiveBytes) const;
    std::vector<Sandbox::FRecordedRequest> RequestsTo(const std::string& Method, const std::string& Path) const;
    bool NoTemporaryFilesLeft() const;
    std::string ModPath(FModioModID Mod) const { return "/v1/games/1/mods/" + std::to_string(Mod); }

    FTempDir Temp;
    Sandbox::FModioSandbox Sandbox;
    bool bStarted = false;
    std::string StartError;
    std::filesystem::path LoginFile;
    std::filesystem::path UploadFolder;
    std::string Token;
    FStandaloneTasks Tasks;
    // The stall timeout leaves room for the service joining a few hundred MiB of parts.
    FCurlHttp Http{Tasks, FCurlHttpOptions{5, 60, ""}};
    bool bInsidePendingHandlers = false;
    std::vector<FModioModManagementEvent> Events;
    std::vector<FModioModProgressInfo> Progress;
    std::vector<std::string> ErrorMessages;
};

// Bytes that do not compress, from a fixed seed: the archive is as big as its input.
void WriteRandomFile(const std::filesystem::path& File, int64 Size, uint64 Seed);
}
