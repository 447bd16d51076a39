#pragma once

#include "Platform/DialogsPort.h"

#include <iosfwd>
#include <mutex>
#include <string>

namespace Maptorn
{
// Message boxes printed with their caption; questions asked on a terminal. Without a terminal a
// question is answered No (nothing is overwritten by accident) unless the host assumes Yes.
class FConsoleDialogs final : public IMaptornDialogs
{
public:
    FConsoleDialogs(std::ostream& InOut, std::istream& InIn, bool bInInteractive);

    EAppReturnType MessageBox(EAppMsgType Type, const std::string& Text, const std::string& Caption) override;
    std::optional<std::string> OpenFileDialog(const std::string& Title, const std::string& DefaultPath,
        const std::string& FileTypes) override;
    std::optional<std::string> OpenDirectoryDialog(const std::string& Title, const std::string& DefaultPath) override;
    void LaunchURL(const std::string& Url) override;

    void SetAssumeYes(bool bInAssumeYes) { bAssumeYes = bInAssumeYes; }
    int GetMessageBoxCount() const { return MessageBoxCount; }
    std::string GetLastMessageBoxText();

private:
    std::optional<std::string> AskLine(const std::string& Prompt);

    std::mutex Mutex;
    std::ostream& Out;
    std::istream& In;
    bool bInteractive = false;
    bool bAssumeYes = false;
    int MessageBoxCount = 0;
    std::string LastMessageBoxText;
};
}
