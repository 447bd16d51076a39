#pragma once

#include "Common/CoreTypes.h"
#include "Common/MulticastDelegate.h"
#include "Common/TickTimers.h"
#include "Content/KelvorDefinition.h"
#include "Content/ModType.h"
#include "Modio/ModDependencies.h"
#include "Modio/RetryingHttp.h"
#include "Modio/SourceModInfo.h"
#include "Module/MaptornConfig.h"
#include "Platform/MaptornPlatform.h"
#include "Transfer/PluginModDownload.h"

#include <atomic>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace Maptorn
{
// A decimal mod id as the SDK's 64-bit id, read as the engine's ParseInt64 does (optional sign,
// digits, nothing else); empty when it is not a number.
MAPTORNCORE_API std::optional<int64> ParseModId(const std::string& ModId);

// The long work the workshop runs for the modder.
enum class EWorkshopWork : uint8
{
    Upload,
    Stage,
    Download,
};

// How one piece of work ended: for which mod, and the words the modder was told (the message
// box's, or the page's for a download).
struct MAPTORNCORE_API FWorkshopWorkEnd
{
    EWorkshopWork Work = EWorkshopWork::Upload;
    std::string ModId;
    bool bSucceeded = false;
    std::string Message;
};

// The mod.io side of the workshop: the session and login, the create-page fields, the user's own
// mods, the upload queue, the source-plug-in catalogue and the downloads. Touched only on the
// game thread; every completion arrives through the module's tick.
class MAPTORNCORE_API FModioInterface
{
public:
    // Seconds of idle, logged-in time between two refreshes of the user's own mods.
    static constexpr float OwnModRefreshInterval = 300.0f;
    // The pause between two platform uploads.
    static constexpr float PlatformUploadPause = 1.0f;

    FModioInterface(FMaptornPlatform& InPlatform, const FMaptornConfig& InConfig);
    ~FModioInterface();

    // Runs the requests' waits that are due (rate limits, backoffs, resumed downloads).
    void TickRequests(float DeltaTime) { RequestTimers.Tick(DeltaTime); }

    // Session and login. Without a mod.io session every one of these is a silent no-op.
    void InitializeSession();
    // Checks a stored login (sets bIsModioBusy until it is answered).
    void VerifyLogin();
    // The same check started without the busy flag, for re-checks.
    void RecheckLogin();
    // Sends a security code to EmailAddress.
    void RequestEmailCode();
    // Exchanges AuthCode for a login.
    void Login();
    void Logout();
    void Shutdown();

    // Registers NewModName on mod.io and creates its local "UGC<id>" plug-in.
    void CreateMod();
    // Sends the metadata blob (with the version from OwnModVersions) for an own mod.
    void UpdateMetadata(const std::string& ModId);
    // {"ModType":…,"EngineVersion":…,"VersionUUID":…} in the engine's JSON form.
    std::string MakeMetadataBlob(int32 VersionUUID) const;

    // Own mods: fills OwnMods and OwnModVersions.
    void RefreshOwnMods();
    // An own-mod refresh is on its way (cleared on every answer, failed ones included).
    bool bOwnModRefreshBusy = false;
    // Each own-mod query's number: only the newest one's answer is used, so an older answer that
    // arrives late (a login's, overtaken by a new mod's) never replaces a newer list.
    uint64 OwnModRefreshGeneration = 0;

    // Uploads: checks, stamps a new version, then packages (or stages) and uploads each chosen
    // platform one after the other.
    void UploadMod(const std::string& ModId);
    // Starts the queued platform CurrentPlatform once its pause has run out.
    void StartNextPlatformUpload();
    void UploadPlatform(uint8 Platform, const std::string& Directory);
    // The session's mod-management events; only the upload event of UploadModId counts.
    void OnModManagementEvent(const FModioModManagementEvent& Event);
    void FinishPlatform();

    // Source plug-ins: one catalogue query at a time, with the browser's SourceQuery.
    void QuerySourceMods();
    // Dependencies of a catalogue mod, and adding one to an own mod (needs a login).
    void FetchDependencies(const std::string& ModId, std::function<void(bool, std::vector<FModDependency>)> OnDone);
    void AddDependency(const std::string& ModId, const std::string& DependencyModId, std::function<void(bool)> OnDone);
    // Every dependency of a catalogue mod, theirs included, each looked up in the catalogue.
    void ResolveDependencies(const std::string& ModId, std::function<void(FDependencyResolution)> OnDone);
    // Ids of the project's "UGC" plug-ins, in the plug-in manager's order.
    std::vector<std::string> LocalUGCModIds() const;
    // One catalogue record by mod id: found, the record, and otherwise why not (not a plain id,
    // no answer, mod.io's error, no such mod, or an answer about another mod).
    using FOnSourceModFetched = std::function<void(bool, FSourceModInfo, std::string)>;
    void FetchSourceMod(const std::string& ModId, FOnSourceModFetched OnDone);
    // Starts the download of a catalogue record now, or queues it behind the running one.
    void QueueDownload(const FSourceModInfo& Mod);
    // Drops the queued downloads and cancels the active one; the tick then ends it as failed.
    void CancelDownloads();
    void StartDownload(const FSourceModInfo& Mod);
    // The own-mod row of a mod id (its plug-in name is "UGC<id>", compared ignoring case).
    const FSourceModInfo* FindOwnMod(const std::string& ModId) const;
    // The catalogue record of a mod id (its plug-in name is "UGC<id>", compared ignoring case).
    FSourceModInfo* FindCatalogueRecord(const std::string& ModId);

    // Session state.
    std::string EmailAddress;
    std::string AuthCode;
    // Why the last e-mail, code or logout request was refused (mod.io's message); empty after a success.
    std::string LoginError;
    int32 LoginIndex = 0;            // 0 terms, 1 e-mail entry, 2 code entry
    bool bIsLoggedIn = false;
    bool bIsModioBusy = false;
    bool bSourceModsQueried = false;
    float OwnModRefreshCountdown = 300.0f;
    std::string DefaultLogoPath;

    // Create-mod page.
    std::string NewModName;
    std::string NewModSummary;
    std::string NewModLogoPath;
    EModType NewModType = EModType::Map;
    std::string StatusText;
    // The window's names for the logo path and the create page's status line.
    std::string& LogoPath = NewModLogoPath;
    std::string& CreateModError = StatusText;
    // Plug-ins created for new mods in this run, by mod id.
    std::map<std::string, FPluginInfo> CreatedMods;

    // Own mods whose plug-in exists locally ("UGC<id>" plug-in names), and every own mod's
    // version by decimal id.
    std::vector<FSourceModInfo> OwnMods;
    std::map<std::string, int32> OwnModVersions;
    // Own mods' logos as the session's media call left them on disk, by decimal id.
    std::map<std::string, std::string> OwnModLogos;

    // Upload.
    std::string SelectedModId;
    std::string UploadModId;
    std::string UploadChangelog;
    std::string Version;     // typed on the upload page; uploads send the stamped version instead
    bool bBuildWindows = false;
    bool bBuildAndroid = false;
    bool bShareSource = false;
    bool bStageOnly = false;
    std::string StageDir;
    bool bIsUploading = false;
    bool bCompressing = false;
    float UploadProgress = 0.0f;
    // Platforms still to upload with their folders, in queue order.
    std::vector<std::pair<uint8, std::string>> PendingPlatforms;
    uint8 CurrentPlatform = 0;
    float NextUploadDelay = 0.0f;
    // The progress line's "step/total": step = StepOffset - StepsQueued + StepsTotal + 1.
    int32 StepsTotal = 0;
    int32 StepsQueued = 0;
    int32 StepOffset = 0;
    // The version stamped by the running upload.
    int32 UploadVersion = 0;

    // Where the game keeps mods for this user.
    std::string ModDirectory;

    // The definition of the content being built or uploaded.
    std::shared_ptr<FKelvorDefinition> CurrentDefinition;

    // Source-plug-in catalogue and downloads.
    FSourceModQuery SourceQuery;
    bool bSourceQueryBusy = false;
    FSourceModList LastSourceModList;
    // Why the last catalogue query failed (mod.io's message and ref); empty after a success.
    std::string LastSourceQueryError;
    // Why mod.io refused the last dependency added (its message and ref); empty after a success.
    std::string LastDependencyError;
    // Why the last source-plug-in download added nothing to the project; empty after one that did.
    std::string LastDownloadError;
    std::shared_ptr<FPluginModDownload> ActiveDownload;
    std::deque<FSourceModInfo> DownloadQueue;
    // Downloads waiting behind the active one.
    int32 DownloadsRemaining = 0;
    // Mods installed in this editor run, by id, with the version installed.
    std::map<std::string, int32> FinishedDownloads;

    // Observers the window binds to.
    TMulticastDelegate<bool, const FSourceModList&> OnSourceModListUpdated;
    TMulticastDelegate<> OnUploadListUpdated;
    // A record's logo arrived in the thumbnail cache.
    TMulticastDelegate<const FSourceModInfo&> OnSourceModImageCreated;
    // An upload, staging or download ended, or was refused before it began; the editor's toasts
    // follow these.
    TMulticastDelegate<const FWorkshopWorkEnd&> OnWorkFinished;

private:
    // A completion that does nothing once the client is gone (the session may outlive it).
    template <typename TArg>
    std::function<void(TArg)> Guarded(std::function<void(TArg)> Handler)
    {
        std::weak_ptr<bool> Alive = AliveToken;
        return [Alive, Handler = std::move(Handler)](TArg Arg) {
            if (!Alive.expired())
            {
                Handler(std::move(Arg));
            }
        };
    }

    // One line in LogTemp, where every mod.io message goes.
    void LogTemp(const std::string& Message, ELogVerbosity Verbosity = ELogVerbosity::Log) const;
    void OnPackagingComplete();
    // Tells OnWorkFinished how the running upload (or staging) of ModId ended.
    void FinishUploadWork(const std::string& ModId, bool bSucceeded, const std::string& Message);
    // The module's build flag, or the client's own when there is no module.
    std::atomic<bool>& BuildBusyFlag();
    std::atomic<bool> bPackagingBusy = false;
    void QuerySourceModsOnce();
    // Starts one session call with bIsModioBusy set; its completion runs OnDone, then clears the
    // flag, so no answer can leave the window locked.
    void CallWhileBusy(const std::function<void(IModioSession&, FOnErrorOnlyDelegate)>& Call, std::function<void(FModioErrorCode)> OnDone);
    void OnVerificationFailed(const FModioErrorCode& ErrorCode);
    void OnInitializeComplete(FModioErrorCode ErrorCode);
    void OnOwnModsAnswer(FHttpResponsePtr Response, bool bConnected);
    // Without a token the session lists the user's mods itself; false when it cannot.
    bool RefreshOwnModsThroughSession(IModioSession& Session);
    void OnOwnModsListed(const FModioErrorCode& ErrorCode, const std::optional<std::vector<FModioModInfo>>& Mods);
    // Offers one of the user's mods for upload when its plug-in exists locally.
    void KeepOwnMod(FSourceModInfo Info);
    // Shows each own mod's logo once the session's media call has it; until then, and when it
    // fails, the row keeps the thumbnail it has (the default logo for a mod never browsed).
    void FetchOwnModLogos();
    void OnOwnModLogo(const std::string& ModId, const FModioErrorCode& ErrorCode, const std::optional<std::string>& ImagePath);
    std::set<std::string> PendingOwnModLogos;
    void OnSourceModsAnswer(FHttpResponsePtr Response, bool bConnected);
    // Empty for a 2xx answer; else what went wrong, with mod.io's message and ref.
    // FailureReason: what the transport says happened when there was no answer.
    static std::string AnswerError(const FHttpResponsePtr& Response, bool bConnected, const std::string& FailureReason = {});
    void FetchMissingThumbnails();

    // Requests outlive nothing: their handlers check this before touching the client.
    std::shared_ptr<bool> AliveToken = std::make_shared<bool>(true);
    bool bSessionShutDown = false;

    FMaptornPlatform& Platform;
    FMaptornConfig Config;
    // Every request of the client goes through Http, which waits out rate limits and passing
    // faults on RequestTimers.
    FTickTimers RequestTimers;
    FRetryingHttp Http;
};
}
