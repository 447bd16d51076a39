#include "Workshop/WorkshopTypes.h"

#include "Common/StringUtil.h"

namespace Maptorn
{
namespace
{
int HexDigit(char C)
{
    if (C >= '0' && C <= '9')
    {
        return C - '0';
    }
    if (C >= 'a' && C <= 'f')
    {
        return C - 'a' + 10;
    }
    if (C >= 'A' && C <= 'F')
    {
        return C - 'A' + 10;
    }
    return -1;
}
}

FWorkshopColor FWorkshopColor::FromHex(std::string_view Hex)
{
    if (!Hex.empty() && Hex.front() == '#')
    {
        Hex.remove_prefix(1);
    }
    if (Hex.size() != 6 && Hex.size() != 8)
    {
        return {};
    }
    uint8 Channels[4] = {0, 0, 0, 255};
    for (std::size_t Channel = 0; Channel < Hex.size() / 2; ++Channel)
    {
        const int High = HexDigit(Hex[Channel * 2]);
        const int Low = HexDigit(Hex[Channel * 2 + 1]);
        if (High < 0 || Low < 0)
        {
            return {};
        }
        Channels[Channel] = static_cast<uint8>(High * 16 + Low);
    }
    return {Channels[0], Channels[1], Channels[2], Channels[3]};
}

std::string FWorkshopColor::ToHex() const
{
    return Printf("%02X%02X%02X%02X", R, G, B, A);
}
}
