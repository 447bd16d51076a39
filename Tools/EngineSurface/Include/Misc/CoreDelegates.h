#pragma once
// Reference: Runtime/Core/Public/Misc/CoreDelegates.h (FCoreDelegates)

#include "CoreMinimal.h"

class FCoreDelegates
{
public:
	static FSimpleMulticastDelegate OnPreExit;
	static FSimpleMulticastDelegate OnEnginePreExit;
	static FSimpleMulticastDelegate OnPostEngineInit;
};
