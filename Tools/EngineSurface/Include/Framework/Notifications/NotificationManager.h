#pragma once
// Reference: Runtime/Slate/Public/Framework/Notifications/NotificationManager.h (FSlateNotificationManager)

#include "CoreMinimal.h"
#include "Widgets/Notifications/SNotificationList.h"

// The toasts in the corner of the editor's main window. Game thread only.
class FSlateNotificationManager
{
public:
	static FSlateNotificationManager& Get();

	// Null when the toast could not be shown.
	TSharedPtr<SNotificationItem> AddNotification(const FNotificationInfo& Info);

protected:
	FSlateNotificationManager() = default;
};
