#pragma once

#include "Common/CoreTypes.h"
#include "Common/JsonWriter.h"
#include "ModioService/SandboxErrors.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace httplib
{
struct Response;
}

namespace Maptorn::Sandbox
{
// Part of a stored file, sent without reading it into memory.
struct FFileSlice
{
    std::string Path;
    uint64 Offset = 0;
    uint64 Length = 0;
};

// What a route answers, before it goes on the wire.
struct FReply
{
    int32 Status = 200;
    std::string ContentType = "application/json";
    std::string Body;
    std::optional<FFileSlice> File; // sent instead of Body
    std::vector<std::pair<std::string, std::string>> Headers;

    static FReply Json(int32 Status, const Json::FJsonObject& Value);
    static FReply Error(const FApiError& Error);
    static FReply NoContent();
};

// How an injected fault spoils the body: the Content-Length always announces all of it.
enum class EReplyCut
{
    None,
    Half,    // the first half, then the connection drops
    LastByte, // everything but the last byte, then the connection closes
    After     // the first CutAfter bytes, then the connection drops
};

void WriteReply(const FReply& Reply, EReplyCut Cut, httplib::Response& Response, uint64 CutAfter = 0);
}
