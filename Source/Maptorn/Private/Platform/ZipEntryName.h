#pragma once

#include "CoreMinimal.h"

#include <string>
#include <string_view>

namespace MaptornZip
{
// An entry's name in UTF-8, read the way the standalone host's ZIP library reads it, so both hosts
// write the same paths: the Info-ZIP Unicode path field when it matches the stored name, else the
// stored bytes when flagged UTF-8 or valid UTF-8, else the stored bytes read as code page 437.
std::string DecodeEntryName(std::string_view Stored, uint16 Flags, std::string_view ExtraFields);
}
