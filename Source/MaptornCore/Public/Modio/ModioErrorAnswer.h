#pragma once

#include "Common/CoreTypes.h"

#include <string>
#include <utility>
#include <vector>

namespace Maptorn
{
// mod.io's error object: {"error":{"code","error_ref","message","errors":{field: text}}}, the
// field errors only on 422.
struct MAPTORNCORE_API FModioErrorAnswer
{
    int32 Status = 0;
    int32 ErrorRef = 0;
    std::string Message;
    std::vector<std::pair<std::string, std::string>> FieldErrors;
};

// What an answer other than 2xx says; a body that is no mod.io error keeps only the status.
MAPTORNCORE_API FModioErrorAnswer ReadErrorAnswer(int32 Status, const std::string& Body);

// One line a modder can act on: mod.io's message, the status and ref, then each field's error,
// e.g. "The logo is too small (HTTP 422, error_ref 13009): logo: at least 512x288".
MAPTORNCORE_API std::string DescribeErrorAnswer(const FModioErrorAnswer& Answer);
MAPTORNCORE_API std::string DescribeErrorAnswer(int32 Status, const std::string& Body);
}
