#include "ModioService/SandboxFaultReplies.h"

#include "Common/StringUtil.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdio>

namespace Maptorn::Sandbox
{
namespace
{
void SpoilFilehashes(nlohmann::ordered_json& Value)
{
    if (Value.is_object())
    {
        for (auto& [Key, Item] : Value.items())
        {
            if (Key == "filehash" && Item.is_object() && Item.contains("md5"))
            {
                Item["md5"] = "00000000000000000000000000000000";
            }
            else
            {
                SpoilFilehashes(Item);
            }
        }
    }
    else if (Value.is_array())
    {
        for (auto& Item : Value)
        {
            SpoilFilehashes(Item);
        }
    }
}

void ShiftRange(int64_t Shift, FReply& Reply)
{
    for (auto& [Name, Value] : Reply.Headers)
    {
        unsigned long long First = 0, Last = 0, Total = 0;
        if (!EqualsIgnoreCase(Name, "Content-Range") || !Reply.File ||
            std::sscanf(Value.c_str(), "bytes %llu-%llu/%llu", &First, &Last, &Total) != 3 || Total == 0)
        {
            continue;
        }
        const unsigned long long NewFirst = std::min<unsigned long long>(First + static_cast<unsigned long long>(std::max<int64_t>(Shift, 0)), Total - 1);
        const unsigned long long NewLast = std::max(NewFirst, std::min(Last + (NewFirst - First), Total - 1));
        Reply.File->Offset = NewFirst;
        Reply.File->Length = NewLast - NewFirst + 1;
        Value = Printf("bytes %llu-%llu/%llu", NewFirst, NewLast, Total);
    }
}
}

void SpoilReply(const FFault& Fault, FReply& Reply)
{
    switch (Fault.Kind)
    {
    case EFaultKind::Status:
        for (auto& [Name, Value] : Reply.Headers)
        {
            if (Reply.Status == 429 && EqualsIgnoreCase(Name, "retry-after"))
            {
                Value = std::to_string(Fault.RetryAfterSeconds);
            }
        }
        break;
    case EFaultKind::WrongFilehash:
        if (nlohmann::ordered_json Body = nlohmann::ordered_json::parse(Reply.Body, nullptr, false); !Body.is_discarded() && !Reply.File)
        {
            SpoilFilehashes(Body);
            Reply.Body = Body.dump();
        }
        break;
    case EFaultKind::ShiftRange: ShiftRange(Fault.RangeShift, Reply); break;
    default: break;
    }
}
}
