#pragma once

#include "Common/CoreTypes.h"
#include "Common/MulticastDelegate.h"
#include "Content/KelvorDefinition.h"
#include "Content/ModType.h"
#include "Modio/ModDependencies.h"
#include "Modio/SourceModInfo.h"
#include "Workshop/WorkshopRows.h"
#include "Workshop/WorkshopTypes.h"

#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace Maptorn
{
class FModioInterface;

// What the toolkit redraws when the controller changes something it cannot bind to a getter.
// Each is optional.
struct MAPTORNCORE_API FWorkshopViewEvents
{
    std::function<void()> ScrollSourceModsToStart;
    std::function<void()> SourceModRowsRebuilt;
    std::function<void()> UploadRowsRebuilt;
    std::function<void()> ModTypeChanged;        // the create page's segmented control
    std::function<void()> LoginBoxesCleared;     // the e-mail and auth-code boxes
};

// The workshop window without its widgets: every getter the pages bind to and every handler their
// controls call. It owns almost nothing: each call finds the module, and through it the mod.io
// client, which may be absent; every getter has an answer for that case. Button handlers answer
// handled (true); value-change handlers return nothing. UI thread only.
//
// The editor builds a new window each time the tab opens. A new controller starts from what the
// client holds: its rows, the chosen mod, the catalogue page with each record's download state, and
// the texts of the boxes, so that a reopened tab shows what the closed one showed.
class MAPTORNCORE_API FWorkshopController
{
public:
    static constexpr int32 SourceModPageSize = 20;
    static constexpr std::size_t MaxSummaryCharacters = 250;

    // Binds the client's list observers and builds the rows from the client, when a client exists now.
    FWorkshopController();
    ~FWorkshopController();
    FWorkshopController(const FWorkshopController&) = delete;
    FWorkshopController& operator=(const FWorkshopController&) = delete;

    FWorkshopViewEvents ViewEvents;

    // Window status.
    EVisibility GetBusyVisibility() const;
    EVisibility GetStandbyVisibility() const;
    std::string GetConfigState() const;
    int32 GetTabIndex() const;
    int32 GetMapSwitcherIndex() const { return 1; }
    std::string GetMapTabLabel() const { return {}; }

    // Account page.
    EVisibility IsModioBusy() const;
    EVisibility IsLoggingIn() const;
    EVisibility ShowLoginButton() const;
    bool IsAuthenticated() const;
    int32 GetLoginIndex() const;
    // What the e-mail and auth-code boxes hold: the client's EmailAddress and AuthCode.
    std::string GetEmailBoxText() const;
    // Why mod.io refused the last e-mail, code or logout; empty otherwise.
    std::string GetLoginErrorText() const;
    std::string GetAuthCodeBoxText() const;

    bool AgreedToTerms();
    void OnEmailTextChanged(const std::string& Text);
    void OnAuthCodeChanged(const std::string& Text);
    bool SendAuthButtonClicked();
    bool ResendAuthCode();
    bool LoginButtonClicked();
    bool LogoutButtonClicked();

    // Create-mod page.
    std::string GetCreateModErrorText() const;
    EVisibility GetCreateModSpinnerVisibility() const;
    EVisibility GetCreateModVisibility() const;
    EModType GetModType() const;
    // What the name and summary boxes hold: the client's NewModName and NewModSummary.
    std::string GetModNameBoxText() const;
    std::string GetModSummaryBoxText() const;

    void OnModNameTextChanged(const std::string& Text);
    void OnModSummaryTextChanged(const std::string& Text);
    void OnCreateModTypeChanged(EModType Type);
    bool SelectLogoImage();
    bool CreateModButtonClicked();
    // Bound no-ops of the window's older controls.
    bool CreateNewClicked() { return true; }
    bool SyncTitleClicked() { return true; }
    bool SubmitButtonClicked() { return true; }
    bool WorkshopItemLinkClicked() { return true; }

    // Upload and stage page.
    std::string GetModId() const;
    std::string GetStageDirText() const;
    std::string GetSourceBuildText() const;
    bool CanBuildSource() const;
    EVisibility GetUploadModVisibility() const;
    EVisibility GetStageModVisibility() const;
    EVisibility GetModUploadProgressVisibility() const;
    std::optional<float> GetBuildProgress() const;
    std::string GetBuildProgressText() const;
    ECheckBoxState IsWindowsBuild() const;
    ECheckBoxState IsAndroidBuild() const;
    ECheckBoxState IsSharingSource() const;
    // The selection label: the chosen mod's id.
    std::string GetUploadSelectionText() const { return GetModId(); }
    // What the change-note box holds: the client's UploadChangelog.
    std::string GetChangeNoteBoxText() const;
    const std::vector<FWorkshopUploadEntry>& GetUploadRows() const { return UploadRows; }
    // The combo's mod-id items, rebuilt from OwnMods when their number changed.
    const std::vector<std::string>& GetModIds();

    void OnModioNotesTextChanged(const std::string& Text);
    void OnModioVersionTextChanged(const std::string& Text);
    void OnModioBuildWindowsStateChanged(ECheckBoxState State);
    void OnModioBuildAndroidStateChanged(ECheckBoxState State);
    void OnModioBuildSourceStateChanged(ECheckBoxState State);
    // The buttons around the check boxes toggle them.
    bool OnModioBuildWindowsStateChanged();
    bool OnModioBuildAndroidStateChanged();
    bool OnModioBuildSourceStateChanged();
    void OnSelectUploadModClicked(const std::string& ModId);
    void OnUploadSelectionChanged(const std::string& Item);
    bool SelectStageDir();
    bool UploadModButtonClicked();
    bool StageModButtonClicked();
    void RefreshUploadModList();
    // The upload list's refresh button: asks mod.io for the modder's mods again; the rows are rebuilt
    // when the answer comes. Enabled while logged in and no such query runs.
    bool OnRefreshUploadListClicked();
    bool CanRefreshUploadList() const;

    // Steam Workshop page (the project's own map).
    // What the map-name and change-note boxes hold: the kept map name and the Steam change note.
    std::string GetMapNameBoxText() const;
    std::string GetNotesBoxText() const;
    // The project's map definition, or that there is none yet.
    std::string GetProjectMapText() const;
    // The maps the definition links for Windows and for Android/Quest, or that one is not linked.
    std::string GetWindowsMapText() const;
    std::string GetAndroidMapText() const;
    ECheckBoxState IsWindowsDeployPlatform() const;
    ECheckBoxState IsAndroidDeployPlatform() const;
    // Creating is for a project without a map definition; deploying and staging need one, and staging
    // also the game install and its Steam deploy object. None while a build task runs.
    bool CanCreateMapDefinition() const;
    bool CanEditNotes() const;
    bool CanDeploy() const;
    bool CanStage() const;

    void OnMapNameTextChanged(const std::string& Text);
    // Creates the project's map definition for the typed name (its id is the name) and saves it.
    bool CreateMapDefinitionClicked();
    void OnNotesTextChanged(const std::string& Text);
    void OnWindowsBuildPlatformsChanged(ECheckBoxState State);
    void OnAndroidBuildPlatformsChanged(ECheckBoxState State);
    bool StageButtonClicked();
    bool SubmitVeskoClicked();
    // The game folder the Steam-side stage copies into, or why there is none.
    std::string GetInstallDirText() const;

    // Source-plug-in browser.
    std::string GetPageStatus() const;
    // Why the catalogue could not be shown, in mod.io's words; empty while it can.
    std::string GetSourceQueryErrorText() const;
    // Why the last "Add to Project" added nothing; empty otherwise.
    std::string GetDownloadErrorText() const;
    bool IsNextPageEnabled() const;
    bool IsPreviousPageEnabled() const;
    bool CanGatherSourceMods() const;
    EVisibility GetModDownloadVisibility() const;
    std::optional<float> GetDownloadProgress() const;
    std::string GetDownloadProgressText() const;
    const std::vector<FWorkshopSourcePluginEntry>& GetSourceModRows() const { return SourceModRows; }
    // The sort combo's item and the search box's text: the client's catalogue query.
    ESourceModQueryType GetSourceModSortType() const;
    std::string GetSourceModSearchText() const;

    bool OnNextModPageClicked();
    bool OnPreviousModPageClicked();
    bool OnRefreshModPageClicked();
    // The sort combo changed; nothing happens while the combo has no current item.
    void UpdatedFilters(std::optional<ESourceModQueryType> CurrentItem);
    void OnSourceModSearchChanged(const std::string& Text);
    // Asks before replacing a plug-in of the project, looks up what the plug-in depends on, offers
    // the missing dependencies, then queues the downloads.
    void OnDownloadSourceModClicked(const FSourceModInfo& Mod);
    // Answers the dependency question instead of a message box, once the dependencies are known
    // (also when none is missing): true downloads the missing ones too. The command-line tool
    // answers from its options and lists the dependencies itself.
    std::function<bool(const FSourceModInfo&, const FDependencyResolution&)> DependencyAnswer;
    // A plug-in's dependencies are being looked up; its download is queued after that.
    bool IsCheckingDependencies() const { return !DependencyChecks.empty(); }
    void OnSourceModListUpdated(bool bSucceeded, const FSourceModList& List);
    void OnSourceModImageCreated(const FSourceModInfo& Mod);

private:
    void BindClientObservers();
    void UnbindClientObservers();
    void RunSourceQuery(FModioInterface& Client);
    void RebuildSourceModRows(const FSourceModList& List);
    void MakeSourceModRows(const FSourceModList& List);
    void MakeUploadRows();
    void RememberShareChoice(const std::string& ModId, const FSourceModInfo* OwnMod);
    static void Notify(const std::function<void()>& Event);
    void OnDependenciesResolved(const FSourceModInfo& Mod, const FDependencyResolution& Resolution);
    void QueueDownloads(FModioInterface& Client, const std::vector<FSourceModInfo>& Mods);
    // Each row takes its record's state from the client's catalogue page.
    void UpdateRowStates(FModioInterface& Client);

    // Rows and bindings hold this weakly, so nothing calls into a closed window.
    std::shared_ptr<int> AliveToken = std::make_shared<int>(0);

    EModType ModType = EModType::Map;
    bool bModTypeChosen = false;

    // Whether the chosen mod may share its source, refreshed from its definition while that lives.
    bool bShareChecked = false;
    mutable bool bShareAllowed = false;
    std::weak_ptr<FKelvorDefinition> ShareDefinition;

    std::vector<FWorkshopUploadEntry> UploadRows;
    std::vector<FWorkshopSourcePluginEntry> SourceModRows;
    std::vector<std::string> ModIdItems;

    // A search or sort change made while a query ran; it is sent when that query answers.
    bool bQueryAgain = false;
    // Mod ids whose dependencies are being looked up: a second press meanwhile does nothing.
    std::set<std::string> DependencyChecks;

    FModioInterface* BoundClient = nullptr;
    TMulticastDelegate<bool, const FSourceModList&>::FHandle ListUpdatedHandle = 0;
    TMulticastDelegate<const FSourceModInfo&>::FHandle ImageCreatedHandle = 0;
    TMulticastDelegate<>::FHandle UploadListHandle = 0;
};
}
