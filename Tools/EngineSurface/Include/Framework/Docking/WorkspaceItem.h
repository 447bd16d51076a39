#pragma once
// Reference: Runtime/Slate/Public/Framework/Docking/WorkspaceItem.h (FWorkspaceItem)

#include "CoreMinimal.h"

class FWorkspaceItem : public TSharedFromThis<FWorkspaceItem>
{
public:
	virtual ~FWorkspaceItem() {}
	const FText& GetDisplayName() const { return DisplayName; }

protected:
	FText DisplayName;
};
