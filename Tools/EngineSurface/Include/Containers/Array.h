#pragma once
// Reference: Runtime/Core/Public/Containers/Array.h (TArray)

#include "CoreTypes.h"
#include "Templates/UnrealTemplate.h"

#include <algorithm>
#include <initializer_list>
#include <vector>

// The engine's dynamic array, with its int32 sizes and its member names.
template <typename ElementType>
class TArray
{
public:
	typedef int32 SizeType;
	typedef ElementType ElementTypeAlias;

	TArray() = default;
	TArray(std::initializer_list<ElementType> Init) : Items(Init) {}
	TArray(const ElementType* Ptr, SizeType Count) : Items(Ptr, Ptr + Count) {}

	SizeType Num() const { return static_cast<SizeType>(Items.size()); }
	bool IsEmpty() const { return Items.empty(); }
	bool IsValidIndex(SizeType Index) const { return Index >= 0 && Index < Num(); }
	ElementType* GetData() { return Items.data(); }
	const ElementType* GetData() const { return Items.data(); }

	ElementType& operator[](SizeType Index) { check(IsValidIndex(Index)); return Items[static_cast<size_t>(Index)]; }
	const ElementType& operator[](SizeType Index) const { check(IsValidIndex(Index)); return Items[static_cast<size_t>(Index)]; }
	ElementType& Last() { return Items.back(); }
	const ElementType& Last() const { return Items.back(); }

	SizeType Add(const ElementType& Item) { Items.push_back(Item); return Num() - 1; }
	SizeType Add(ElementType&& Item) { Items.push_back(MoveTempIfPossible(Item)); return Num() - 1; }
	template <typename... ArgsType>
	SizeType Emplace(ArgsType&&... Args) { Items.emplace_back(Forward<ArgsType>(Args)...); return Num() - 1; }
	SizeType AddUnique(const ElementType& Item) { const SizeType Found = Find(Item); return Found != -1 ? Found : Add(Item); }
	void Append(const TArray& Other) { Items.insert(Items.end(), Other.Items.begin(), Other.Items.end()); }
	void Append(const ElementType* Ptr, SizeType Count) { Items.insert(Items.end(), Ptr, Ptr + Count); }
	SizeType AddUninitialized(SizeType Count = 1) { const SizeType First = Num(); Items.resize(Items.size() + static_cast<size_t>(Count)); return First; }
	void SetNum(SizeType NewNum) { Items.resize(static_cast<size_t>(NewNum)); }
	void Reserve(SizeType Number) { Items.reserve(static_cast<size_t>(Number)); }
	void Empty(SizeType Slack = 0) { Items.clear(); Items.shrink_to_fit(); Items.reserve(static_cast<size_t>(Slack)); }
	void Reset(SizeType NewSize = 0) { Items.clear(); Items.reserve(static_cast<size_t>(NewSize)); }
	void RemoveAt(SizeType Index) { Items.erase(Items.begin() + Index); }
	SizeType Remove(const ElementType& Item)
	{
		const auto Before = Items.size();
		Items.erase(std::remove(Items.begin(), Items.end(), Item), Items.end());
		return static_cast<SizeType>(Before - Items.size());
	}
	SizeType Find(const ElementType& Item) const
	{
		const auto It = std::find(Items.begin(), Items.end(), Item);
		return It == Items.end() ? -1 : static_cast<SizeType>(It - Items.begin());
	}
	bool Contains(const ElementType& Item) const { return Find(Item) != -1; }
	template <typename Predicate>
	const ElementType* FindByPredicate(Predicate Pred) const
	{
		const auto It = std::find_if(Items.begin(), Items.end(), Pred);
		return It == Items.end() ? nullptr : &*It;
	}

	bool operator==(const TArray& Other) const { return Items == Other.Items; }

	auto begin() { return Items.begin(); }
	auto end() { return Items.end(); }
	auto begin() const { return Items.begin(); }
	auto end() const { return Items.end(); }

private:
	std::vector<ElementType> Items;
};
