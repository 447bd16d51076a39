#pragma once
// Reference: Editor/UnrealEd/Public/TickableEditorObject.h (FTickableEditorObject)

#include "CoreMinimal.h"
#include "Tickable.h"

// Registers itself with the editor's tick list on construction and leaves it on destruction.
class FTickableEditorObject : public FTickableObjectBase
{
public:
	FTickableEditorObject();
	virtual ~FTickableEditorObject();
};
