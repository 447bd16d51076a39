#include "ModioService/SandboxReply.h"

#include <httplib.h>

#include <algorithm>
#include <fstream>
#include <memory>

namespace Maptorn::Sandbox
{
FReply FReply::Json(int32 Status, const Json::FJsonObject& Value)
{
    FReply Reply;
    Reply.Status = Status;
    Reply.Body = Value.dump();
    return Reply;
}

FReply FReply::Error(const FApiError& Error)
{
    FReply Reply;
    Reply.Status = Error.Status;
    Reply.Body = ErrorBodyOf(Error);
    if (Error.Status == 429)
    {
        Reply.Headers.emplace_back("retry-after", "1");
    }
    return Reply;
}

FReply FReply::NoContent()
{
    FReply Reply;
    Reply.Status = 204;
    Reply.ContentType.clear();
    return Reply;
}

namespace
{
// The bytes of a reply, read piece by piece as the connection takes them.
struct FReplySource
{
    std::string Body;
    std::optional<FFileSlice> File;
    std::ifstream Stream;
    // One buffer for the whole reply, reused piece after piece.
    static constexpr uint64 ChunkSize = uint64(1) << 18;
    std::unique_ptr<char[]> Chunk;

    size_t Read(uint64 Offset, char* Into, size_t Size)
    {
        if (!File)
        {
            const size_t Count = std::min<size_t>(Size, Body.size() - static_cast<size_t>(Offset));
            std::copy_n(Body.data() + Offset, Count, Into);
            return Count;
        }
        if (!Stream.is_open())
        {
            Stream.open(File->Path, std::ios::binary);
        }
        Stream.seekg(static_cast<std::streamoff>(File->Offset + Offset));
        Stream.read(Into, static_cast<std::streamsize>(Size));
        return Stream ? Size : static_cast<size_t>(std::max<std::streamsize>(Stream.gcount(), 0));
    }

    // The content provider: sends up to Limit bytes of the announced length, then fails, which
    // makes httplib drop the connection short of the Content-Length (an injected fault).
    bool Provide(uint64 Limit, size_t Offset, size_t Remaining, httplib::DataSink& Sink)
    {
        if (Offset >= Limit)
        {
            return false;
        }
        const size_t Size = static_cast<size_t>(std::min<uint64>({ Remaining, Limit - Offset, ChunkSize }));
        if (!Chunk)
        {
            Chunk = std::make_unique_for_overwrite<char[]>(ChunkSize);
        }
        const size_t Count = Read(Offset, Chunk.get(), Size);
        return Count > 0 && Sink.write(Chunk.get(), Count);
    }
};
}

void WriteReply(const FReply& Reply, EReplyCut Cut, httplib::Response& Response, uint64 CutAfter)
{
    Response.status = Reply.Status;
    for (const auto& [Name, Value] : Reply.Headers)
    {
        Response.set_header(Name, Value);
    }
    if (Reply.Status == 204)
    {
        return;
    }
    if (Cut == EReplyCut::None && !Reply.File)
    {
        Response.set_content(Reply.Body, Reply.ContentType);
        return;
    }
    const uint64 Length = Reply.File ? Reply.File->Length : Reply.Body.size();
    uint64 Limit = Length;
    switch (Cut)
    {
    case EReplyCut::Half: Limit = Length / 2; break;
    case EReplyCut::LastByte: Limit = Length > 0 ? Length - 1 : 0; break;
    case EReplyCut::After: Limit = std::min(CutAfter, Length); break;
    case EReplyCut::None: break;
    }
    auto Source = std::make_shared<FReplySource>();
    Source->Body = Reply.Body;
    Source->File = Reply.File;
    Response.set_content_provider(static_cast<size_t>(Length), Reply.ContentType,
                                  [Source, Limit](size_t Offset, size_t Remaining, httplib::DataSink& Sink)
                                  { return Source->Provide(Limit, Offset, Remaining, Sink); });
}
}
