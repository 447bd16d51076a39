#include "ModioService/SandboxListQuery.h"

#include "Common/StringUtil.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <functional>
#include <utility>
#include <variant>

namespace Maptorn::Sandbox
{
namespace
{
using FFieldValue = std::variant<int64, std::string>;

constexpr std::array<std::pair<std::string_view, EFilterOp>, 7> Suffixes = { { { "-not-lk", EFilterOp::NotLike },
                                                                               { "-not-in", EFilterOp::NotIn },
                                                                               { "-not", EFilterOp::Not },
                                                                               { "-lk", EFilterOp::Like },
                                                                               { "-in", EFilterOp::In },
                                                                               { "-min", EFilterOp::Min },
                                                                               { "-max", EFilterOp::Max } } };

std::optional<int64> ParseNumber(const std::string& Text)
{
    int64 Value = 0;
    const std::string Trimmed = TrimWhitespace(Text);
    const auto [End, Error] = std::from_chars(Trimmed.data(), Trimmed.data() + Trimmed.size(), Value);
    if (Trimmed.empty() || Error != std::errc() || End != Trimmed.data() + Trimmed.size())
    {
        return std::nullopt;
    }
    return Value;
}

std::optional<FFieldValue> FieldOf(const FStoredMod& Mod, const std::string& Field)
{
    static const std::map<std::string, std::function<FFieldValue(const FStoredMod&)>> Fields = {
        { "id", [](const FStoredMod& M) { return FFieldValue(M.Id); } },
        { "game_id", [](const FStoredMod& M) { return FFieldValue(M.GameId); } },
        { "status", [](const FStoredMod& M) { return FFieldValue(int64(M.Status)); } },
        { "visible", [](const FStoredMod& M) { return FFieldValue(int64(M.bVisible ? 1 : 0)); } },
        { "submitted_by", [](const FStoredMod& M) { return FFieldValue(M.SubmittedBy); } },
        { "date_added", [](const FStoredMod& M) { return FFieldValue(M.DateAdded); } },
        { "date_updated", [](const FStoredMod& M) { return FFieldValue(M.DateUpdated); } },
        { "date_live", [](const FStoredMod& M) { return FFieldValue(M.DateLive); } },
        { "name", [](const FStoredMod& M) { return FFieldValue(M.Name); } },
        { "name_id", [](const FStoredMod& M) { return FFieldValue(M.NameId); } },
        { "summary", [](const FStoredMod& M) { return FFieldValue(M.Summary); } },
        { "metadata_blob", [](const FStoredMod& M) { return FFieldValue(M.MetadataBlob); } }
    };
    const auto Found = Fields.find(Field);
    return Found == Fields.end() ? std::nullopt : std::optional<FFieldValue>(Found->second(Mod));
}

std::vector<std::string> SplitList(const std::string& Text)
{
    std::vector<std::string> Items;
    size_t Start = 0;
    while (Start <= Text.size())
    {
        const size_t Comma = std::min(Text.find(',', Start), Text.size());
        const std::string Item = TrimWhitespace(std::string_view(Text).substr(Start, Comma - Start));
        if (!Item.empty())
        {
            Items.push_back(Item);
        }
        Start = Comma + 1;
    }
    return Items;
}

std::string TextOf(const FFieldValue& Value)
{
    return std::holds_alternative<int64>(Value) ? std::to_string(std::get<int64>(Value)) : std::get<std::string>(Value);
}

// -1, 0, 1 as Value is below, equal to or above Operand; numbers compare as numbers.
int Compare(const FFieldValue& Value, const std::string& Operand)
{
    if (std::holds_alternative<int64>(Value))
    {
        const int64 Number = ParseNumber(Operand).value_or(0);
        return std::get<int64>(Value) < Number ? -1 : std::get<int64>(Value) > Number ? 1 : 0;
    }
    const std::string Left = ToLower(std::get<std::string>(Value));
    const std::string Right = ToLower(Operand);
    return Left < Right ? -1 : Left > Right ? 1 : 0;
}

bool AnyEquals(const FFieldValue& Value, const std::string& List)
{
    const std::vector<std::string> Items = SplitList(List);
    return std::any_of(Items.begin(), Items.end(), [&](const std::string& Item) { return Compare(Value, Item) == 0; });
}

bool FieldFilterMatches(const FFieldValue& Value, const FFieldFilter& Filter)
{
    switch (Filter.Op)
    {
    case EFilterOp::Equals: return Compare(Value, Filter.Value) == 0;
    case EFilterOp::Not: return Compare(Value, Filter.Value) != 0;
    case EFilterOp::Like: return WildcardMatches(Filter.Value, TextOf(Value));
    case EFilterOp::NotLike: return !WildcardMatches(Filter.Value, TextOf(Value));
    case EFilterOp::In: return AnyEquals(Value, Filter.Value);
    case EFilterOp::NotIn: return !AnyEquals(Value, Filter.Value);
    case EFilterOp::Min: return Compare(Value, Filter.Value) >= 0;
    case EFilterOp::Max: return Compare(Value, Filter.Value) <= 0;
    }
    return true;
}

bool HasTag(const FStoredMod& Mod, const std::string& Tag)
{
    return std::any_of(Mod.Tags.begin(), Mod.Tags.end(), [&](const FModTag& Own) { return EqualsIgnoreCase(Own.Name, Tag); });
}

// `tags=a,b` wants all of them; `-in` any, `-not-in` and `-not` none.
bool TagFilterMatches(const FStoredMod& Mod, const FFieldFilter& Filter)
{
    const std::vector<std::string> Tags = SplitList(Filter.Value);
    const auto Has = [&](const std::string& Tag) { return HasTag(Mod, Tag); };
    switch (Filter.Op)
    {
    case EFilterOp::Equals: return std::all_of(Tags.begin(), Tags.end(), Has);
    case EFilterOp::In: return std::any_of(Tags.begin(), Tags.end(), Has);
    case EFilterOp::Not:
    case EFilterOp::NotIn: return std::none_of(Tags.begin(), Tags.end(), Has);
    default: return true;
    }
}

bool IsNumericField(const std::string& Field)
{
    FStoredMod Probe;
    const std::optional<FFieldValue> Value = FieldOf(Probe, Field);
    return Value && std::holds_alternative<int64>(*Value);
}

std::optional<FApiError> CheckNumbers(const FFieldFilter& Filter)
{
    if (!IsNumericField(Filter.Field) || Filter.Op == EFilterOp::Like || Filter.Op == EFilterOp::NotLike)
    {
        return std::nullopt;
    }
    const bool bList = Filter.Op == EFilterOp::In || Filter.Op == EFilterOp::NotIn;
    const std::vector<std::string> Items = bList ? SplitList(Filter.Value) : std::vector<std::string>{ Filter.Value };
    for (const std::string& Item : Items)
    {
        if (!ParseNumber(Item))
        {
            return ValidationError(Filter.Field, "The " + Filter.Field + " filter takes numbers.");
        }
    }
    return std::nullopt;
}

std::optional<FFieldFilter> FilterOf(const std::string& Key, const std::string& Value)
{
    FFieldFilter Filter{ Key, EFilterOp::Equals, Value };
    for (const auto& [Suffix, Op] : Suffixes)
    {
        if (Key.size() > Suffix.size() && Key.ends_with(Suffix))
        {
            Filter = { Key.substr(0, Key.size() - Suffix.size()), Op, Value };
            break;
        }
    }
    FStoredMod Probe;
    if (Filter.Field != "tags" && !FieldOf(Probe, Filter.Field))
    {
        return std::nullopt;
    }
    return Filter;
}

// The sort keys of mod.io's Get Mods ("Sorting filters"), and id, the default order.
std::optional<FFieldValue> SortValueOf(const FStoredMod& Mod, const std::string& Column)
{
    if (Column == "downloads_total")
        return FFieldValue(Mod.Stats.DownloadsTotal);
    if (Column == "downloads_today")
        return FFieldValue(Mod.Stats.DownloadsToday);
    if (Column == "subscribers_total")
        return FFieldValue(Mod.Stats.SubscribersTotal);
    // Per mille positive, so that ratings sort as numbers.
    if (Column == "ratings_weighted_aggregate")
    {
        const int64 Ratings = Mod.Stats.RatingsPositive + Mod.Stats.RatingsNegative;
        return FFieldValue(Ratings ? Mod.Stats.RatingsPositive * 1000 / Ratings : 0);
    }
    if (Column == "id" || Column == "name" || Column == "date_live" || Column == "date_updated" || Column == "submitted_by")
        return FieldOf(Mod, Column);
    return std::nullopt;
}

// Parameters of a list request that are not filters on mod fields.
bool IsRequestParameter(const std::string& Key)
{
    return Key == "api_key" || Key == "_q" || Key == "_sort" || Key == "_limit" || Key == "_offset";
}

// Status & Visibility: a user who is no game admin may filter status and visible with "=" and
// "-in" only.
std::optional<FApiError> CheckAdminOnlyFilter(const FFieldFilter& Filter)
{
    if ((Filter.Field == "status" || Filter.Field == "visible") && Filter.Op != EFilterOp::Equals && Filter.Op != EFilterOp::In)
    {
        return MakeError(403, ErrorRef::AdminOnlyFilter,
            "You are not permitted to filter on " + Filter.Field + " with any operator but = and -in: that is for game admins.");
    }
    return std::nullopt;
}
}

bool WildcardMatches(const std::string& Pattern, const std::string& Text)
{
    const std::string P = ToLower(Pattern);
    const std::string T = ToLower(Text);
    size_t PatternAt = 0, TextAt = 0, StarAt = std::string::npos, ResumeAt = 0;
    while (TextAt < T.size())
    {
        if (PatternAt < P.size() && P[PatternAt] == '*')
        {
            StarAt = PatternAt++;
            ResumeAt = TextAt;
        }
        else if (PatternAt < P.size() && P[PatternAt] == T[TextAt])
        {
            ++PatternAt;
            ++TextAt;
        }
        else if (StarAt != std::string::npos)
        {
            PatternAt = StarAt + 1;
            TextAt = ++ResumeAt;
        }
        else
        {
            return false;
        }
    }
    while (PatternAt < P.size() && P[PatternAt] == '*')
    {
        ++PatternAt;
    }
    return PatternAt == P.size();
}

std::optional<FApiError> ParsePaging(const FQueryParams& Params, FPaging& OutPaging)
{
    if (const auto Offset = Params.find("_offset"); Offset != Params.end())
    {
        const std::optional<int64> Value = ParseNumber(Offset->second);
        if (!Value || *Value < 0)
        {
            return ValidationError("_offset", "The _offset must be a number of 0 or more.");
        }
        OutPaging.Offset = *Value;
    }
    if (const auto Limit = Params.find("_limit"); Limit != Params.end())
    {
        const std::optional<int64> Value = ParseNumber(Limit->second);
        if (!Value || *Value < 1)
        {
            return ValidationError("_limit", "The _limit must be a number from 1 to 100.");
        }
        OutPaging.Limit = std::min<int64>(*Value, 100);
    }
    return std::nullopt;
}

std::optional<FApiError> ParseListQuery(const FQueryParams& Params, FListQuery& OutQuery)
{
    if (std::optional<FApiError> Error = ParsePaging(Params, OutQuery.Paging))
    {
        return Error;
    }
    for (const auto& [Key, Value] : Params)
    {
        if (Key == "_q")
        {
            OutQuery.Search = Value;
        }
        else if (Key == "_sort")
        {
            OutQuery.bDescending = Value.starts_with("-");
            OutQuery.SortField = OutQuery.bDescending ? Value.substr(1) : Value;
            FStoredMod Probe;
            if (!SortValueOf(Probe, OutQuery.SortField))
            {
                return ValidationError("_sort", "The mods cannot be sorted by " + OutQuery.SortField + ".");
            }
        }
        else if (const std::optional<FFieldFilter> Filter = FilterOf(Key, Value))
        {
            if (std::optional<FApiError> Error = CheckAdminOnlyFilter(*Filter))
            {
                return Error;
            }
            if (std::optional<FApiError> Error = CheckNumbers(*Filter))
            {
                return Error;
            }
            OutQuery.Filters.push_back(*Filter);
        }
        else if (!IsRequestParameter(Key))
        {
            return ValidationError(Key, "The " + Key + " parameter is not a filter of this endpoint.");
        }
    }
    return std::nullopt;
}

bool ModMatches(const FStoredMod& Mod, const FListQuery& Query)
{
    if (!Query.Search.empty() && !ContainsIgnoreCase(Mod.Name, Query.Search) && !ContainsIgnoreCase(Mod.Summary, Query.Search))
    {
        return false;
    }
    return std::all_of(Query.Filters.begin(), Query.Filters.end(),
                       [&](const FFieldFilter& Filter)
                       {
                           if (Filter.Field == "tags")
                           {
                               return TagFilterMatches(Mod, Filter);
                           }
                           const std::optional<FFieldValue> Value = FieldOf(Mod, Filter.Field);
                           return !Value || FieldFilterMatches(*Value, Filter);
                       });
}

void SortMods(std::vector<const FStoredMod*>& Mods, const FListQuery& Query)
{
    std::stable_sort(Mods.begin(), Mods.end(),
                     [&](const FStoredMod* Left, const FStoredMod* Right)
                     {
                         const FFieldValue A = *SortValueOf(*Left, Query.SortField);
                         const FFieldValue B = *SortValueOf(*Right, Query.SortField);
                         const int Order = Compare(A, TextOf(B));
                         if (Order == 0)
                         {
                             return Left->Id < Right->Id;
                         }
                         return Query.bDescending ? Order > 0 : Order < 0;
                     });
}

FPageSlice SliceOf(size_t Total, const FPaging& Paging)
{
    const size_t First = std::min(Total, static_cast<size_t>(Paging.Offset));
    return { First, std::min(Total - First, static_cast<size_t>(Paging.Limit)) };
}
}
