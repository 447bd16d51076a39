#pragma once
// Reference: Runtime/Slate/Public/Widgets/Notifications/SNotificationList.h (FNotificationInfo, SNotificationItem)

#include "CoreMinimal.h"
#include "Misc/Attribute.h"
#include "Widgets/SCompoundWidget.h"

// What a new toast shows and how long it stays. Only the members the workshop sets are declared.
struct FNotificationInfo
{
	FNotificationInfo(const FText& InText) : Text(InText) {}

	TAttribute<FText> Text;
	float FadeInDuration = 0.5f;
	float FadeOutDuration = 2.0f;
	// Seconds a fire-and-forget toast (or one told to expire) stays before it fades.
	float ExpireDuration = 1.0f;
	bool bUseThrobber = true;
	bool bUseSuccessFailIcons = true;
	bool bUseLargeFont = true;
	// False keeps the toast until its owner lets it expire.
	bool bFireAndForget = true;
};

// One toast, as the notification manager hands it back to its owner.
class SNotificationItem : public SCompoundWidget
{
public:
	enum ECompletionState
	{
		CS_None,
		CS_Pending,
		CS_Success,
		CS_Fail,
	};

	virtual void SetText(const TAttribute<FText>& InText) = 0;
	virtual ECompletionState GetCompletionState() const = 0;
	virtual void SetCompletionState(ECompletionState State) = 0;
	// Starts the expire timer, after which the toast fades out.
	virtual void ExpireAndFadeout() = 0;
	virtual void Fadeout() = 0;
};
