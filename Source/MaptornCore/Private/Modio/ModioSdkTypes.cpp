#include "Modio/ModioSdkTypes.h"

namespace Maptorn
{
float Pct_Int64Int64(int64 Current, int64 Total)
{
    if (Total == 0)
    {
        return 0.0f;
    }
    return static_cast<float>(static_cast<double>(Current) / static_cast<double>(Total) * 100.0);
}
}
