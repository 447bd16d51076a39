#include "Common/ByteFormat.h"

#include "Common/StringUtil.h"

namespace Maptorn
{
std::string FormatFileSize(int64 Bytes)
{
    static constexpr const char* Units[] = {"B", "KB", "MB", "GB", "TB"};
    double Value = static_cast<double>(Bytes < 0 ? 0 : Bytes);
    int Unit = 0;
    while (Value >= 1024.0 && Unit < 4)
    {
        Value /= 1024.0;
        ++Unit;
    }
    return Printf("%.2f %s", Value, Units[Unit]);
}
}
