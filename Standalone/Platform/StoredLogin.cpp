#include "Platform/StoredLogin.h"

#include "Common/JsonWriter.h"
#include "Modio/JsonFields.h"

#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <ctime>
#include <string_view>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace Maptorn
{
namespace
{
constexpr mode_t FolderMode = 0700;
constexpr mode_t FileMode = 0600;

std::string FolderOf(const std::string& Path)
{
    const std::size_t Slash = Path.find_last_of('/');
    if (Slash == std::string::npos)
    {
        return {};
    }
    return Slash == 0 ? std::string("/") : Path.substr(0, Slash);
}

// Like `mkdir -p`, but every folder it makes is private to the owner from the start.
bool CreatePrivateFolders(const std::string& Folder)
{
    if (Folder.empty())
    {
        return true;
    }
    struct stat Info {};
    if (::stat(Folder.c_str(), &Info) == 0)
    {
        return S_ISDIR(Info.st_mode);
    }
    const std::string Parent = FolderOf(Folder);
    if (!Parent.empty() && Parent != Folder && !CreatePrivateFolders(Parent))
    {
        return false;
    }
    return ::mkdir(Folder.c_str(), FolderMode) == 0 || errno == EEXIST;
}

bool WriteAll(int File, std::string_view Bytes)
{
    while (!Bytes.empty())
    {
        const ssize_t Written = ::write(File, Bytes.data(), Bytes.size());
        if (Written < 0)
        {
            if (errno == EINTR)
            {
                continue;
            }
            return false;
        }
        Bytes.remove_prefix(static_cast<std::size_t>(Written));
    }
    return true;
}

// A name no other writer uses, so that O_EXCL never meets a file someone else could have prepared.
int CreateTemporaryFile(const std::string& Path, std::string& OutTemporaryPath)
{
    static std::atomic<unsigned> Counter{0};
    for (int Attempt = 0; Attempt < 100; ++Attempt)
    {
        OutTemporaryPath = Path + ".tmp-" + std::to_string(::getpid()) + "-" + std::to_string(Counter++);
        const int File = ::open(OutTemporaryPath.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, FileMode);
        if (File >= 0 || errno != EEXIST)
        {
            return File;
        }
    }
    return -1;
}

void SyncFolder(const std::string& Folder)
{
    const int Directory = ::open(Folder.empty() ? "." : Folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (Directory >= 0)
    {
        ::fsync(Directory);
        ::close(Directory);
    }
}

// Read with plain system calls: a folder or device at the path gives nothing instead of an exception.
std::optional<std::string> ReadSmallRegularFile(const std::string& Path)
{
    constexpr off_t MaximumSize = 64 * 1024;
    const int File = ::open(Path.c_str(), O_RDONLY | O_CLOEXEC);
    if (File < 0)
    {
        return std::nullopt;
    }
    struct stat Info {};
    std::optional<std::string> Text;
    if (::fstat(File, &Info) == 0 && S_ISREG(Info.st_mode) && Info.st_size <= MaximumSize)
    {
        Text.emplace();
        char Buffer[4096];
        for (;;)
        {
            const ssize_t Read = ::read(File, Buffer, sizeof(Buffer));
            if (Read > 0 && Text->size() + static_cast<std::size_t>(Read) <= static_cast<std::size_t>(MaximumSize))
            {
                Text->append(Buffer, static_cast<std::size_t>(Read));
            }
            else if (Read < 0 && errno == EINTR)
            {
                continue;
            }
            else
            {
                if (Read != 0)
                {
                    Text.reset();
                }
                break;
            }
        }
    }
    ::close(File);
    return Text;
}

std::string LoginDocument(const FStoredLogin& Login)
{
    Json::FJsonObject Document;
    Document["access_token"] = Login.AccessToken;
    Document["date_expires"] = Login.DateExpires;
    Document["base_url"] = Login.BaseUrl;
    return Json::WriteCondensed(Document);
}
}

std::string StoredLoginPath(int64 GameId)
{
    const std::string FileName = "maptorn/login-" + std::to_string(GameId) + ".json";
    // Relative values are ignored, as the XDG base directory rules ask.
    const char* ConfigHome = std::getenv("XDG_CONFIG_HOME");
    if (ConfigHome && ConfigHome[0] == '/')
    {
        return std::string(ConfigHome) + "/" + FileName;
    }
    const char* Home = std::getenv("HOME");
    if (Home && Home[0] == '/')
    {
        return std::string(Home) + "/.config/" + FileName;
    }
    return {};
}

std::optional<FStoredLogin> LoadStoredLogin(const std::string& Path)
{
    if (Path.empty())
    {
        return std::nullopt;
    }
    const std::optional<std::string> Text = ReadSmallRegularFile(Path);
    if (!Text)
    {
        return std::nullopt;
    }
    const JsonFields::FJson Document = JsonFields::FJson::parse(*Text, nullptr, false);
    if (!Document.is_object())
    {
        return std::nullopt;
    }
    FStoredLogin Login;
    Login.AccessToken = JsonFields::GetString(Document, "access_token");
    Login.DateExpires = JsonFields::TruncateToInt64(JsonFields::GetNumber(Document, "date_expires"));
    Login.BaseUrl = JsonFields::GetString(Document, "base_url");
    if (Login.AccessToken.empty())
    {
        return std::nullopt;
    }
    return Login;
}

std::optional<FStoredLogin> LoadStoredLoginFor(const std::string& Path, const std::string& BaseUrl)
{
    std::optional<FStoredLogin> Login = LoadStoredLogin(Path);
    if (!Login || Login->BaseUrl != BaseUrl)
    {
        return std::nullopt;
    }
    if (Login->DateExpires > 0 && Login->DateExpires <= static_cast<int64>(std::time(nullptr)))
    {
        return std::nullopt;
    }
    return Login;
}

bool SaveStoredLogin(const std::string& Path, const FStoredLogin& Login)
{
    // A folder that was there before keeps no looser mode than one made here: others may not
    // even list it.
    if (Path.empty() || !CreatePrivateFolders(FolderOf(Path)) || ::chmod(FolderOf(Path).c_str(), FolderMode) != 0)
    {
        return false;
    }
    std::string TemporaryPath;
    const int File = CreateTemporaryFile(Path, TemporaryPath);
    if (File < 0)
    {
        return false;
    }
    // The mode given to open is narrowed by the umask; fchmod makes it exactly owner read-write.
    bool bWritten = ::fchmod(File, FileMode) == 0 && WriteAll(File, LoginDocument(Login)) && ::fsync(File) == 0;
    bWritten = (::close(File) == 0) && bWritten;
    if (!bWritten || ::rename(TemporaryPath.c_str(), Path.c_str()) != 0)
    {
        ::unlink(TemporaryPath.c_str());
        return false;
    }
    SyncFolder(FolderOf(Path));
    return true;
}

bool DeleteStoredLogin(const std::string& Path)
{
    if (Path.empty())
    {
        return true;
    }
    return ::unlink(Path.c_str()) == 0 || errno == ENOENT;
}
}
