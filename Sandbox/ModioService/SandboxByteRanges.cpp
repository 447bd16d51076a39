#include "ModioService/SandboxByteRanges.h"

#include "Common/StringUtil.h"

#include <algorithm>
#include <cctype>
#include <charconv>

namespace Maptorn::Sandbox
{
namespace
{
FApiError RangeError(int32 Ref, const std::string& Message)
{
    return MakeError(400, Ref, Message);
}

bool IsDigits(const std::string& Text)
{
    return !Text.empty() &&
           std::all_of(Text.begin(), Text.end(), [](char C) { return std::isdigit(static_cast<unsigned char>(C)); });
}

std::optional<int64> ToNumber(const std::string& Text)
{
    int64 Value = 0;
    const auto [End, Error] = std::from_chars(Text.data(), Text.data() + Text.size(), Value);
    return Error == std::errc() && End == Text.data() + Text.size() ? std::optional(Value) : std::nullopt;
}

// "<a>-<b>/<c>" into its three numbers.
std::optional<FApiError> SplitRange(const std::string& Text, int64& A, int64& B, int64& C)
{
    if (Text.find('*') != std::string::npos)
    {
        return RangeError(ErrorRef::RangeWildcard, "The Content-Range header must not include wild-carded values.");
    }
    const size_t Slash = Text.find('/');
    const size_t Dash = Text.find('-');
    if (Slash == std::string::npos || Dash == std::string::npos || Dash > Slash ||
        Text.find('/', Slash + 1) != std::string::npos || Text.find('-', Dash + 1) != std::string::npos || Dash == 0 ||
        Slash == Dash + 1 || Slash + 1 == Text.size())
    {
        return RangeError(ErrorRef::RangeBadPattern, "The Content-Range header does not match the required pattern.");
    }
    const std::string Parts[3] = { Text.substr(0, Dash), Text.substr(Dash + 1, Slash - Dash - 1), Text.substr(Slash + 1) };
    std::optional<int64> Numbers[3];
    for (int Index = 0; Index < 3; ++Index)
    {
        Numbers[Index] = IsDigits(Parts[Index]) ? ToNumber(Parts[Index]) : std::nullopt;
        if (!Numbers[Index])
        {
            return RangeError(ErrorRef::RangeNotNumeric, "The Content-Range header contains a non numeric value.");
        }
    }
    A = *Numbers[0];
    B = *Numbers[1];
    C = *Numbers[2];
    return std::nullopt;
}
}

std::optional<FApiError> ParsePartRange(const std::string& Header, bool bAcceptLegacy, FPartRange& OutRange)
{
    const std::string Value = TrimWhitespace(Header);
    if (Value.empty())
    {
        return RangeError(ErrorRef::RangeMissing, "The Content-Range header is missing from your request.");
    }
    const size_t Space = Value.find(' ');
    const bool bLegacy = Space == std::string::npos && bAcceptLegacy;
    if (!bLegacy && (Space == std::string::npos || Value.substr(0, Space) != "bytes"))
    {
        return RangeError(ErrorRef::RangeUnitNotBytes, "The unit within the Content-Range header must be of type: bytes.");
    }
    int64 A = 0, B = 0, C = 0;
    if (std::optional<FApiError> Error = SplitRange(bLegacy ? Value : TrimWhitespace(Value.substr(Space + 1)), A, B, C))
    {
        return Error;
    }
    // The legacy form's middle number is the part's size.
    OutRange = bLegacy ? FPartRange{ A, A + B - 1, C } : FPartRange{ A, B, C };
    if (OutRange.Last <= OutRange.First)
    {
        return RangeError(ErrorRef::RangeEndNotAfterStart, "The Content-Range header contains an invalid range, ensure that the "
                                                           "finishing byte is greater than the starting byte.");
    }
    return std::nullopt;
}

std::optional<FApiError> CheckPartRange(const FPartRange& Range, uint64 BodySize, int64 PartUnit)
{
    const int64 Size = Range.Last - Range.First + 1;
    if (Size > PartUnit || static_cast<int64>(BodySize) != Size || Range.First % PartUnit != 0)
    {
        return RangeError(ErrorRef::RangeWrongPartSize, "The size of the part provided is either too big, or too small.");
    }
    if (Range.Last > Range.Total - 1 || (Size < PartUnit && Range.Last != Range.Total - 1))
    {
        return RangeError(ErrorRef::RangeFinalEndNotTotal,
                          "The finish byte of the range must be one less than the total size when it is the final part.");
    }
    return std::nullopt;
}

EDownloadRange ResolveDownloadRange(const std::string& Header, uint64 Size, uint64& OutFirst, uint64& OutLast)
{
    const std::string Value = TrimWhitespace(Header);
    if (!Value.starts_with("bytes=") || Value.find(',') != std::string::npos)
    {
        return EDownloadRange::Whole;
    }
    const std::string Asked = TrimWhitespace(Value.substr(6));
    const size_t Dash = Asked.find('-');
    const std::string Left = Dash == std::string::npos ? Asked : Asked.substr(0, Dash);
    const std::string Right = Dash == std::string::npos ? std::string() : Asked.substr(Dash + 1);
    if (Dash == std::string::npos || (!Left.empty() && !IsDigits(Left)) || (!Right.empty() && !IsDigits(Right)) ||
        (Left.empty() && Right.empty()))
    {
        return EDownloadRange::Whole;
    }
    const uint64 A = Left.empty() ? 0 : static_cast<uint64>(ToNumber(Left).value_or(INT64_MAX));
    const uint64 B = Right.empty() ? 0 : static_cast<uint64>(ToNumber(Right).value_or(INT64_MAX));
    if (Left.empty()) // the last B bytes
    {
        if (B == 0 || Size == 0)
        {
            return EDownloadRange::Unsatisfiable;
        }
        OutFirst = Size - std::min(B, Size);
        OutLast = Size - 1;
        return EDownloadRange::Partial;
    }
    if (!Right.empty() && B < A)
    {
        return EDownloadRange::Whole; // not a valid range: ignored, as HTTP says
    }
    if (A >= Size)
    {
        return EDownloadRange::Unsatisfiable;
    }
    OutFirst = A;
    OutLast = Right.empty() ? Size - 1 : std::min(B, Size - 1);
    return EDownloadRange::Partial;
}
}
