#pragma once

#include <string>
#include <vector>

// The command line the engine hands to a child process on Windows, and the argument vector that
// child receives. Kept pure so that the standalone host passes exactly the arguments Windows would.
namespace Maptorn::WindowsCommandLine
{
// `"Url" Params`, or `Url Params` when Url already starts with a double quote.
std::string BuildCommandLine(const std::string& Url, const std::string& Params);

// Splits a command line as CommandLineToArgvW and the 2008+ C runtime do: the program name
// (first argument) ends at the first blank outside quotes and takes backslashes literally;
// later arguments follow the backslash-and-quote rules, with `""` inside quotes a literal quote.
std::vector<std::string> SplitCommandLine(const std::string& CommandLine);
}
