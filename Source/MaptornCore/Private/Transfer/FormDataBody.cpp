#include "Transfer/FormDataBody.h"

#include "Common/FileHelper.h"
#include "Common/NativePath.h"
#include "Common/StringUtil.h"

#include <algorithm>
#include <fstream>

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

EFormDataBodyError WriteBodyAroundFile(const std::string& Head, const std::optional<std::string>& SourceFile, const std::string& Tail,
    const std::string& BodyFile, std::vector<uint8>& PartBuffer, int64& OutBodySize, int64 ChunkSize, const std::atomic<bool>* bCancelled)
{
    OutBodySize = 0;
    std::ofstream Body(NativePath::FromUtf8(BodyFile), std::ios::binary | std::ios::trunc);
    if (!Body)
    {
        return EFormDataBodyError::BodyNotWritable;
    }
    Body.write(Head.data(), static_cast<std::streamsize>(Head.size()));
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
    Body.close();
    if (!Body)
    {
        return EFormDataBodyError::BodyNotWritable;
    }
    OutBodySize = FileSystem::FileSize(BodyFile);
    return EFormDataBodyError::None;
}

EFormDataBodyError WriteFormDataBody(const FFormDataFields& Fields, const std::string& SourceFile, const std::string& BodyFile,
    std::vector<uint8>& PartBuffer, int64& OutBodySize, int64 ChunkSize)
{
    // Without the file the source is never opened, whatever name it has.
    return WriteBodyAroundFile(MakeFormDataHead(Fields), Fields.bIncludeFile ? std::optional<std::string>(SourceFile) : std::nullopt,
        MakeFormDataTail(), BodyFile,
        PartBuffer, OutBodySize, ChunkSize);
}
}
