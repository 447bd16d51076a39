#include "Common/StringUtil.h"
#include "ModioService/SandboxRoutes.h"
#include "ModioService/SandboxState.h"

#include <httplib.h>

namespace Maptorn::Sandbox
{
FObjectView ViewOf(const FRouteContext& Context)
{
    return { Context.State.BaseUrl(), Context.State.Now(), Context.Platform, Context.bPlatformAsked };
}

std::optional<FApiError> FindMod(FRouteContext& Context, FStoredMod*& OutMod)
{
    if (std::optional<FApiError> Error = Context.CheckGame())
    {
        return Error;
    }
    OutMod = Context.State.Store.FindMod(Context.PathNumber(2));
    if (!OutMod || OutMod->GameId != Context.State.Options.GameId)
    {
        return MakeError(404, ErrorRef::ModNotFound, "The requested mod could not be found.");
    }
    if (OutMod->Status == ModStatusDeleted)
    {
        return MakeError(410, ErrorRef::ModDeleted, "The requested mod has been permanently deleted.");
    }
    return std::nullopt;
}

std::optional<FApiError> FindOwnedMod(FRouteContext& Context, FStoredMod*& OutMod)
{
    if (std::optional<FApiError> Error = FindMod(Context, OutMod))
    {
        return Error;
    }
    if (OutMod->SubmittedBy != Context.UserId)
    {
        return MakeError(403, ErrorRef::NoPermission, "You do not have the required permissions to access this resource.");
    }
    return std::nullopt;
}

void MergeInto(FApiError& All, const std::optional<FApiError>& One)
{
    if (One)
    {
        All.Fields.insert(One->Fields.begin(), One->Fields.end());
    }
}

std::optional<FApiError> CheckLength(const FRequestBody& Body, const std::string& Field, size_t MaxLength)
{
    if (Body.Value(Field).size() > MaxLength)
    {
        return ValidationError(Field, "The " + Field + " may not be greater than " + std::to_string(MaxLength) + " characters.");
    }
    return std::nullopt;
}

std::optional<FApiError> ReadFlag(const FRequestBody& Body, const std::string& Field, bool& OutValue)
{
    if (!Body.Has(Field))
    {
        return std::nullopt;
    }
    const std::string Value = ToLower(TrimWhitespace(Body.Value(Field)));
    if (Value == "1" || Value == "true")
    {
        OutValue = true;
    }
    else if (Value == "0" || Value == "false")
    {
        OutValue = false;
    }
    else
    {
        return ValidationError(Field, "The " + Field + " field must be true or false.");
    }
    return std::nullopt;
}
}
