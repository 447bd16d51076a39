#pragma once
// Reference: Editor/WorkspaceMenuStructure/Public/WorkspaceMenuStructureModule.h (WorkspaceMenu::GetMenuStructure)

#include "CoreMinimal.h"
#include "Modules/ModuleInterface.h"
#include "WorkspaceMenuStructure.h"

class IWorkspaceMenuStructureModule : public IModuleInterface
{
public:
	virtual const IWorkspaceMenuStructure& GetWorkspaceMenuStructure() const = 0;
};

namespace WorkspaceMenu
{
const IWorkspaceMenuStructure& GetMenuStructure();
}
