// The desktop platform's file and folder pickers of the stand-in editor: each answers what the person
// at the keyboard picks next (SurfaceTestState's queues), or is cancelled when nobody queued an answer.

#include "EditorEngine/SurfaceTestState.h"

#include "DesktopPlatformModule.h"
#include "IDesktopPlatform.h"
#include "Platform/StringConversion.h"

namespace
{
std::optional<std::string> TakeAnswer(std::deque<std::optional<std::string>>& Answers)
{
	if (Answers.empty())
	{
		return std::nullopt;
	}
	std::optional<std::string> Answer = Answers.front();
	Answers.pop_front();
	return Answer;
}

class FPickerAnswers final : public IDesktopPlatform
{
public:
	bool OpenFileDialog(const void* /*ParentWindowHandle*/, const FString& /*DialogTitle*/, const FString& /*DefaultPath*/,
		const FString& /*DefaultFile*/, const FString& /*FileTypes*/, uint32 /*Flags*/, TArray<FString>& OutFilenames) override
	{
		const std::optional<std::string> Picked = TakeAnswer(SurfaceTestState::Get().FileAnswers);
		if (Picked)
		{
			OutFilenames.Add(MaptornString::ToFString(*Picked));
		}
		return Picked.has_value();
	}

	bool OpenDirectoryDialog(const void* /*ParentWindowHandle*/, const FString& /*DialogTitle*/, const FString& /*DefaultPath*/,
		FString& OutFolderName) override
	{
		const std::optional<std::string> Picked = TakeAnswer(SurfaceTestState::Get().FolderAnswers);
		if (Picked)
		{
			OutFolderName = MaptornString::ToFString(*Picked);
		}
		return Picked.has_value();
	}
};
}

IDesktopPlatform* FDesktopPlatformModule::Get()
{
	static FPickerAnswers Platform;
	return &Platform;
}
