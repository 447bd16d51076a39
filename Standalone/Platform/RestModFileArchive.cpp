#include "Platform/RestModFileArchive.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <memory>
#include <system_error>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <zip.h>

namespace Maptorn
{
namespace
{
namespace fs = std::filesystem;

struct FArchiveInput
{
    std::string Path;
    std::string Name; // relative to the root, "/" separated
    bool bDirectory = false;
    uint64 Size = 0;
    time_t ModifiedTime = 0;
};

struct FReadCounter
{
    const FModFileArchiveProgress& OnProgress;
    const std::atomic<bool>& bCancelled;
    int64 Read = 0;
    int64 Total = 0;

    void Add(int64 Bytes)
    {
        Read += Bytes;
        if (OnProgress)
        {
            OnProgress(std::min(Read, Total), Total);
        }
    }
};

// One file's bytes handed to libzip, counting what is read so that progress is in input bytes.
struct FFileSource
{
    const FArchiveInput& Input;
    FReadCounter& Counter;
    int Descriptor = -1;
    zip_error_t Error;
};

zip_int64_t Fail(FFileSource& Source, int Code, int SystemError)
{
    zip_error_set(&Source.Error, Code, SystemError);
    return -1;
}

zip_int64_t OnFileSourceCommand(void* UserData, void* Data, zip_uint64_t Length, zip_source_cmd_t Command)
{
    FFileSource& Source = *static_cast<FFileSource*>(UserData);
    switch (Command)
    {
    case ZIP_SOURCE_OPEN:
        Source.Descriptor = ::open(Source.Input.Path.c_str(), O_RDONLY | O_CLOEXEC);
        return Source.Descriptor < 0 ? Fail(Source, ZIP_ER_OPEN, errno) : 0;
    case ZIP_SOURCE_READ:
    {
        if (Source.Counter.bCancelled.load())
        {
            return Fail(Source, ZIP_ER_CANCELLED, 0);
        }
        ssize_t Got = 0;
        do
        {
            Got = ::read(Source.Descriptor, Data, static_cast<size_t>(Length));
        } while (Got < 0 && errno == EINTR);
        if (Got < 0)
        {
            return Fail(Source, ZIP_ER_READ, errno);
        }
        Source.Counter.Add(Got);
        return Got;
    }
    case ZIP_SOURCE_CLOSE:
        ::close(Source.Descriptor);
        Source.Descriptor = -1;
        return 0;
    case ZIP_SOURCE_STAT:
    {
        if (Length < sizeof(zip_stat_t))
        {
            return Fail(Source, ZIP_ER_INVAL, 0);
        }
        zip_stat_t* Stat = static_cast<zip_stat_t*>(Data);
        zip_stat_init(Stat);
        Stat->size = Source.Input.Size;
        Stat->mtime = Source.Input.ModifiedTime;
        Stat->valid = ZIP_STAT_SIZE | ZIP_STAT_MTIME;
        return sizeof(zip_stat_t);
    }
    case ZIP_SOURCE_ERROR:
        return zip_error_to_data(&Source.Error, Data, Length);
    case ZIP_SOURCE_FREE:
        if (Source.Descriptor >= 0)
        {
            ::close(Source.Descriptor);
        }
        zip_error_fini(&Source.Error);
        delete &Source;
        return 0;
    case ZIP_SOURCE_SUPPORTS:
        return zip_source_make_command_bitmap(ZIP_SOURCE_OPEN, ZIP_SOURCE_READ, ZIP_SOURCE_CLOSE, ZIP_SOURCE_STAT, ZIP_SOURCE_ERROR,
            ZIP_SOURCE_FREE, -1);
    default:
        return Fail(Source, ZIP_ER_OPNOTSUPP, 0);
    }
}

int OnCancelQuery(zip_t*, void* UserData)
{
    return static_cast<FReadCounter*>(UserData)->bCancelled.load() ? 1 : 0;
}

// Regular files (through file links too) and real folders; linked folders are not followed, so
// a link cannot pull half the disk into the upload.
bool CollectInputs(const std::string& RootDirectory, std::vector<FArchiveInput>& OutInputs, std::string& OutError)
{
    std::error_code Error;
    const fs::path Root(RootDirectory);
    if (!fs::is_directory(Root, Error))
    {
        OutError = "The folder to upload does not exist: " + RootDirectory;
        return false;
    }
    fs::recursive_directory_iterator Walker(Root, Error);
    for (const fs::recursive_directory_iterator End; !Error && Walker != End; Walker.increment(Error))
    {
        const fs::directory_entry& Entry = *Walker;
        const bool bLink = Entry.is_symlink(Error);
        FArchiveInput Input;
        Input.Path = Entry.path().string();
        Input.Name = Entry.path().lexically_relative(Root).generic_string();
        struct stat Info {};
        if (::stat(Input.Path.c_str(), &Info) != 0 || Input.Name.empty() || Input.Name.starts_with(".."))
        {
            continue;
        }
        Input.ModifiedTime = Info.st_mtime;
        if (S_ISDIR(Info.st_mode) && !bLink)
        {
            Input.bDirectory = true;
            OutInputs.push_back(std::move(Input));
        }
        else if (S_ISREG(Info.st_mode))
        {
            Input.Size = static_cast<uint64>(Info.st_size);
            OutInputs.push_back(std::move(Input));
        }
    }
    if (Error)
    {
        OutError = "The folder to upload cannot be read: " + Error.message();
        return false;
    }
    std::sort(OutInputs.begin(), OutInputs.end(), [](const FArchiveInput& A, const FArchiveInput& B) { return A.Name < B.Name; });
    if (std::none_of(OutInputs.begin(), OutInputs.end(), [](const FArchiveInput& Input) { return !Input.bDirectory; }))
    {
        OutError = "The folder to upload holds no files: " + RootDirectory;
        return false;
    }
    return true;
}

bool AddInput(zip_t* Archive, const FArchiveInput& Input, FReadCounter& Counter)
{
    if (Input.bDirectory)
    {
        // A folder entry would carry the time of packing otherwise.
        const zip_int64_t Index = zip_dir_add(Archive, Input.Name.c_str(), ZIP_FL_ENC_UTF_8);
        return Index >= 0 && zip_file_set_mtime(Archive, static_cast<zip_uint64_t>(Index), Input.ModifiedTime, 0) == 0;
    }
    FFileSource* State = new FFileSource{Input, Counter, -1, {}};
    zip_error_init(&State->Error);
    zip_source_t* Source = zip_source_function(Archive, &OnFileSourceCommand, State);
    if (!Source)
    {
        zip_error_fini(&State->Error);
        delete State;
        return false;
    }
    const zip_int64_t Index = zip_file_add(Archive, Input.Name.c_str(), Source, ZIP_FL_ENC_UTF_8);
    if (Index < 0)
    {
        zip_source_free(Source);
        return false;
    }
    return zip_set_file_compression(Archive, static_cast<zip_uint64_t>(Index), ZIP_CM_DEFLATE, 0) == 0;
}
}

bool WriteModFileArchive(const std::string& RootDirectory, const std::string& ArchivePath, const FModFileArchiveProgress& OnProgress,
    const std::atomic<bool>& bCancelled, std::string& OutError)
{
    std::vector<FArchiveInput> Inputs;
    if (!CollectInputs(RootDirectory, Inputs, OutError))
    {
        return false;
    }
    FReadCounter Counter{OnProgress, bCancelled, 0, 0};
    for (const FArchiveInput& Input : Inputs)
    {
        Counter.Total += static_cast<int64>(Input.Size);
    }
    Counter.Add(0);

    int OpenError = 0;
    zip_t* Archive = zip_open(ArchivePath.c_str(), ZIP_CREATE | ZIP_TRUNCATE, &OpenError);
    if (!Archive)
    {
        OutError = "The archive cannot be created in the temporary folder";
        return false;
    }
    zip_register_cancel_callback_with_state(Archive, &OnCancelQuery, nullptr, &Counter);
    for (const FArchiveInput& Input : Inputs)
    {
        if (!AddInput(Archive, Input, Counter))
        {
            OutError = std::string("The archive cannot take ") + Input.Name + ": " + zip_strerror(Archive);
            zip_discard(Archive);
            return false;
        }
    }
    if (zip_close(Archive) != 0)
    {
        OutError = bCancelled.load() ? std::string("Packing the folder was cancelled")
                                     : std::string("The folder cannot be packed: ") + zip_strerror(Archive);
        zip_discard(Archive);
        std::error_code Ignored;
        fs::remove(ArchivePath, Ignored);
        return false;
    }
    return true;
}
}
