#pragma once

// The stand-in editor's toasts: each keeps what it shows, and the editor keeps every toast raised
// since it started, so a test reads them as the modder saw them.

#include "Widgets/Notifications/SNotificationList.h"

#include <string>

class SStandInNotificationItem final : public SNotificationItem
{
public:
	explicit SStandInNotificationItem(const FNotificationInfo& Info)
		: Text(Info.Text)
		, bFireAndForget(Info.bFireAndForget)
	{
	}

	void SetText(const TAttribute<FText>& InText) override { Text = InText; }
	ECompletionState GetCompletionState() const override { return State; }
	void SetCompletionState(ECompletionState InState) override { State = InState; }
	void ExpireAndFadeout() override { bFading = true; }
	void Fadeout() override { bFading = true; }

	std::string GetText() const;
	// A fire-and-forget toast fades on its own; any other once its owner lets it go.
	bool IsFading() const { return bFireAndForget || bFading; }

private:
	TAttribute<FText> Text;
	ECompletionState State = CS_None;
	bool bFireAndForget = true;
	bool bFading = false;
};
