#pragma once

namespace Maptorn::Testing
{
// The game API key the tests give the sandbox, and the address of its seeded modder (owner of 1001).
inline constexpr const char* SandboxApiKey = "0123456789abcdef0123456789abcdef";
inline constexpr const char* ModderEmail = "modder@example.com";
}
