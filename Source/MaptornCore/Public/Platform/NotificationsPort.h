#pragma once

#include "Common/CoreTypes.h"

#include <string>

namespace Maptorn
{
// A toast's state: its throbber while the work runs, then a tick or a cross.
enum class ENotificationState : uint8
{
    Pending,
    Success,
    Fail,
};

// Stands for the editor's toasts in the corner of the screen (the Slate notification manager).
// Game thread only. A host without toasts passes none: the workshop then shows only its window,
// message boxes and log.
class MAPTORNCORE_API IMaptornNotifications
{
public:
    using FHandle = uint64;

    virtual ~IMaptornNotifications() = default;

    // A toast that stays, pending, until it is finished; 0 when none could be shown.
    virtual FHandle BeginNotification(const std::string& Text) = 0;
    virtual void UpdateNotification(FHandle Notification, const std::string& Text) = 0;
    // Shows the outcome, then lets the toast fade.
    virtual void FinishNotification(FHandle Notification, const std::string& Text, bool bSucceeded) = 0;
    // A toast that fades on its own.
    virtual void Notify(const std::string& Text, ENotificationState State) = 0;
};
}
