#include "Transfer/FormDataBody.h"

#include "Common/FileHelper.h"
#include "Common/NativePath.h"
#include "Common/StringUtil.h"
#include "Transfer/GrowingFile.h"

#include <algorithm>
#include <fstream>
#include <ostream>

#if defined(__linux__)
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>
#endif

namespace Maptorn
{
namespace
{
std::string Boundary()
{
    return Printf("\r\n--%s\r\n", FormDataBoundary);
}

std::string TextField(const char* Name, const std::string& Value)
{
    return Boundary() + Printf("Content-Disposition: form-data; name=\"%s\"\r\n\r\n", Name) + Value;
}

// Tells a reader of the body that Bytes more are there; a buffered stream is flushed first, so
// the bytes are in the file when the reader is told.
void AdvanceGrowing(FGrowingFile* Growing, int64 Bytes, std::ostream* Buffered = nullptr)
{
    if (Growing)
    {
        if (Buffered)
        {
            Buffered->flush();
        }
        Growing->Advance(Bytes);
    }
}
}

std::string MakeFormDataHead(const FFormDataFields& Fields)
{
    std::string Head = TextField("version", Fields.Version) + TextField("changelog", Fields.Changelog) + TextField("platforms[]", Fields.Platform);
    if (Fields.bIncludeFile)
    {
        Head += Boundary();
        Head += Printf("Content-Disposition: form-data; name=\"filedata\"; filename=\"%s\"\r\n", Fields.FileName.c_str());
        Head += "Content-Type: application/octet-stream\r\n\r\n";
    }
    return Head;
}

std::string MakeFormDataTail()
{
    return Printf("\r\n--%s--\r\n", FormDataBoundary);
}

#if defined(__linux__)
namespace
{
class FDescriptor
{
public:
    explicit FDescriptor(int InValue) : Value(InValue) {}
    ~FDescriptor() { Close(); }
    FDescriptor(const FDescriptor&) = delete;
    FDescriptor& operator=(const FDescriptor&) = delete;
    bool Close()
    {
        const bool bClosed = Value < 0 || ::close(Value) == 0;
        Value = -1;
        return bClosed;
    }
    int Value = -1;
};

bool WriteAll(int Fd, const char* Data, std::size_t Size)
{
    while (Size > 0)
    {
        const ssize_t Written = ::write(Fd, Data, Size);
        if (Written < 0 && errno == EINTR)
        {
            continue;
        }
        if (Written <= 0)
        {
            return false;
        }
        Data += Written;
        Size -= static_cast<std::size_t>(Written);
    }
    return true;
}

// Copies Size bytes from Source into Body. The kernel copies without a pass through this process
// (and shares the blocks where the file system can); across file systems, or on a kernel or file
// system without copy_file_range, the bytes go through PartBuffer in pieces of ChunkSize.
EFormDataBodyError CopyFileInto(int Source, int Body, int64 Size, std::vector<uint8>& PartBuffer, int64 ChunkSize,
    const std::atomic<bool>* bCancelled, FGrowingFile* Growing)
{
    int64 Copied = 0;
    bool bKernelCopy = true;
    while (Copied < Size)
    {
        if (bCancelled && bCancelled->load())
        {
            return EFormDataBodyError::Cancelled;
        }
        const int64 Piece = std::min(ChunkSize, Size - Copied);
        if (bKernelCopy)
        {
            loff_t From = Copied;
            const ssize_t Moved = ::copy_file_range(Source, &From, Body, nullptr, static_cast<std::size_t>(Piece), 0);
            if (Moved > 0)
            {
                Copied += Moved;
                AdvanceGrowing(Growing, Moved);
                continue;
            }
            if (Moved < 0 && errno == EINTR)
            {
                continue;
            }
            if (Moved == 0)
            {
                break; // the file is shorter than it was
            }
            if (errno != EXDEV && errno != ENOSYS && errno != EINVAL && errno != EOPNOTSUPP && errno != EPERM)
            {
                return EFormDataBodyError::BodyNotWritable;
            }
            bKernelCopy = false;
        }
        PartBuffer.resize(static_cast<std::size_t>(Piece));
        const ssize_t Read = ::pread(Source, PartBuffer.data(), static_cast<std::size_t>(Piece), Copied);
        if (Read < 0 && errno == EINTR)
        {
            continue;
        }
        if (Read <= 0)
        {
            break;
        }
        if (!WriteAll(Body, reinterpret_cast<const char*>(PartBuffer.data()), static_cast<std::size_t>(Read)))
        {
            return EFormDataBodyError::BodyNotWritable;
        }
        Copied += Read;
        AdvanceGrowing(Growing, Read);
    }
    return Copied == Size ? EFormDataBodyError::None : EFormDataBodyError::ShortRead;
}
}

EFormDataBodyError WriteBodyAroundFile(const std::string& Head, const std::optional<std::string>& SourceFile, const std::string& Tail,
    const std::string& BodyFile, std::vector<uint8>& PartBuffer, int64& OutBodySize, int64 ChunkSize, const std::atomic<bool>* bCancelled,
    FGrowingFile* Growing)
{
    OutBodySize = 0;
    // Only a file with bytes in it is truncated: ext4 takes the truncation of a file it holds for a
    // rewrite in place and writes the whole body back when it closes, in the middle of the upload.
    const int Truncate = FileSystem::FileSize(BodyFile) > 0 ? O_TRUNC : 0;
    FDescriptor Body(::open(NativePath::FromUtf8(BodyFile).c_str(), O_WRONLY | O_CREAT | Truncate | O_CLOEXEC, 0644));
    if (Body.Value < 0 || !WriteAll(Body.Value, Head.data(), Head.size()))
    {
        return EFormDataBodyError::BodyNotWritable;
    }
    AdvanceGrowing(Growing, static_cast<int64>(Head.size()));
    if (SourceFile)
    {
        FDescriptor Source(::open(NativePath::FromUtf8(*SourceFile).c_str(), O_RDONLY | O_CLOEXEC));
        const int64 FileSize = FileSystem::FileSize(*SourceFile);
        if (Source.Value < 0 || FileSize < 0)
        {
            return EFormDataBodyError::FileNotReadable;
        }
        if (const EFormDataBodyError Error = CopyFileInto(Source.Value, Body.Value, FileSize, PartBuffer, ChunkSize, bCancelled, Growing);
            Error != EFormDataBodyError::None)
        {
            return Error;
        }
    }
    if (!WriteAll(Body.Value, Tail.data(), Tail.size()))
    {
        return EFormDataBodyError::BodyNotWritable;
    }
    AdvanceGrowing(Growing, static_cast<int64>(Tail.size()));
    if (!Body.Close())
    {
        return EFormDataBodyError::BodyNotWritable;
    }
    OutBodySize = FileSystem::FileSize(BodyFile);
    return EFormDataBodyError::None;
}
#else
EFormDataBodyError WriteBodyAroundFile(const std::string& Head, const std::optional<std::string>& SourceFile, const std::string& Tail,
    const std::string& BodyFile, std::vector<uint8>& PartBuffer, int64& OutBodySize, int64 ChunkSize, const std::atomic<bool>* bCancelled,
    FGrowingFile* Growing)
{
    OutBodySize = 0;
    std::ofstream Body(NativePath::FromUtf8(BodyFile), std::ios::binary | std::ios::trunc);
    if (!Body)
    {
        return EFormDataBodyError::BodyNotWritable;
    }
    Body.write(Head.data(), static_cast<std::streamsize>(Head.size()));
    AdvanceGrowing(Growing, static_cast<int64>(Head.size()), &Body);
    if (SourceFile)
    {
        std::ifstream Source(NativePath::FromUtf8(*SourceFile), std::ios::binary);
        const int64 FileSize = FileSystem::FileSize(*SourceFile);
        if (!Source || FileSize < 0)
        {
            return EFormDataBodyError::FileNotReadable;
        }
        int64 Copied = 0;
        while (Copied < FileSize)
        {
            if (bCancelled && bCancelled->load())
            {
                return EFormDataBodyError::Cancelled;
            }
            const int64 Piece = std::min(ChunkSize, FileSize - Copied);
            PartBuffer.resize(static_cast<std::size_t>(Piece));
            Source.seekg(Copied);
            Source.read(reinterpret_cast<char*>(PartBuffer.data()), static_cast<std::streamsize>(Piece));
            const int64 Read = Source.gcount();
            Body.write(reinterpret_cast<const char*>(PartBuffer.data()), static_cast<std::streamsize>(Read));
            Copied += Read;
            AdvanceGrowing(Growing, Read, &Body);
            if (Read != Piece)
            {
                break;
            }
        }
        if (Copied != FileSize)
        {
            return EFormDataBodyError::ShortRead;
        }
    }
    Body.write(Tail.data(), static_cast<std::streamsize>(Tail.size()));
    AdvanceGrowing(Growing, static_cast<int64>(Tail.size()), &Body);
    Body.close();
    if (!Body)
    {
        return EFormDataBodyError::BodyNotWritable;
    }
    OutBodySize = FileSystem::FileSize(BodyFile);
    return EFormDataBodyError::None;
}
#endif

EFormDataBodyError WriteFormDataBody(const FFormDataFields& Fields, const std::string& SourceFile, const std::string& BodyFile,
    std::vector<uint8>& PartBuffer, int64& OutBodySize, int64 ChunkSize)
{
    // Without the file the source is never opened, whatever name it has.
    return WriteBodyAroundFile(MakeFormDataHead(Fields), Fields.bIncludeFile ? std::optional<std::string>(SourceFile) : std::nullopt,
        MakeFormDataTail(), BodyFile,
        PartBuffer, OutBodySize, ChunkSize);
}
}
