#pragma once

#include "Common/CoreTypes.h"

#include <optional>
#include <string>

namespace Maptorn
{
enum class EAppMsgType
{
    Ok,
    YesNo,
};

enum class EAppReturnType
{
    No,
    Yes,
    Ok,
    Cancel,
};

// Stands for the engine's modal message boxes, the desktop file dialogs and opening a URL.
// Message boxes may be shown from worker threads, as the build tasks do.
class MAPTORNCORE_API IMaptornDialogs
{
public:
    virtual ~IMaptornDialogs() = default;

    virtual EAppReturnType MessageBox(EAppMsgType Type, const std::string& Text, const std::string& Caption) = 0;

    // Empty when the user cancelled or no dialog can be shown.
    virtual std::optional<std::string> OpenFileDialog(const std::string& Title, const std::string& DefaultPath,
        const std::string& FileTypes) = 0;
    virtual std::optional<std::string> OpenDirectoryDialog(const std::string& Title, const std::string& DefaultPath) = 0;

    virtual void LaunchURL(const std::string& Url) = 0;
};
}
