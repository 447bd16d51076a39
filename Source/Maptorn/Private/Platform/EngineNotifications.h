#pragma once

#include "CoreMinimal.h"
#include "Platform/NotificationsPort.h"

#include <map>

class SNotificationItem;

// The workshop's toasts as the editor's own notifications (the Slate notification manager): a
// pending one with a throbber while work runs, its text following the progress, then the outcome's
// tick or cross before it fades.
class FEngineNotifications final : public Maptorn::IMaptornNotifications
{
public:
	FHandle BeginNotification(const std::string& Text) override;
	void UpdateNotification(FHandle Notification, const std::string& Text) override;
	void FinishNotification(FHandle Notification, const std::string& Text, bool bSucceeded) override;
	void Notify(const std::string& Text, Maptorn::ENotificationState State) override;

	// Seconds an outcome stays readable before its toast fades.
	static constexpr float OutcomeSeconds = 5.0f;

private:
	// The manager owns the toasts; a toast already gone takes no more updates.
	std::map<FHandle, TWeakPtr<SNotificationItem>> Running;
	FHandle LastHandle = 0;
};
