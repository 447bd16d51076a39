#include "Platform/EngineNotifications.h"

#include "Platform/StringConversion.h"

#include "Framework/Notifications/NotificationManager.h"
#include "Widgets/Notifications/SNotificationList.h"

namespace
{
SNotificationItem::ECompletionState ToSlate(Maptorn::ENotificationState State)
{
	switch (State)
	{
	case Maptorn::ENotificationState::Pending: return SNotificationItem::CS_Pending;
	case Maptorn::ENotificationState::Success: return SNotificationItem::CS_Success;
	case Maptorn::ENotificationState::Fail: return SNotificationItem::CS_Fail;
	}
	return SNotificationItem::CS_None;
}

FText ToText(const std::string& Text)
{
	return FText::FromString(MaptornString::ToFString(Text));
}
}

Maptorn::IMaptornNotifications::FHandle FEngineNotifications::BeginNotification(const std::string& Text)
{
	FNotificationInfo Info(ToText(Text));
	Info.bFireAndForget = false;
	Info.ExpireDuration = OutcomeSeconds;
	TSharedPtr<SNotificationItem> Item = FSlateNotificationManager::Get().AddNotification(Info);
	if (!Item.IsValid())
	{
		return 0;
	}
	Item->SetCompletionState(SNotificationItem::CS_Pending);
	Running.emplace(++LastHandle, Item);
	return LastHandle;
}

void FEngineNotifications::UpdateNotification(FHandle Notification, const std::string& Text)
{
	const auto Found = Running.find(Notification);
	if (Found == Running.end())
	{
		return;
	}
	if (const TSharedPtr<SNotificationItem> Item = Found->second.Pin())
	{
		Item->SetText(ToText(Text));
	}
}

void FEngineNotifications::FinishNotification(FHandle Notification, const std::string& Text, bool bSucceeded)
{
	const auto Found = Running.find(Notification);
	if (Found == Running.end())
	{
		return;
	}
	if (const TSharedPtr<SNotificationItem> Item = Found->second.Pin())
	{
		Item->SetText(ToText(Text));
		Item->SetCompletionState(bSucceeded ? SNotificationItem::CS_Success : SNotificationItem::CS_Fail);
		Item->ExpireAndFadeout();
	}
	Running.erase(Found);
}

void FEngineNotifications::Notify(const std::string& Text, Maptorn::ENotificationState State)
{
	FNotificationInfo Info(ToText(Text));
	Info.ExpireDuration = OutcomeSeconds;
	// A toast that only says something went well or badly needs no throbber.
	Info.bUseThrobber = false;
	if (const TSharedPtr<SNotificationItem> Item = FSlateNotificationManager::Get().AddNotification(Info))
	{
		Item->SetCompletionState(ToSlate(State));
	}
}
