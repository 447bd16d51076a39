// The stand-in editor's notification manager: toasts are kept in the editor's state, oldest first.

#include "EditorEngine/Slate/SurfaceNotifications.h"

#include "EditorEngine/SurfaceTestState.h"
#include "Framework/Notifications/NotificationManager.h"
#include "Platform/StringConversion.h"

std::string SStandInNotificationItem::GetText() const
{
	return MaptornString::ToStd(Text.Get(FText()).ToString());
}

FSlateNotificationManager& FSlateNotificationManager::Get()
{
	static FSlateNotificationManager Manager;
	return Manager;
}

TSharedPtr<SNotificationItem> FSlateNotificationManager::AddNotification(const FNotificationInfo& Info)
{
	TSharedRef<SStandInNotificationItem> Item = MakeShared<SStandInNotificationItem>(Info);
	SurfaceTestState::Get().Notifications.push_back(Item);
	return Item.ToSharedPtr();
}
