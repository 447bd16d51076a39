#pragma once
// Reference: Runtime/SlateCore/Public/Input/Reply.h (FReply)

#include "CoreMinimal.h"

class FReply
{
public:
	static FReply Handled() { return FReply(true); }
	static FReply Unhandled() { return FReply(false); }
	bool IsEventHandled() const { return bIsHandled; }

private:
	explicit FReply(bool bInHandled) : bIsHandled(bInHandled) {}
	bool bIsHandled;
};
