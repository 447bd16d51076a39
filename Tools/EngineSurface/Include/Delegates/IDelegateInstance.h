#pragma once
// Reference: Runtime/Core/Public/Delegates/IDelegateInstance.h (FDelegateHandle)

#include "CoreTypes.h"

class FDelegateHandle
{
public:
	FDelegateHandle() = default;
	bool IsValid() const { return Id != 0; }
	void Reset() { Id = 0; }
	bool operator==(const FDelegateHandle& Other) const { return Id == Other.Id; }
	bool operator!=(const FDelegateHandle& Other) const { return Id != Other.Id; }

	static FDelegateHandle MakeNew()
	{
		static uint64 NextId = 0;
		FDelegateHandle Handle;
		Handle.Id = ++NextId;
		return Handle;
	}

private:
	uint64 Id = 0;
};
