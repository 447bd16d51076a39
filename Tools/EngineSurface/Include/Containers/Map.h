#pragma once
// Reference: Runtime/Core/Public/Containers/Map.h (TMap)

#include "CoreTypes.h"
#include "Containers/Array.h"

#include <map>

// The engine's map, keyed by value, with its Find/FindOrAdd/Add/Remove names.
template <typename KeyType, typename ValueType>
class TMap
{
public:
	ValueType& Add(const KeyType& Key, const ValueType& Value) { return Pairs[Key] = Value; }
	ValueType& Add(const KeyType& Key) { return Pairs[Key] = ValueType(); }
	ValueType& FindOrAdd(const KeyType& Key) { return Pairs[Key]; }
	ValueType* Find(const KeyType& Key) { const auto It = Pairs.find(Key); return It == Pairs.end() ? nullptr : &It->second; }
	const ValueType* Find(const KeyType& Key) const { const auto It = Pairs.find(Key); return It == Pairs.end() ? nullptr : &It->second; }
	ValueType& FindChecked(const KeyType& Key) { ValueType* Value = Find(Key); check(Value); return *Value; }
	bool Contains(const KeyType& Key) const { return Pairs.count(Key) != 0; }
	int32 Remove(const KeyType& Key) { return static_cast<int32>(Pairs.erase(Key)); }
	int32 Num() const { return static_cast<int32>(Pairs.size()); }
	bool IsEmpty() const { return Pairs.empty(); }
	void Empty() { Pairs.clear(); }
	void Reset() { Pairs.clear(); }

	// Iteration yields pairs whose members are named Key and Value, as the engine's TPair does.
	struct FPairRef
	{
		const KeyType& Key;
		ValueType& Value;
	};
	class FIterator
	{
	public:
		explicit FIterator(typename std::map<KeyType, ValueType>::iterator InIt) : It(InIt) {}
		FPairRef operator*() const { return FPairRef{It->first, It->second}; }
		FIterator& operator++() { ++It; return *this; }
		bool operator!=(const FIterator& Other) const { return It != Other.It; }

	private:
		typename std::map<KeyType, ValueType>::iterator It;
	};
	FIterator begin() { return FIterator(Pairs.begin()); }
	FIterator end() { return FIterator(Pairs.end()); }

private:
	std::map<KeyType, ValueType> Pairs;
};
