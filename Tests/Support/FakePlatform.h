#pragma once

// In-process fakes of the ports, for unit tests. Each records what the core asked of it.

#include "Platform/MaptornPlatform.h"

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Maptorn::Testing
{
struct FLogLine
{
    std::string Category;
    ELogVerbosity Verbosity;
    std::string Message;
};

class FRecordingLog final : public IMaptornLog
{
public:
    void Log(const char* Category, ELogVerbosity Verbosity, const std::string& Message) override;
    bool Has(const std::string& Category, ELogVerbosity Verbosity, const std::string& Message) const;
    int CountMessage(const std::string& Message) const;
    std::vector<FLogLine> Lines;
};

struct FMessageBoxCall
{
    EAppMsgType Type;
    std::string Text;
    std::string Caption;
};

struct FFileDialogCall
{
    std::string Title;
    std::string DefaultPath;
    std::string FileTypes;     // empty for folder dialogs
};

class FScriptedDialogs final : public IMaptornDialogs
{
public:
    EAppReturnType MessageBox(EAppMsgType Type, const std::string& Text, const std::string& Caption) override;
    std::optional<std::string> OpenFileDialog(const std::string& Title, const std::string& DefaultPath, const std::string& FileTypes) override;
    std::optional<std::string> OpenDirectoryDialog(const std::string& Title, const std::string& DefaultPath) override;
    void LaunchURL(const std::string& Url) override { OpenedUrls.push_back(Url); }

    std::vector<FMessageBoxCall> MessageBoxes;
    std::vector<FFileDialogCall> FileDialogs;
    std::deque<EAppReturnType> Answers;            // next Yes/No answers; Yes when empty
    std::optional<std::string> NextPickedPath;
    std::vector<std::string> OpenedUrls;
};

// Config files held in memory; "Disk" is what a fresh read sees.
class FMemoryConfigCache final : public IConfigCache
{
public:
    using FSections = std::map<std::string, std::map<std::string, std::string>>;

    void RemoveFromCache(const std::string& File) override { Cached.erase(File); }
    std::optional<std::string> GetString(const std::string& Section, const std::string& Key, const std::string& File) override;
    std::optional<bool> GetBool(const std::string& Section, const std::string& Key, const std::string& File) override;
    void SetString(const std::string& Section, const std::string& Key, const std::string& Value, const std::string& File) override;
    void SetBool(const std::string& Section, const std::string& Key, bool bValue, const std::string& File) override;
    bool Flush(bool bRemoveFromCache, const std::string& File) override;

    std::map<std::string, FSections> Disk;
    std::map<std::string, FSections> Cached;
    int FlushCount = 0;

private:
    FSections& Load(const std::string& File);
};

class FFakeEngine final : public IMaptornEngine
{
public:
    std::string GetBaseDir() override { return BaseDir; }
    std::string ProjectDir() override { return Project; }
    std::string GetProjectFilePath() override { return Project + "Proj.uproject"; }
    std::string ProjectContentDir() override { return Project + "Content/"; }
    std::string ProjectConfigDir() override { return Project + "Config/"; }
    std::string ProjectSavedDir() override { return Project + "Saved/"; }
    std::string ProjectPluginsDir() override { return Project + "Plugins/"; }
    std::string EngineDir() override { return EngineRoot + "Engine/"; }
    std::string UserSettingsDir() override { return UserSettings; }
    std::string EngineUserDir() override { return UserSettings + "UnrealEngine/5.1/"; }
    std::string EngineVersionString() override { return EngineVersion; }

    std::optional<FPluginInfo> FindPlugin(const std::string& Name) override;
    std::vector<FPluginInfo> GetEnabledPlugins() override { return Plugins; }
    bool CreateAndLoadNewPlugin(const std::string& Name, const std::string& PluginsParentDir, const std::string& TemplateDir,
        const FPluginDescriptor& Descriptor, std::string& OutFailReason) override;
    IConfigCache* GetConfig() override { return bHasConfig ? &Config : nullptr; }

    struct FCreatedPlugin
    {
        std::string Name, ParentDir, TemplateDir;
        FPluginDescriptor Descriptor;
    };

    std::string BaseDir = "/base/";
    std::string Project = "/proj/";
    std::string EngineRoot = "/engine/";
    std::string UserSettings = "/user/";
    std::string EngineVersion = "5.1.1-23901901+++UE5+Release-5.1";
    std::vector<FPluginInfo> Plugins;
    std::vector<FCreatedPlugin> CreatedPlugins;
    bool bFailPluginCreation = false;
    bool bHasConfig = true;
    FMemoryConfigCache Config;
};

class FMemoryDefinitions final : public IMaptornDefinitions
{
public:
    std::shared_ptr<FKelvorDefinition> LoadObject(const std::string& ObjectPath) override;
    std::shared_ptr<FKelvorDefinition> CreateDefinition(const std::string& PackageName, EModType Class) override;
    void MarkPackageDirty(const FKelvorDefinition& Definition) override { DirtyPackages.push_back(Definition.PackageName); }
    bool SavePackage(const FKelvorDefinition& Definition) override;

    // Adds a definition as if it were on disk.
    std::shared_ptr<FKelvorDefinition> Add(const std::string& PackageName, EModType Class);

    std::map<std::string, std::shared_ptr<FKelvorDefinition>> Objects;   // by object path
    std::vector<std::string> DirtyPackages;
    std::vector<std::string> SavedPackages;
};

class FRecordingProcesses final : public IMaptornProcesses
{
public:
    bool ExecProcess(const std::string& Url, const std::string& Params, int32& OutReturnCode, std::string& OutStdOut,
        std::string& OutStdErr) override;
    std::vector<std::pair<std::string, std::string>> Calls;
    bool bStartable = true;
    std::size_t UnstartableFromCall = SIZE_MAX;     // 0-based index of the first call that cannot start
    int32 ReturnCode = 0;
    std::string StdOut, StdErr;
};

class FManualTaskHandle final : public ITaskHandle
{
public:
    bool IsWorkDone() const override { return bDone; }
    bool bDone = false;
};

// Game-thread work waits for RunGameThread; background and pool work run when the test says so.
class FManualTasks final : public IMaptornTasks
{
public:
    void AsyncTask(ENamedThreads Thread, std::function<void()> Work) override;
    std::shared_ptr<ITaskHandle> StartPoolTask(std::function<void()> Work) override;
    void RunGameThread();
    void RunBackground();

    std::deque<std::function<void()>> GameThreadQueue;
    std::deque<std::function<void()>> BackgroundQueue;
};

class FNullHttp final : public IMaptornHttp
{
public:
    FHttpRequestPtr CreateRequest() override { return nullptr; }
};

class FNullArchive final : public IMaptornArchive
{
public:
    bool ExtractAll(const std::string&, const std::string&, std::string& OutError) override;
};

// Completions wait in a queue until RunPendingHandlers, as the SDK's do.
class FFakeModioSession final : public IModioSession
{
public:
    void InitializeAsync(const FModioInitializeOptions& Options, FOnErrorOnlyDelegate OnInitComplete) override;
    void SetLogLevel(EModioLogLevel Level) override { LogLevel = Level; }
    FModioErrorCode EnableModManagement(FOnModManagementDelegate Callback) override;
    void VerifyUserAuthenticationAsync(FOnErrorOnlyDelegate Callback) override;
    void RequestEmailAuthCodeAsync(const std::string& EmailAddress, FOnErrorOnlyDelegate Callback) override;
    void AuthenticateUserEmailAsync(const std::string& AuthCode, FOnErrorOnlyDelegate Callback) override;
    void ClearUserDataAsync(FOnErrorOnlyDelegate Callback) override;
    void ShutdownAsync(FOnErrorOnlyDelegate Callback) override;
    void RunPendingHandlers() override;
    std::optional<FModioModProgressInfo> QueryCurrentModUpdate() override { return CurrentProgress; }
    std::string GetAuthTokenAsString() override { return Token; }
    FModioModCreationHandle GetModCreationHandle() override { return {++LastHandle}; }
    void SubmitNewModAsync(FModioModCreationHandle Handle, const FModioCreateModParams& Params, FOnSubmitNewModDelegate Callback) override;
    void SubmitModChangesAsync(FModioModID Mod, const FModioEditModParams& Params, FOnSubmitModChangesDelegate Callback) override;
    void SubmitNewModFileForMod(FModioModID Mod, const FModioCreateModFileParams& Params) override;

    std::vector<std::string> Calls;
    std::optional<FModioInitializeOptions> InitOptions;
    std::optional<EModioLogLevel> LogLevel;
    std::optional<FModioModProgressInfo> CurrentProgress;
    FModioErrorCode NextResult;                  // what the next completion reports
    std::deque<std::function<void()>> Pending;
    std::string Token;
    int PumpCount = 0;
    int64 LastHandle = 0;
    // What the mod calls were given, and the id a successful creation answers with.
    std::vector<FModioCreateModParams> CreateModParams;
    std::vector<FModioEditModParams> EditModParams;
    std::vector<FModioCreateModFileParams> ModFileParams;
    std::optional<FModioModID> NextNewModId;

private:
    void Complete(const std::string& Call, FOnErrorOnlyDelegate Callback);
};

// Every fake, bundled into one platform.
struct FFakePlatform
{
    FRecordingLog Log;
    FScriptedDialogs Dialogs;
    FFakeEngine Engine;
    FMemoryDefinitions Definitions;
    FRecordingProcesses Processes;
    FManualTasks Tasks;
    FNullHttp Http;
    FNullArchive Archive;
    FFakeModioSession Session;
    FMaptornPlatform Platform{Log, Dialogs, Engine, Definitions, Processes, Tasks, Http, Archive, &Session};
};
}
