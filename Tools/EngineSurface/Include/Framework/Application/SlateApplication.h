#pragma once
// Reference: Runtime/Slate/Public/Framework/Application/SlateApplication.h (FSlateApplication)

#include "CoreMinimal.h"

class SWidget;

enum class ESlateParentWindowSearchMethod
{
	ActiveWindow,
	MainWindow,
};

class FSlateApplication
{
public:
	static bool IsInitialized();
	static FSlateApplication& Get();
	const void* FindBestParentWindowHandleForDialogs(const TSharedPtr<SWidget>& InWidget,
		const ESlateParentWindowSearchMethod InParentWindowSearchMethod = ESlateParentWindowSearchMethod::ActiveWindow);
};
