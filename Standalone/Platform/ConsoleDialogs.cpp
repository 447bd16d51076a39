#include "Platform/ConsoleDialogs.h"

#include "Common/StringUtil.h"

#include <istream>
#include <ostream>
#include <string>

namespace Maptorn
{
FConsoleDialogs::FConsoleDialogs(std::ostream& InOut, std::istream& InIn, bool bInInteractive)
    : Out(InOut)
    , In(InIn)
    , bInteractive(bInInteractive)
{
}

std::string FConsoleDialogs::GetLastMessageBoxText()
{
    std::lock_guard Lock(Mutex);
    return LastMessageBoxText;
}

EAppReturnType FConsoleDialogs::MessageBox(EAppMsgType Type, const std::string& Text, const std::string& Caption)
{
    // Workers show message boxes too: one at a time, as modal boxes are.
    std::lock_guard Lock(Mutex);
    ++MessageBoxCount;
    LastMessageBoxText = Text;
    Out << "[" << Caption << "] " << Text << std::endl;
    if (Type == EAppMsgType::Ok)
    {
        return EAppReturnType::Ok;
    }
    if (bAssumeYes)
    {
        Out << "  -> yes (--yes)" << std::endl;
        return EAppReturnType::Yes;
    }
    if (!bInteractive)
    {
        Out << "  -> no (not a terminal; run again with --yes to agree)" << std::endl;
        return EAppReturnType::No;
    }
    for (;;)
    {
        Out << "  Yes or no? [y/N] " << std::flush;
        std::string Answer;
        if (!std::getline(In, Answer))
        {
            return EAppReturnType::No;
        }
        Answer = ToLower(TrimWhitespace(Answer));
        if (Answer == "y" || Answer == "yes")
        {
            return EAppReturnType::Yes;
        }
        if (Answer.empty() || Answer == "n" || Answer == "no")
        {
            return EAppReturnType::No;
        }
    }
}

std::optional<std::string> FConsoleDialogs::AskLine(const std::string& Prompt)
{
    std::lock_guard Lock(Mutex);
    if (!bInteractive)
    {
        return std::nullopt;
    }
    Out << Prompt << std::flush;
    std::string Line;
    if (!std::getline(In, Line))
    {
        return std::nullopt;
    }
    Line = TrimWhitespace(Line);
    if (Line.empty())
    {
        return std::nullopt;
    }
    return Line;
}

std::optional<std::string> FConsoleDialogs::OpenFileDialog(const std::string& Title, const std::string& DefaultPath,
    const std::string& FileTypes)
{
    return AskLine(Title + " (" + FileTypes + ", starting in " + DefaultPath + "), empty to cancel: ");
}

std::optional<std::string> FConsoleDialogs::OpenDirectoryDialog(const std::string& Title, const std::string& DefaultPath)
{
    return AskLine(Title + " (starting in " + DefaultPath + "), empty to cancel: ");
}

void FConsoleDialogs::LaunchURL(const std::string& Url)
{
    std::lock_guard Lock(Mutex);
    Out << "Open in your browser: " << Url << std::endl;
}
}
