#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Maptorn
{
// Header lines in the order they were set or received.
using FHttpHeaderList = std::vector<std::pair<std::string, std::string>>;

// The value of the last header called Name (ignoring case); empty when absent.
std::string FindHeader(const FHttpHeaderList& Headers, std::string_view Name);

// Replaces the value of a same-named header (ignoring case) in place, or adds the header.
void SetHeaderReplacing(FHttpHeaderList& Headers, const std::string& Name, const std::string& Value);

// "Name: value" as libcurl takes it; an empty value is written "Name;" because "Name:" would
// remove the header instead of sending it empty.
std::string FormatRequestHeaderLine(const std::string& Name, const std::string& Value);

// Name and trimmed value of one received header line; nothing for a status line, the blank line
// that ends the block, or a line without a colon.
std::optional<std::pair<std::string, std::string>> ParseResponseHeaderLine(std::string_view Line);
}
