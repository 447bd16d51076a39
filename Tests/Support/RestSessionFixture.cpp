#include "Support/RestSessionFixture.h"

#include "Platform/StoredLogin.h"

#include <httplib.h>
#include <zip.h>

#include <chrono>
#include <fstream>
#include <thread>

namespace fs = std::filesystem;

namespace Maptorn::Testing
{
FRestSessionTest::FRestSessionTest()
    : Sandbox(Sandbox::FSandboxOptions{0, "", 1, ApiKey, true, true})
{
    bStarted = Sandbox.Start(StartError);
    LoginFile = Temp.Path() / "config" / "login-1.json";
    UploadFolder = Temp.Path() / "uploads";
}

void FRestSessionTest::SetUp()
{
    ASSERT_TRUE(bStarted) << StartError;
    fs::create_directories(UploadFolder);
}

void FRestSessionTest::TearDown()
{
    for (const FModioModManagementEvent& Event : Events)
    {
        ErrorMessages.push_back(Event.Status.GetErrorMessage());
    }
    for (const std::string& Message : ErrorMessages)
    {
        EXPECT_EQ(Message.find(ApiKey), std::string::npos) << Message;
        EXPECT_TRUE(Token.empty() || Message.find(Token) == std::string::npos) << "an error message shows the token";
    }
}

std::unique_ptr<FRestModioSession> FRestSessionTest::MakeSession(bool bLoggedIn)
{
    if (bLoggedIn)
    {
        Token = Sandbox.IssueTokenFor(ModderEmail);
        EXPECT_TRUE(SaveStoredLogin(LoginFile.string(), FStoredLogin{Token, 0, Sandbox.GetBaseUrl()}));
    }
    auto Session = std::make_unique<FRestModioSession>(Http, LoginFile.string());
    FRestUploadOptions Options;
    Options.TemporaryFolder = UploadFolder.string();
    Session->SetUploadOptions(Options);
    bool bInitialized = false;
    Session->InitializeAsync(FModioInitializeOptions{1, ApiKey, EModioEnvironment::Live, Sandbox.GetBaseUrl()},
        [&](FModioErrorCode Error) {
            EXPECT_FALSE(Error) << Error.GetErrorMessage();
            bInitialized = true;
        });
    TickUntil(*Session, [&] { return bInitialized; });
    Session->EnableModManagement([this](FModioModManagementEvent Event) {
        EXPECT_TRUE(bInsidePendingHandlers) << "an event was delivered outside RunPendingHandlers";
        Events.push_back(Event);
    });
    EXPECT_EQ(Session->GetAuthTokenAsString(), bLoggedIn ? Token : std::string());
    return Session;
}

void FRestSessionTest::Tick(FRestModioSession& Session)
{
    Tasks.PumpGameThread();
    bInsidePendingHandlers = true;
    Session.RunPendingHandlers();
    bInsidePendingHandlers = false;
}

void FRestSessionTest::TickUntil(FRestModioSession& Session, const std::function<bool()>& Done)
{
    for (int Frame = 0; Frame < 60 * 600 && !Done(); ++Frame)
    {
        Tick(Session);
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    ASSERT_TRUE(Done());
}

FModioModManagementEvent FRestSessionTest::UploadAndWait(FRestModioSession& Session, FModioModID Mod,
    const FModioCreateModFileParams& Params)
{
    const std::size_t Before = Events.size();
    Progress.clear();
    const auto Sample = [&] {
        if (const std::optional<FModioModProgressInfo> Now = Session.QueryCurrentModUpdate())
        {
            Progress.push_back(*Now);
        }
    };
    Session.SubmitNewModFileForMod(Mod, Params);
    for (int Frame = 0; Frame < 60 * 600 && Events.size() == Before; ++Frame)
    {
        Sample();
        Tasks.PumpGameThread();
        Sample();
        bInsidePendingHandlers = true;
        Session.RunPendingHandlers();
        bInsidePendingHandlers = false;
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
    EXPECT_EQ(Events.size(), Before + 1) << "one Uploaded event per submission";
    if (Events.size() == Before)
    {
        return FModioModManagementEvent{0, EModioModManagementEventType::Installed, FModioErrorCode{-1, "no event"}};
    }
    EXPECT_FALSE(Session.QueryCurrentModUpdate()) << "no progress once the upload has ended";
    return Events.back();
}

nlohmann::json FRestSessionTest::GetJson(const std::string& PathAndQuery) const
{
    httplib::Client Service("127.0.0.1", Sandbox.GetPort());
    const char* Separator = PathAndQuery.find('?') == std::string::npos ? "?" : "&";
    const httplib::Result Answer = Service.Get(PathAndQuery + Separator + "api_key=" + ApiKey);
    return Answer ? nlohmann::json::parse(Answer->body, nullptr, false) : nlohmann::json();
}

std::string FRestSessionTest::GetBytes(const std::string& Url) const
{
    httplib::Client Service("127.0.0.1", Sandbox.GetPort());
    const httplib::Result Answer = Service.Get(Url.substr(Sandbox.GetBaseUrl().size()));
    return Answer && Answer->status == 200 ? Answer->body : std::string();
}

nlohmann::json FRestSessionTest::NewestModfile(FModioModID Mod) const
{
    nlohmann::json Newest;
    const nlohmann::json Page = GetJson(ModPath(Mod) + "/files?_limit=100");
    for (const nlohmann::json& Modfile : Page.value("data", nlohmann::json::array()))
    {
        if (Newest.is_null() || Modfile["id"].get<int64>() > Newest["id"].get<int64>())
        {
            Newest = Modfile;
        }
    }
    return Newest;
}

std::map<std::string, std::string> FRestSessionTest::ArchiveEntries(const std::string& ArchiveBytes) const
{
    const fs::path ArchivePath = Temp.Path() / "downloaded.zip";
    {
        std::ofstream File(ArchivePath, std::ios::binary | std::ios::trunc);
        File.write(ArchiveBytes.data(), static_cast<std::streamsize>(ArchiveBytes.size()));
    }
    std::map<std::string, std::string> Entries;
    int Error = 0;
    zip_t* Archive = zip_open(ArchivePath.c_str(), ZIP_RDONLY, &Error);
    if (!Archive)
    {
        ADD_FAILURE() << "the uploaded file is not a ZIP archive";
        return Entries;
    }
    for (zip_int64_t Index = 0; Index < zip_get_num_entries(Archive, 0); ++Index)
    {
        zip_stat_t Stat;
        zip_stat_index(Archive, static_cast<zip_uint64_t>(Index), 0, &Stat);
        std::string Bytes(static_cast<std::size_t>(Stat.size), '\0');
        if (zip_file_t* Entry = zip_fopen_index(Archive, static_cast<zip_uint64_t>(Index), 0))
        {
            EXPECT_EQ(zip_fread(Entry, Bytes.data(), Bytes.size()), static_cast<zip_int64_t>(Bytes.size()));
            zip_fclose(Entry);
        }
        Entries[Stat.name] = std::move(Bytes);
    }
    zip_discard(Archive);
    fs::remove(ArchivePath);
    return Entries;
}

std::vector<Sandbox::FRecordedRequest> FRestSessionTest::RequestsTo(const std::string& Method, const std::string& Path) const
{
    std::vector<Sandbox::FRecordedRequest> Found;
    for (const Sandbox::FRecordedRequest& Request : Sandbox.RequestLog())
    {
        if (Request.Method == Method && Request.Path == Path)
        {
            Found.push_back(Request);
        }
    }
    return Found;
}

bool FRestSessionTest::NoTemporaryFilesLeft() const
{
    std::error_code Error;
    return fs::is_empty(UploadFolder, Error) && !Error;
}

void WriteRandomFile(const fs::path& File, int64 Size, uint64 Seed)
{
    fs::create_directories(File.parent_path());
    std::ofstream Out(File, std::ios::binary | std::ios::trunc);
    std::vector<char> Chunk(1u << 20);
    uint64 State = Seed * 0x9E3779B97F4A7C15ull + 1;
    for (int64 Written = 0; Written < Size;)
    {
        for (std::size_t Index = 0; Index < Chunk.size(); Index += 8)
        {
            State ^= State << 13;
            State ^= State >> 7;
            State ^= State << 17;
            for (std::size_t Byte = 0; Byte < 8; ++Byte)
            {
                Chunk[Index + Byte] = static_cast<char>(State >> (8 * Byte));
            }
        }
        const int64 Piece = std::min<int64>(static_cast<int64>(Chunk.size()), Size - Written);
        Out.write(Chunk.data(), static_cast<std::streamsize>(Piece));
        Written += Piece;
    }
}
}
