#pragma once
// Reference: Editor/WorkspaceMenuStructure/Public/WorkspaceMenuStructure.h (IWorkspaceMenuStructure)

#include "CoreMinimal.h"
#include "Framework/Docking/WorkspaceItem.h"

class IWorkspaceMenuStructure
{
public:
	virtual ~IWorkspaceMenuStructure() {}
	virtual TSharedRef<FWorkspaceItem> GetStructureRoot() const = 0;
	virtual TSharedRef<FWorkspaceItem> GetToolsStructureRoot() const = 0;
	virtual TSharedRef<FWorkspaceItem> GetLevelEditorCategory() const = 0;
	virtual TSharedRef<FWorkspaceItem> GetToolsCategory() const = 0;
	virtual TSharedRef<FWorkspaceItem> GetDeveloperToolsMiscCategory() const = 0;
};
