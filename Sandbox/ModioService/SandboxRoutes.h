#pragma once

#include "ModioService/SandboxErrors.h"
#include "ModioService/SandboxObjects.h"
#include "ModioService/SandboxRouter.h"

#include <optional>
#include <string>

namespace Maptorn::Sandbox
{
// The routes, one area per file.
void RegisterAuthRoutes(FSandboxRouter& Router);
void RegisterModRoutes(FSandboxRouter& Router);
void RegisterModEditRoutes(FSandboxRouter& Router);
void RegisterModfileRoutes(FSandboxRouter& Router);
void RegisterMultipartRoutes(FSandboxRouter& Router);
void RegisterDownloadRoutes(FSandboxRouter& Router);
void RegisterDependencyRoutes(FSandboxRouter& Router);

// The paths' shapes.
inline const std::string GameModsPath = R"(/v1/games/(\d+)/mods)";
inline const std::string ModPath = GameModsPath + R"(/(\d+))";

FObjectView ViewOf(const FRouteContext& Context);

// The mod of the path's second number in this game: 404 ref 15022 when there is none, 410 ref
// 15023 when it was deleted. The caller holds the state's lock.
std::optional<FApiError> FindMod(FRouteContext& Context, FStoredMod*& OutMod);
// As FindMod, and 403 ref 15024 unless the token's user submitted it.
std::optional<FApiError> FindOwnedMod(FRouteContext& Context, FStoredMod*& OutMod);

// Adds One's invalid inputs to All's.
void MergeInto(FApiError& All, const std::optional<FApiError>& One);

// Checks a text field's length: 422 naming the field when it is longer than MaxLength.
std::optional<FApiError> CheckLength(const FRequestBody& Body, const std::string& Field, size_t MaxLength);

// True for 0/1 and false/true; OutValue untouched when the field was not sent.
std::optional<FApiError> ReadFlag(const FRequestBody& Body, const std::string& Field, bool& OutValue);
}
