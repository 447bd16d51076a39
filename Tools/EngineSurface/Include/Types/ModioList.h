#pragma once
// Reference: modio-ue Source/Modio/Public/Types/ModioList.h (FModioList)

#include "CoreMinimal.h"

// The base of the plug-in's result lists.
template <template <typename...> class ContainerType, typename ValueType>
struct FModioList
{
	using ListType = ContainerType<ValueType>;

	const ListType& GetRawList() const { return InternalList; }

	ListType InternalList;
};
