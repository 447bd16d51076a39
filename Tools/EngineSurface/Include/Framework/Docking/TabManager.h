#pragma once
// Reference: Runtime/Slate/Public/Framework/Docking/TabManager.h (FGlobalTabmanager, FTabSpawnerEntry, FSpawnTabArgs, FOnSpawnTab)

#include "CoreMinimal.h"
#include "Framework/Docking/WorkspaceItem.h"
#include "Misc/Attribute.h"
#include "Textures/SlateIcon.h"

class SDockTab;

class FSpawnTabArgs
{
public:
	const FName& GetTabId() const { return TabId; }

private:
	FName TabId;
};

DECLARE_DELEGATE_RetVal_OneParam(TSharedRef<SDockTab>, FOnSpawnTab, const FSpawnTabArgs&);
DECLARE_DELEGATE_RetVal_OneParam(bool, FCanSpawnTab, const FSpawnTabArgs&);

class FTabSpawnerEntry : public FWorkspaceItem
{
public:
	FTabSpawnerEntry& SetDisplayName(const FText& InLegibleName);
	FTabSpawnerEntry& SetTooltipText(const FText& InTooltipText);
	FTabSpawnerEntry& SetGroup(const TSharedRef<FWorkspaceItem>& InGroup);
	FTabSpawnerEntry& SetIcon(const FSlateIcon& InIcon);
	FTabSpawnerEntry& SetMenuType(const TAttribute<int32>& InMenuType);
};

class FTabManager : public TSharedFromThis<FTabManager>
{
public:
	virtual ~FTabManager() {}
	TSharedPtr<SDockTab> TryInvokeTab(const FName& TabId, bool bInvokeAsInactive = false);
};

class FGlobalTabmanager : public FTabManager
{
public:
	static const TSharedRef<FGlobalTabmanager>& Get();
	FTabSpawnerEntry& RegisterNomadTabSpawner(const FName TabId, const FOnSpawnTab& OnSpawnTab, const FCanSpawnTab& CanSpawnTab = FCanSpawnTab());
	bool UnregisterNomadTabSpawner(const FName TabId);
};
