#pragma once

#include "Common/CoreTypes.h"
#include "ModioService/SandboxErrors.h"
#include "ModioService/SandboxStore.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace Maptorn::Sandbox
{
enum class EFilterOp
{
    Equals,
    Not,
    Like, // `*` wildcards, case-insensitive
    NotLike,
    In, // comma-separated values
    NotIn,
    Min, // inclusive
    Max
};

struct FFieldFilter
{
    std::string Field;
    EFilterOp Op = EFilterOp::Equals;
    std::string Value;
};

// mod.io's paging: `_offset` (default 0) and `_limit` (default 100; above 100 counts as 100,
// the most mod.io answers with).
struct FPaging
{
    int64 Offset = 0;
    int64 Limit = 100;
};

// A list request's filters, full-text search, sort and page.
struct FListQuery
{
    std::vector<FFieldFilter> Filters; // on mod fields; tags are filtered as "tags"
    std::string Search;                // `_q`
    std::string SortField = "id";
    bool bDescending = false;
    FPaging Paging;
};

using FQueryParams = std::multimap<std::string, std::string>;

// Bad numbers, unknown sort keys and parameters that are no filter are 422 (ref 13009); a status
// or visible filter with another operator than = and -in is 403 (ref 15025).
std::optional<FApiError> ParsePaging(const FQueryParams& Params, FPaging& OutPaging);
std::optional<FApiError> ParseListQuery(const FQueryParams& Params, FListQuery& OutQuery);

bool ModMatches(const FStoredMod& Mod, const FListQuery& Query);
// Sorted by the query's column, ties by id.
void SortMods(std::vector<const FStoredMod*>& Mods, const FListQuery& Query);

// `*` matches any run of characters; the rest compares ignoring case.
bool WildcardMatches(const std::string& Pattern, const std::string& Text);

// The items of the page: [First, First + Count) of Total.
struct FPageSlice
{
    size_t First = 0;
    size_t Count = 0;
};
FPageSlice SliceOf(size_t Total, const FPaging& Paging);
}
