#pragma once

#include "Common/CoreTypes.h"

#include <optional>
#include <string>

namespace Maptorn
{
// Stands for the engine's configuration cache (GConfig) over INI files named by their path.
class MAPTORNCORE_API IConfigCache
{
public:
    virtual ~IConfigCache() = default;

    // Forgets the cached copy so that the next read comes fresh from disk.
    virtual void RemoveFromCache(const std::string& File) = 0;

    virtual std::optional<std::string> GetString(const std::string& Section, const std::string& Key,
        const std::string& File) = 0;
    // True/Yes/On and False/No/Off in any case, else a number; empty when the key is missing.
    virtual std::optional<bool> GetBool(const std::string& Section, const std::string& Key, const std::string& File) = 0;

    virtual void SetString(const std::string& Section, const std::string& Key, const std::string& Value,
        const std::string& File) = 0;
    // Writes "True" or "False".
    virtual void SetBool(const std::string& Section, const std::string& Key, bool bValue, const std::string& File) = 0;

    // Writes the cached file to disk, creating it when needed.
    virtual bool Flush(bool bRemoveFromCache, const std::string& File) = 0;
};
}
