#include "Modio/JsonFields.h"

#include <cmath>
#include <cstdlib>
#include <limits>

namespace Maptorn::JsonFields
{
const FJson* FindField(const FJson& Object, const char* Key)
{
    if (!Object.is_object())
    {
        return nullptr;
    }
    const auto Found = Object.find(Key);
    return Found == Object.end() ? nullptr : &*Found;
}

std::string GetString(const FJson& Object, const char* Key)
{
    const FJson* Field = FindField(Object, Key);
    if (!Field)
    {
        return {};
    }
    if (Field->is_string())
    {
        return Field->get<std::string>();
    }
    if (Field->is_number_integer())
    {
        return Field->is_number_unsigned() ? std::to_string(Field->get<uint64>()) : std::to_string(Field->get<int64>());
    }
    if (Field->is_number_float())
    {
        return Field->dump();
    }
    if (Field->is_boolean())
    {
        return Field->get<bool>() ? "true" : "false";
    }
    return {};
}

bool TryGetNumber(const FJson& Object, const char* Key, double& OutNumber)
{
    const FJson* Field = FindField(Object, Key);
    if (!Field)
    {
        return false;
    }
    if (Field->is_number())
    {
        OutNumber = Field->get<double>();
        return true;
    }
    if (Field->is_string())
    {
        const std::string Text = Field->get<std::string>();
        OutNumber = std::strtod(Text.c_str(), nullptr);
        return true;
    }
    if (Field->is_boolean())
    {
        OutNumber = Field->get<bool>() ? 1.0 : 0.0;
        return true;
    }
    return false;
}

double GetNumber(const FJson& Object, const char* Key)
{
    double Number = 0.0;
    return TryGetNumber(Object, Key, Number) ? Number : 0.0;
}

bool GetBool(const FJson& Object, const char* Key)
{
    const FJson* Field = FindField(Object, Key);
    if (!Field)
    {
        return false;
    }
    if (Field->is_boolean())
    {
        return Field->get<bool>();
    }
    if (Field->is_number())
    {
        return Field->get<double>() != 0.0;
    }
    return Field->is_string() && Field->get<std::string>() == "true";
}

const FJson* TryGetObject(const FJson& Object, const char* Key)
{
    const FJson* Field = FindField(Object, Key);
    return Field && Field->is_object() ? Field : nullptr;
}

const FJson* TryGetArray(const FJson& Object, const char* Key)
{
    const FJson* Field = FindField(Object, Key);
    return Field && Field->is_array() ? Field : nullptr;
}

template <typename TInt>
static TInt Truncate(double Number)
{
    if (std::isnan(Number))
    {
        return 0;
    }
    const double Truncated = std::trunc(Number);
    if (Truncated <= static_cast<double>(std::numeric_limits<TInt>::min()))
    {
        return std::numeric_limits<TInt>::min();
    }
    if (Truncated >= static_cast<double>(std::numeric_limits<TInt>::max()))
    {
        return std::numeric_limits<TInt>::max();
    }
    return static_cast<TInt>(Truncated);
}

int32 TruncateToInt32(double Number)
{
    return Truncate<int32>(Number);
}

int64 TruncateToInt64(double Number)
{
    return Truncate<int64>(Number);
}
}
