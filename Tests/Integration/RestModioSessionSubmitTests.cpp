// The standalone mod.io session creating and editing mods and uploading mod files, against the
// sandbox service on loopback through the real HTTP adapter: what the service ends up holding,
// the requests it saw, the Uploaded event of every end, and no temporary file left behind.

#include "ModioService/SandboxZip.h"
#include "Platform/RestModioSessionRequests.h"
#include "Support/DefaultLogoBytes.h"
#include "Support/RestSessionFixture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

using namespace Maptorn;
using namespace Maptorn::Testing;
namespace fs = std::filesystem;
using nlohmann::json;

namespace
{
constexpr int64 MiB = 1024 * 1024;
constexpr int64 ServicePartSize = 50 * MiB;

class RestModioSessionSubmit : public FRestSessionTest
{
protected:
    // A folder as the packager leaves it: nested files and an empty folder.
    fs::path MakeModFolder()
    {
        const fs::path Root = Temp.Path() / "Cooked" / "UGC1001";
        WriteTextFile(Root / "UGC1001.uplugin", "{\"FriendlyName\":\"Harbour Run\"}");
        WriteTextFile(Root / "Content" / "Paks" / "Windows" / "UGC1001.pak", std::string(40000, 'p'));
        WriteTextFile(Root / "Content" / "metadata.json", "{\"version\":4}");
        fs::create_directories(Root / "Content" / "Empty");
        return Root;
    }

    FModioCreateModFileParams ParamsFor(const fs::path& Root)
    {
        FModioCreateModFileParams Params;
        Params.RootDirectory = Root.string();
        Params.VersionString = "4";
        Params.Changelog = "Night lights on the pier";
        Params.MetadataBlob = "{\"type\":\"map\",\"VersionUUID\":4}";
        Params.ModfilePlatforms = std::vector<EModioModfilePlatform>{EModioModfilePlatform::Windows};
        return Params;
    }

    FRestUploadOptions OptionsWith(int64 Threshold, int64 PartSize = ServicePartSize)
    {
        FRestUploadOptions Options;
        Options.MultipartThreshold = Threshold;
        Options.PartSize = PartSize;
        Options.TemporaryFolder = UploadFolder.string();
        return Options;
    }

    // Runs a mod creation or edit to its callback, which must come once, from RunPendingHandlers.
    template <typename TResult>
    std::pair<FModioErrorCode, std::optional<TResult>> Await(FRestModioSession& Session,
        const std::function<void(std::function<void(FModioErrorCode, std::optional<TResult>)>)>& Start)
    {
        int Calls = 0;
        std::pair<FModioErrorCode, std::optional<TResult>> Result;
        Start([&](FModioErrorCode Error, std::optional<TResult> Value) {
            EXPECT_TRUE(bInsidePendingHandlers) << "a completion ran outside RunPendingHandlers";
            ++Calls;
            Result = {Error, Value};
        });
        TickUntil(Session, [&] { return Calls > 0; });
        Tick(Session);
        EXPECT_EQ(Calls, 1);
        ErrorMessages.push_back(Result.first.GetErrorMessage());
        return Result;
    }

    std::pair<FModioErrorCode, std::optional<FModioModID>> CreateMod(FRestModioSession& Session, const FModioCreateModParams& Params)
    {
        return Await<FModioModID>(Session, [&](FOnSubmitNewModDelegate Done) {
            Session.SubmitNewModAsync(Session.GetModCreationHandle(), Params, std::move(Done));
        });
    }

    std::pair<FModioErrorCode, std::optional<FModioModInfo>> EditMod(FRestModioSession& Session, FModioModID Mod,
        const FModioEditModParams& Params)
    {
        return Await<FModioModInfo>(Session, [&](FOnSubmitModChangesDelegate Done) {
            Session.SubmitModChangesAsync(Mod, Params, std::move(Done));
        });
    }

    std::vector<std::string> TagsOf(const json& Mod)
    {
        std::vector<std::string> Tags;
        for (const json& Tag : Mod["tags"])
        {
            Tags.push_back(Tag["name"]);
        }
        return Tags;
    }
};
}

// ---- Creating and editing mods ----

TEST_F(RestModioSessionSubmit, ModCreationWithoutAReadableLogoOrALoginFailsWithoutARequest)
{
    FModioCreateModParams Params;
    Params.Name = "No Logo";
    Params.Summary = "Missing its logo";
    {
        const std::unique_ptr<FRestModioSession> Session = MakeSession();
        Params.PathToLogoFile = (Temp.Path() / "missing.png").string();
        const auto [Error, Mod] = CreateMod(*Session, Params);
        EXPECT_EQ(Error.GetValue(), ModioRest::ErrorValue::BadParameter);
        EXPECT_NE(Error.GetErrorMessage().find("missing.png"), std::string::npos) << Error.GetErrorMessage();
        EXPECT_FALSE(Mod);

        Params.PathToLogoFile.clear();
        EXPECT_EQ(CreateMod(*Session, Params).first.GetValue(), ModioRest::ErrorValue::BadParameter);
    }
    fs::remove(LoginFile);
    const std::unique_ptr<FRestModioSession> LoggedOut = MakeSession(false);
    const fs::path Logo = Temp.Path() / "logo.png";
    WriteTextFile(Logo, DefaultLogoBytes());
    Params.PathToLogoFile = Logo.string();
    EXPECT_EQ(CreateMod(*LoggedOut, Params).first.GetValue(), ModioRest::ErrorValue::NoAuthToken);
    FModioEditModParams Edit;
    Edit.Name = "Renamed";
    EXPECT_EQ(EditMod(*LoggedOut, ModderModId, Edit).first.GetValue(), ModioRest::ErrorValue::NoAuthToken);
    EXPECT_TRUE(RequestsTo("POST", "/v1/games/1/mods").empty());
    EXPECT_TRUE(RequestsTo("POST", ModPath(ModderModId)).empty());
}

// Only what the edit names changes: the metadata alone, then the name and tags, an empty tag list, the logo.
TEST_F(RestModioSessionSubmit, EditingChangesOnlyTheFieldsItNames)
{
    const std::unique_ptr<FRestModioSession> Session = MakeSession();
    const json Before = GetJson(ModPath(ModderModId));
    FModioEditModParams Metadata;
    Metadata.MetadataBlob = "{\"type\":\"map\",\"VersionUUID\":7}";
    const auto [Error, Info] = EditMod(*Session, ModderModId, Metadata);
    ASSERT_FALSE(Error) << Error.GetErrorMessage();
    ASSERT_TRUE(Info);
    EXPECT_EQ(Info->ModId, ModderModId);
    EXPECT_EQ(Info->MetadataBlob, "{\"type\":\"map\",\"VersionUUID\":7}");
    json After = GetJson(ModPath(ModderModId));
    EXPECT_EQ(After["metadata_blob"], "{\"type\":\"map\",\"VersionUUID\":7}");
    EXPECT_EQ(After["name"], Before["name"]);
    EXPECT_EQ(After["summary"], Before["summary"]);
    EXPECT_EQ(TagsOf(After), TagsOf(Before));
    EXPECT_EQ(After["logo"], Before["logo"]);
    EXPECT_EQ(RequestsTo("POST", ModPath(ModderModId)).size(), 1u);

    FModioEditModParams Tags;
    Tags.Name = "Harbour Run Remastered";
    Tags.Tags = std::vector<std::string>{"Map", "Remaster"};
    ASSERT_FALSE(EditMod(*Session, ModderModId, Tags).first);
    EXPECT_EQ(TagsOf(GetJson(ModPath(ModderModId))), (std::vector<std::string>{"Map", "Remaster"}));
    FModioEditModParams Clear;
    Clear.Tags = std::vector<std::string>{};
    ASSERT_FALSE(EditMod(*Session, ModderModId, Clear).first);
    EXPECT_TRUE(TagsOf(GetJson(ModPath(ModderModId))).empty());
    EXPECT_EQ(GetJson(ModPath(ModderModId))["name"], "Harbour Run Remastered");

    const fs::path Logo = Temp.Path() / "night.png";
    WriteTextFile(Logo, DefaultLogoBytes());
    FModioEditModParams NewLogo;
    NewLogo.LogoPath = Logo.string();
    ASSERT_FALSE(EditMod(*Session, ModderModId, NewLogo).first);
    After = GetJson(ModPath(ModderModId));
    EXPECT_EQ(After["logo"]["filename"], "night.png");
    EXPECT_EQ(GetBytes(After["logo"]["original"]), DefaultLogoBytes());
    EXPECT_EQ(After["name"], "Harbour Run Remastered");
    EXPECT_EQ(RequestsTo("POST", ModPath(ModderModId)).back().Headers.at("content-type").rfind("multipart/form-data; boundary=", 0), 0u);
}

TEST_F(RestModioSessionSubmit, EditingSomeoneElsesModAnswersTheServicesRefusal)
{
    const std::unique_ptr<FRestModioSession> Session = MakeSession();
    const json Before = GetJson(ModPath(StrangerModId));
    FModioEditModParams Params;
    Params.Name = "Taken Over";

    const auto [Error, Info] = EditMod(*Session, StrangerModId, Params);
    EXPECT_EQ(Error.GetValue(), 15024);
    EXPECT_FALSE(Info);
    EXPECT_EQ(GetJson(ModPath(StrangerModId))["name"], Before["name"]);
    EXPECT_EQ(Session->GetAuthTokenAsString(), Token) << "a 403 is no reason to forget the login";

    const auto [Nothing, NoInfo] = EditMod(*Session, ModderModId, FModioEditModParams{});
    EXPECT_EQ(Nothing.GetValue(), ModioRest::ErrorValue::BadParameter);
    EXPECT_TRUE(RequestsTo("POST", ModPath(ModderModId)).empty());
}

// ---- Uploading mod files in one request ----

TEST_F(RestModioSessionSubmit, ASmallFolderGoesAsOneFormDataRequestWithEveryParameter)
{
    const std::unique_ptr<FRestModioSession> Session = MakeSession();
    const fs::path Root = MakeModFolder();
    FModioCreateModFileParams Params = ParamsFor(Root);
    Params.ModfilePlatforms = std::vector<EModioModfilePlatform>{EModioModfilePlatform::Windows, EModioModfilePlatform::Oculus,
        EModioModfilePlatform::Android, EModioModfilePlatform::Source};

    const FModioModManagementEvent Event = UploadAndWait(*Session, ModderModId, Params);
    ASSERT_FALSE(Event.Status) << Event.Status.GetErrorMessage();
    const json Modfile = NewestModfile(ModderModId);
    ASSERT_FALSE(Modfile.is_null());
    EXPECT_EQ(Modfile["version"], "4");
    EXPECT_EQ(Modfile["changelog"], "Night lights on the pier");
    EXPECT_EQ(Modfile["metadata_blob"], "{\"type\":\"map\",\"VersionUUID\":4}");
    EXPECT_EQ(Modfile["filename"], "UGC1001.zip");
    std::vector<std::string> Platforms;
    for (const json& Platform : Modfile["platforms"])
    {
        Platforms.push_back(Platform["platform"]);
    }
    EXPECT_EQ(Platforms, (std::vector<std::string>{"windows", "oculus", "android", "source"}));

    const std::map<std::string, std::string> Entries = ArchiveEntries(GetBytes(Modfile["download"]["binary_url"]));
    const std::map<std::string, std::string> Expected{{"Content/", ""}, {"Content/Empty/", ""}, {"Content/Paks/", ""},
        {"Content/Paks/Windows/", ""}, {"Content/Paks/Windows/UGC1001.pak", std::string(40000, 'p')},
        {"Content/metadata.json", "{\"version\":4}"}, {"UGC1001.uplugin", "{\"FriendlyName\":\"Harbour Run\"}"}};
    EXPECT_EQ(Entries, Expected);

    const std::vector<Sandbox::FRecordedRequest> Posts = RequestsTo("POST", ModPath(ModderModId) + "/files");
    ASSERT_EQ(Posts.size(), 1u);
    EXPECT_EQ(Posts[0].Headers.at("content-type").rfind("multipart/form-data; boundary=", 0), 0u);
    EXPECT_TRUE(RequestsTo("POST", ModPath(ModderModId) + "/files/multipart").empty());
    EXPECT_TRUE(NoTemporaryFilesLeft());
}

TEST_F(RestModioSessionSubmit, ProgressGoesFromCompressingToUploadingCountingBytes)
{
    const std::unique_ptr<FRestModioSession> Session = MakeSession();
    const fs::path Root = MakeModFolder();
    WriteRandomFile(Root / "Content" / "Paks" / "Windows" / "UGC1001-Windows.utoc", 12 * MiB, 1);
    const int64 InputBytes = 12 * MiB + 40000 + 13 + static_cast<int64>(std::string("{\"FriendlyName\":\"Harbour Run\"}").size());

    ASSERT_FALSE(UploadAndWait(*Session, ModderModId, ParamsFor(Root)).Status);
    const int64 ArchiveBytes = NewestModfile(ModderModId)["filesize"];

    ASSERT_FALSE(Progress.empty());
    bool bSawCompressing = false;
    bool bSawUploading = false;
    for (std::size_t Index = 0; Index < Progress.size(); ++Index)
    {
        const FModioModProgressInfo& Now = Progress[Index];
        EXPECT_EQ(Now.ID, ModderModId);
        EXPECT_LE(Now.Current, Now.Total);
        if (Index > 0)
        {
            const FModioModProgressInfo& Earlier = Progress[Index - 1];
            EXPECT_GE(Now.State, Earlier.State) << "states only move forward";
            if (Now.State == Earlier.State)
            {
                EXPECT_GE(Now.Current, Earlier.Current) << "bytes only go up";
            }
        }
        if (Now.GetCurrentState() == EModioModProgressState::Compressing)
        {
            bSawCompressing = true;
            EXPECT_EQ(Now.Total, InputBytes) << "compression counts the folder's bytes";
        }
        if (Now.GetCurrentState() == EModioModProgressState::Uploading)
        {
            bSawUploading = true;
            EXPECT_EQ(Now.Total, ArchiveBytes) << "the upload counts the archive's bytes";
        }
    }
    EXPECT_TRUE(bSawCompressing);
    EXPECT_TRUE(bSawUploading);
}

// A service error or a dropped connection on the file post; the next upload works.
TEST_F(RestModioSessionSubmit, AServiceErrorOrADroppedConnectionOnTheFilePostEndsWithItsError)
{
    const std::unique_ptr<FRestModioSession> Session = MakeSession();
    const fs::path Root = MakeModFolder();
    Sandbox.InjectFault({ModPath(ModderModId) + "/files", "POST", 1, Sandbox::EFaultKind::Status, 500, 0});

    const FModioModManagementEvent Failed = UploadAndWait(*Session, ModderModId, ParamsFor(Root));
    EXPECT_EQ(Failed.Status.GetValue(), 10000);
    EXPECT_EQ(Failed.Status.GetErrorMessage(), "The mod.io API is temporarily unavailable. (HTTP 500, error_ref 10000)");
    EXPECT_TRUE(NoTemporaryFilesLeft());
    EXPECT_TRUE(NewestModfile(ModderModId)["version"] != "4") << "nothing was added";

    Sandbox.InjectFault({ModPath(ModderModId) + "/files", "POST", 1, Sandbox::EFaultKind::CloseMidBody, 0, 0});
    EXPECT_EQ(UploadAndWait(*Session, ModderModId, ParamsFor(Root)).Status.GetValue(), ModioErrorValue::HttpRequestFailed);
    EXPECT_TRUE(NoTemporaryFilesLeft());

    const FModioModManagementEvent Retried = UploadAndWait(*Session, ModderModId, ParamsFor(Root));
    EXPECT_FALSE(Retried.Status) << Retried.Status.GetErrorMessage();
    EXPECT_EQ(NewestModfile(ModderModId)["version"], "4");
    EXPECT_TRUE(NoTemporaryFilesLeft());
}

TEST_F(RestModioSessionSubmit, AnExpiredTokenEndsTheUploadWithItsErrorAndForgetsTheLogin)
{
    const std::unique_ptr<FRestModioSession> Session = MakeSession();
    Sandbox.ExpireToken(Token);

    const FModioModManagementEvent Event = UploadAndWait(*Session, ModderModId, ParamsFor(MakeModFolder()));
    EXPECT_EQ(Event.Status.GetValue(), 11005);
    EXPECT_EQ(Event.Status.GetErrorMessage(), "Your access token has expired or been revoked. (HTTP 401, error_ref 11005)");
    EXPECT_TRUE(NoTemporaryFilesLeft());
    EXPECT_EQ(Session->GetAuthTokenAsString(), "");
    EXPECT_FALSE(fs::exists(LoginFile));
}

TEST_F(RestModioSessionSubmit, ASubmissionThatCannotStartEndsAtOnceWithoutARequest)
{
    {
        const std::unique_ptr<FRestModioSession> LoggedOut = MakeSession(false);
        const FModioModManagementEvent Event = UploadAndWait(*LoggedOut, ModderModId, ParamsFor(MakeModFolder()));
        EXPECT_EQ(Event.Event, EModioModManagementEventType::Uploaded);
        EXPECT_EQ(Event.ID, ModderModId);
        EXPECT_EQ(Event.Status.GetValue(), ModioRest::ErrorValue::NoAuthToken);
    }
    const std::unique_ptr<FRestModioSession> Session = MakeSession();
    Sandbox.ClearRequestLog();
    const FModioModManagementEvent Missing = UploadAndWait(*Session, ModderModId, ParamsFor(Temp.Path() / "NoSuchFolder"));
    EXPECT_EQ(Missing.Status.GetValue(), ModioRest::ErrorValue::BadParameter);
    EXPECT_NE(Missing.Status.GetErrorMessage().find("NoSuchFolder"), std::string::npos);

    fs::create_directories(Temp.Path() / "EmptyFolder" / "Nothing");
    const FModioModManagementEvent Empty = UploadAndWait(*Session, ModderModId, ParamsFor(Temp.Path() / "EmptyFolder"));
    EXPECT_EQ(Empty.Status.GetValue(), ModioRest::ErrorValue::ArchiveFailed);

    EXPECT_TRUE(Sandbox.RequestLog().empty());
    EXPECT_TRUE(NoTemporaryFilesLeft());
}

TEST_F(RestModioSessionSubmit, ASecondSubmissionWhileOneRunsIsRefusedAndTheFirstCompletes)
{
    const std::unique_ptr<FRestModioSession> Session = MakeSession();
    const fs::path Root = MakeModFolder();
    Session->SubmitNewModFileForMod(ModderModId, ParamsFor(Root));
    Session->SubmitNewModFileForMod(ModderModId + 1, ParamsFor(Root));

    TickUntil(*Session, [&] { return Events.size() == 2; });
    EXPECT_EQ(Events[0].ID, ModderModId + 1);
    EXPECT_EQ(Events[0].Status.GetValue(), ModioRest::ErrorValue::UploadAlreadyRunning);
    EXPECT_EQ(Events[1].ID, ModderModId);
    EXPECT_FALSE(Events[1].Status) << Events[1].Status.GetErrorMessage();
    EXPECT_EQ(RequestsTo("POST", ModPath(ModderModId) + "/files").size(), 1u);
    EXPECT_TRUE(RequestsTo("POST", ModPath(ModderModId + 1) + "/files").empty());
    EXPECT_TRUE(NoTemporaryFilesLeft());
}

TEST_F(RestModioSessionSubmit, ShuttingDownStopsARunningUploadAndSaysSo)
{
    const std::unique_ptr<FRestModioSession> Session = MakeSession();
    Session->SubmitNewModFileForMod(ModderModId, ParamsFor(MakeModFolder()));
    bool bShutDown = false;
    Session->ShutdownAsync([&](FModioErrorCode) { bShutDown = true; });
    EXPECT_TRUE(NoTemporaryFilesLeft());
    EXPECT_FALSE(Session->QueryCurrentModUpdate());

    TickUntil(*Session, [&] { return bShutDown && !Events.empty(); });
    for (int Frame = 0; Frame < 20; ++Frame)
    {
        Tick(*Session);
    }
    ASSERT_EQ(Events.size(), 1u);
    EXPECT_EQ(Events[0].ID, ModderModId);
    EXPECT_EQ(Events[0].Status.GetValue(), ModioRest::ErrorValue::SdkNotInitialized);
    EXPECT_TRUE(RequestsTo("POST", ModPath(ModderModId) + "/files").empty());
}

TEST_F(RestModioSessionSubmit, ADestroyedSessionLeavesNoTemporaryFilesAndSendsNoEvent)
{
    const fs::path Root = MakeModFolder();
    WriteRandomFile(Root / "Content" / "Big.pak", 8 * MiB, 2);
    {
        std::unique_ptr<FRestModioSession> Session = MakeSession();
        Session->SubmitNewModFileForMod(ModderModId, ParamsFor(Root));
        Session.reset();
        EXPECT_TRUE(NoTemporaryFilesLeft()) << "destroyed while packing";
    }
    {
        std::unique_ptr<FRestModioSession> Session = MakeSession();
        Sandbox.InjectFault({ModPath(ModderModId) + "/files", "POST", 1, Sandbox::EFaultKind::Stall, 0, 3000});
        Session->SubmitNewModFileForMod(ModderModId, ParamsFor(Root));
        TickUntil(*Session, [&] {
            const std::optional<FModioModProgressInfo> Now = Session->QueryCurrentModUpdate();
            return Now && Now->State == EModioModProgressState::Uploading;
        });
        Session.reset();
        EXPECT_TRUE(NoTemporaryFilesLeft()) << "destroyed while sending";
    }
    for (int Frame = 0; Frame < 20; ++Frame)
    {
        Tasks.PumpGameThread();
    }
    EXPECT_TRUE(Events.empty());
}

// ---- Uploading mod files through multipart sessions ----

TEST_F(RestModioSessionSubmit, AnArchiveAboveTheThresholdGoesThroughAMultipartSession)
{
    const std::unique_ptr<FRestModioSession> Session = MakeSession();
    Session->SetUploadOptions(OptionsWith(64));
    const fs::path Root = MakeModFolder();

    const FModioModManagementEvent Event = UploadAndWait(*Session, ModderModId, ParamsFor(Root));
    ASSERT_FALSE(Event.Status) << Event.Status.GetErrorMessage();
    const std::vector<Sandbox::FRecordedRequest> Sent = Sandbox.RequestLog();

    const json Modfile = NewestModfile(ModderModId);
    EXPECT_EQ(Modfile["version"], "4");
    EXPECT_EQ(Modfile["metadata_blob"], "{\"type\":\"map\",\"VersionUUID\":4}");
    const std::string Archive = GetBytes(Modfile["download"]["binary_url"]);
    EXPECT_EQ(ArchiveEntries(Archive).at("Content/metadata.json"), "{\"version\":4}");

    const std::string Sessions = ModPath(ModderModId) + "/files/multipart";
    std::vector<std::string> Steps;
    for (const Sandbox::FRecordedRequest& Request : Sent)
    {
        Steps.push_back(Request.Method + " " + Request.Path);
    }
    EXPECT_EQ(Steps, (std::vector<std::string>{"POST " + Sessions, "GET " + Sessions, "PUT " + Sessions, "POST " + Sessions + "/complete",
                         "POST " + ModPath(ModderModId) + "/files"}));
    const std::vector<Sandbox::FRecordedRequest> Parts = RequestsTo("PUT", Sessions);
    ASSERT_EQ(Parts.size(), 1u);
    EXPECT_EQ(Parts[0].Headers.at("content-range"),
        "bytes 0-" + std::to_string(Archive.size() - 1) + "/" + std::to_string(Archive.size()));
    EXPECT_EQ(Parts[0].BodySize, Archive.size());
    EXPECT_EQ(RequestsTo("POST", ModPath(ModderModId) + "/files")[0].Headers.at("content-type"), "application/x-www-form-urlencoded");
    EXPECT_TRUE(NoTemporaryFilesLeft());
}

// A completed session's nonce is spent (mod.io answers 400, ref 29002): the same archive sent
// again opens the next session instead of failing.
TEST_F(RestModioSessionSubmit, TheSameArchiveSentAgainOpensANewMultipartSession)
{
    const std::unique_ptr<FRestModioSession> Session = MakeSession();
    Session->SetUploadOptions(OptionsWith(64));
    const fs::path Root = MakeModFolder();
    const std::string Sessions = ModPath(ModderModId) + "/files/multipart";
    ASSERT_FALSE(UploadAndWait(*Session, ModderModId, ParamsFor(Root)).Status);
    const std::string FirstHash = NewestModfile(ModderModId)["filehash"]["md5"];
    const std::vector<Sandbox::FRecordedRequest> FirstParts = RequestsTo("PUT", Sessions);
    ASSERT_EQ(FirstParts.size(), 1u);

    Sandbox.ClearRequestLog();
    const FModioModManagementEvent Again = UploadAndWait(*Session, ModderModId, ParamsFor(Root));
    ASSERT_FALSE(Again.Status) << Again.Status.GetErrorMessage();
    ASSERT_EQ(NewestModfile(ModderModId)["filehash"]["md5"], FirstHash) << "the same archive";
    std::vector<int> Opened;
    for (const Sandbox::FRecordedRequest& Request : RequestsTo("POST", Sessions))
    {
        Opened.push_back(Request.Status);
    }
    EXPECT_EQ(Opened, (std::vector<int>{400, 200})) << "the spent nonce, then the next one";
    const std::vector<Sandbox::FRecordedRequest> Parts = RequestsTo("PUT", Sessions);
    ASSERT_EQ(Parts.size(), 1u);
    EXPECT_NE(Parts[0].Query, FirstParts[0].Query) << "a new session";
    EXPECT_EQ(RequestsTo("POST", ModPath(ModderModId) + "/files").size(), 1u);
}

// The part size is ours to set, but the service only takes 50 MiB parts: a 64 KiB first part is
// refused as a final part that does not end the file.
TEST_F(RestModioSessionSubmit, APartTheServiceRefusesEndsTheUploadWithItsErrorRef)
{
    const std::unique_ptr<FRestModioSession> Session = MakeSession();
    Session->SetUploadOptions(OptionsWith(64, 64 * 1024));
    const fs::path Root = MakeModFolder();
    WriteRandomFile(Root / "Content" / "Noise.bin", 256 * 1024, 3);

    const FModioModManagementEvent Event = UploadAndWait(*Session, ModderModId, ParamsFor(Root));
    EXPECT_EQ(Event.Status.GetValue(), 29026);
    EXPECT_EQ(RequestsTo("PUT", ModPath(ModderModId) + "/files/multipart").size(), 1u) << "nothing is sent after a refused part";
    EXPECT_TRUE(RequestsTo("POST", ModPath(ModderModId) + "/files").empty());
    EXPECT_TRUE(NoTemporaryFilesLeft());
}

TEST_F(RestModioSessionSubmit, AnInterruptedMultipartUploadResumesWithoutResendingItsParts)
{
    const std::unique_ptr<FRestModioSession> Session = MakeSession();
    Session->SetUploadOptions(OptionsWith(MiB));
    const fs::path Root = MakeModFolder();
    WriteRandomFile(Root / "Content" / "Paks" / "Windows" / "UGC1001.ucas", ServicePartSize + 3 * MiB, 4);
    const std::string Sessions = ModPath(ModderModId) + "/files/multipart";

    // The service keeps the first part, but its answer is cut off.
    Sandbox.InjectFault({Sessions, "PUT", 1, Sandbox::EFaultKind::CloseMidBody, 0, 0});
    const FModioModManagementEvent Interrupted = UploadAndWait(*Session, ModderModId, ParamsFor(Root));
    EXPECT_EQ(Interrupted.Status.GetValue(), ModioErrorValue::HttpRequestFailed);
    EXPECT_TRUE(NoTemporaryFilesLeft());
    const std::vector<Sandbox::FRecordedRequest> FirstParts = RequestsTo("PUT", Sessions);
    ASSERT_EQ(FirstParts.size(), 1u);
    EXPECT_EQ(FirstParts[0].Headers.at("content-range").rfind("bytes 0-52428799/", 0), 0u);
    EXPECT_TRUE(RequestsTo("POST", ModPath(ModderModId) + "/files").empty());

    Sandbox.ClearRequestLog();
    const FModioModManagementEvent Resumed = UploadAndWait(*Session, ModderModId, ParamsFor(Root));
    ASSERT_FALSE(Resumed.Status) << Resumed.Status.GetErrorMessage();
    const std::vector<Sandbox::FRecordedRequest> Parts = RequestsTo("PUT", Sessions);
    ASSERT_EQ(Parts.size(), 1u) << "only the part the service lacks is sent";
    EXPECT_EQ(Parts[0].Headers.at("content-range").rfind("bytes 52428800-", 0), 0u);
    EXPECT_EQ(Parts[0].Query, FirstParts[0].Query) << "the same session";
    ASSERT_EQ(RequestsTo("GET", Sessions).size(), 1u);
    EXPECT_EQ(RequestsTo("GET", Sessions)[0].Status, 200);

    const json Modfile = NewestModfile(ModderModId);
    const std::map<std::string, std::string> Entries = ArchiveEntries(GetBytes(Modfile["download"]["binary_url"]));
    EXPECT_TRUE(Entries.at("Content/Paks/Windows/UGC1001.ucas") == ReadTextFile(Root / "Content" / "Paks" / "Windows" / "UGC1001.ucas"))
        << "the joined parts are the archive";
    EXPECT_TRUE(NoTemporaryFilesLeft());
}

// The real threshold and part size: about 210 MiB that do not compress, packed and sent in five parts.
TEST_F(RestModioSessionSubmit, AnArchiveOverTwoHundredMiBGoesInFiftyMiBParts)
{
    const std::unique_ptr<FRestModioSession> Session = MakeSession();
    const fs::path Root = Temp.Path() / "Large" / "UGC1001";
    WriteRandomFile(Root / "Content" / "Paks" / "Windows" / "UGC1001.ucas", 210 * MiB, 5);
    const std::string Sessions = ModPath(ModderModId) + "/files/multipart";

    const FModioModManagementEvent Event = UploadAndWait(*Session, ModderModId, ParamsFor(Root));
    ASSERT_FALSE(Event.Status) << Event.Status.GetErrorMessage();

    const int64 ArchiveBytes = NewestModfile(ModderModId)["filesize"];
    EXPECT_GT(ArchiveBytes, 200 * MiB);
    const std::vector<Sandbox::FRecordedRequest> Parts = RequestsTo("PUT", Sessions);
    ASSERT_EQ(Parts.size(), 5u);
    for (int64 Index = 0; Index < 5; ++Index)
    {
        const int64 First = Index * ServicePartSize;
        const int64 Last = std::min(First + ServicePartSize, ArchiveBytes) - 1;
        EXPECT_EQ(Parts[static_cast<std::size_t>(Index)].Headers.at("content-range"),
            "bytes " + std::to_string(First) + "-" + std::to_string(Last) + "/" + std::to_string(ArchiveBytes));
        EXPECT_EQ(Parts[static_cast<std::size_t>(Index)].Status, 200);
    }
    EXPECT_EQ(RequestsTo("POST", ModPath(ModderModId) + "/files").size(), 1u);
    EXPECT_TRUE(NoTemporaryFilesLeft());
}
