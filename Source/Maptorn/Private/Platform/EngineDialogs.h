#pragma once

#include "CoreMinimal.h"

// windows.h may have turned the port's method name into MessageBoxW.
#ifdef MessageBox
#undef MessageBox
#endif

#include "Platform/DialogsPort.h"

// Modal message boxes, the desktop file and folder pickers and the system browser.
class FEngineDialogs final : public Maptorn::IMaptornDialogs
{
public:
	Maptorn::EAppReturnType MessageBox(Maptorn::EAppMsgType Type, const std::string& Text, const std::string& Caption) override;
	std::optional<std::string> OpenFileDialog(const std::string& Title, const std::string& DefaultPath,
		const std::string& FileTypes) override;
	std::optional<std::string> OpenDirectoryDialog(const std::string& Title, const std::string& DefaultPath) override;
	void LaunchURL(const std::string& Url) override;
};
