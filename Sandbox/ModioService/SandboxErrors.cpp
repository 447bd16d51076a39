#include "ModioService/SandboxErrors.h"

#include <nlohmann/json.hpp>

namespace Maptorn::Sandbox
{
FApiError MakeError(int32 Status, int32 Ref, std::string Message)
{
    FApiError Error;
    Error.Status = Status;
    Error.Ref = Ref;
    Error.Message = std::move(Message);
    return Error;
}

FApiError ValidationFailure()
{
    return MakeError(422, ErrorRef::ValidationFailed, "Validation Failed. Please see below to fix invalid input.");
}

FApiError ValidationError(const std::string& Field, const std::string& Message)
{
    FApiError Error = ValidationFailure();
    Error.Fields[Field] = Message;
    return Error;
}

FApiError FaultError(int32 Status)
{
    switch (Status)
    {
    case 401: return MakeError(Status, ErrorRef::TokenExpiredOrRevoked, "Your access token has expired or been revoked.");
    case 403:
        return MakeError(Status, ErrorRef::NoPermission, "You do not have the required permissions to access this resource.");
    case 404: return MakeError(Status, ErrorRef::NotFound, "The requested resource could not be found.");
    case 429:
        return MakeError(Status, ErrorRef::RateLimited,
                         "Too many requests made to the mod.io API within the rate limiting window.");
    default:
        return MakeError(Status, Status >= 500 ? ErrorRef::ServiceOutage : ErrorRef::None,
                         Status >= 500 ? "The mod.io API is temporarily unavailable." : "The request could not be processed.");
    }
}

std::string ErrorBodyOf(const FApiError& Error)
{
    nlohmann::ordered_json Inner;
    Inner["code"] = Error.Status;
    Inner["error_ref"] = Error.Ref;
    Inner["message"] = Error.Message;
    if (Error.Status == 422)
    {
        Inner["errors"] = nlohmann::ordered_json::object();
        for (const auto& [Field, Message] : Error.Fields)
        {
            Inner["errors"][Field] = Message;
        }
    }
    nlohmann::ordered_json Body;
    Body["error"] = Inner;
    return Body.dump();
}
}
