#include "Module/ProjectEnvironment.h"

#include "Platform/WindowsHeaders.h"

#ifdef _WIN32
#include <vector>
#endif

namespace Maptorn::ProjectEnvironment
{
#ifdef _WIN32
static std::wstring Widen(const std::string& Utf8)
{
    const int Length = MultiByteToWideChar(CP_UTF8, 0, Utf8.c_str(), -1, nullptr, 0);
    std::wstring Wide(Length > 0 ? Length - 1 : 0, L'\0');
    if (Length > 1)
    {
        MultiByteToWideChar(CP_UTF8, 0, Utf8.c_str(), -1, Wide.data(), Length);
    }
    return Wide;
}

static std::string Narrow(const std::wstring& Wide)
{
    const int Length = WideCharToMultiByte(CP_UTF8, 0, Wide.c_str(), -1, nullptr, 0, nullptr, nullptr);
    std::string Utf8(Length > 0 ? Length - 1 : 0, '\0');
    if (Length > 1)
    {
        WideCharToMultiByte(CP_UTF8, 0, Wide.c_str(), -1, Utf8.data(), Length, nullptr, nullptr);
    }
    return Utf8;
}

std::string ReadRegistryString(const std::string& KeyPath, const std::string& ValueName)
{
    HKEY Key = nullptr;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, Widen(KeyPath).c_str(), 0, KEY_READ, &Key) != ERROR_SUCCESS)
    {
        return {};
    }
    const std::wstring WideValueName = Widen(ValueName);
    DWORD Type = 0;
    DWORD ByteSize = 0;
    std::string Result;
    if (RegQueryValueExW(Key, WideValueName.c_str(), nullptr, &Type, nullptr, &ByteSize) == ERROR_SUCCESS && Type == REG_SZ)
    {
        std::vector<wchar_t> Buffer(ByteSize / 2 + 1, L'\0');
        DWORD ReadSize = ByteSize;
        if (RegQueryValueExW(Key, WideValueName.c_str(), nullptr, nullptr, reinterpret_cast<LPBYTE>(Buffer.data()), &ReadSize) == ERROR_SUCCESS)
        {
            // The stored text need not be terminated; cut at the first zero we find.
            Result = Narrow(std::wstring(Buffer.data()));
        }
    }
    RegCloseKey(Key);
    return Result;
}
#else
std::string ReadRegistryString(const std::string& /*KeyPath*/, const std::string& /*ValueName*/)
{
    return {};
}
#endif
}
