#pragma once

#include "ModioService/ModioSandbox.h"
#include "ModioService/SandboxReply.h"

namespace Maptorn::Sandbox
{
// Changes a route's answer as an injected fault asks: the 429's "retry-after", checksums that
// name other bytes, a range that begins elsewhere. Faults that spoil the wire (cuts) are the
// writer's; the others leave the answer as it is.
void SpoilReply(const FFault& Fault, FReply& Reply);
}
