#pragma once

#include "Common/CoreTypes.h"
#include "ModioService/ModioSandbox.h"
#include "ModioService/SandboxReply.h"
#include "ModioService/SandboxRequestBody.h"

#include <functional>
#include <optional>
#include <regex>
#include <string>
#include <vector>

namespace httplib
{
struct Request;
struct Response;
class ContentReader;
class Server;
}

namespace Maptorn::Sandbox
{
struct FSandboxState;

// The platform names of X-Modio-Platform and of modfiles' platforms[].
bool IsKnownPlatform(const std::string& Platform);

// The token of `Authorization: Bearer <token>`, or empty.
std::string BearerTokenOf(const httplib::Request& Request);

// Who may call a route.
enum class EAccess
{
    Open,       // no credentials (the sandbox's own paths, file downloads)
    ApiKey,     // the api_key only (e-mail authentication)
    KeyOrToken, // reads: the api_key or a bearer token; the token wins
    Token       // a bearer token
};

// What a route handler sees of its request.
struct FRouteContext
{
    FSandboxState& State;
    const httplib::Request& Request;
    FRequestBody& Body;
    int64 UserId = 0;     // set on token routes, and on reads that came with a token
    std::string Platform; // X-Modio-Platform, lower case; windows when absent or unknown
    bool bPlatformAsked = false;

    std::string Query(const std::string& Name) const;
    bool HasQuery(const std::string& Name) const;
    // The Index-th captured group of the route's pattern as a number; 0 when it is not one.
    int64 PathNumber(size_t Index) const;
    std::string PathText(size_t Index) const;
    // 404 ref 14001 unless the path's first number is the sandbox's game.
    std::optional<FApiError> CheckGame() const;
};

using FRouteHandler = std::function<FReply(FRouteContext&)>;

// Registers routes on the HTTP server so that every request goes the same way: faults, body,
// credentials, the handler, the reply, the request log.
class FSandboxRouter
{
public:
    FSandboxRouter(httplib::Server& InServer, FSandboxState& InState);

    void Get(const std::string& Pattern, EAccess Access, FRouteHandler Handler);
    void Delete(const std::string& Pattern, EAccess Access, FRouteHandler Handler);
    void Post(const std::string& Pattern, EAccess Access, EBodyKind Body, FRouteHandler Handler);
    void Put(const std::string& Pattern, EAccess Access, EBodyKind Body, FRouteHandler Handler);
    // 405 for a path another method takes, else 404 ref 14000, for whatever no route took; registered last.
    void NotFoundForTheRest();

private:
    struct FRoute
    {
        EAccess Access;
        EBodyKind Body;
        FRouteHandler Handler;
    };

    void Dispatch(const httplib::Request& Request, httplib::Response& Response, const httplib::ContentReader* Reader,
                  const FRoute& Route);
    FReply Answer(FRouteContext& Context, const httplib::ContentReader* Reader, const FRoute& Route,
                  const std::optional<FFault>& Fault);

    struct FKnownRoute
    {
        std::string Method;
        std::regex Pattern;
    };
    // Every route's method and pattern, so that the catch-all can tell 405 from 404.
    void Remember(const std::string& Method, const std::string& Pattern);

    httplib::Server& Server;
    FSandboxState& State;
    std::vector<FKnownRoute> Known;
    bool bCatchAll = false;
};
}
