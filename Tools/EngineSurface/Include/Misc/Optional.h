#pragma once
// Reference: Runtime/Core/Public/Misc/Optional.h (TOptional)

#include "CoreTypes.h"

#include <optional>

template <typename OptionalType>
class TOptional
{
public:
	TOptional() = default;
	TOptional(const OptionalType& InValue) : Value(InValue) {}
	TOptional(OptionalType&& InValue) : Value(static_cast<OptionalType&&>(InValue)) {}

	bool IsSet() const { return Value.has_value(); }
	explicit operator bool() const { return IsSet(); }
	OptionalType& GetValue() { check(IsSet()); return *Value; }
	const OptionalType& GetValue() const { check(IsSet()); return *Value; }
	const OptionalType& Get(const OptionalType& DefaultValue) const { return IsSet() ? *Value : DefaultValue; }
	OptionalType* GetPtrOrNull() { return IsSet() ? &*Value : nullptr; }
	const OptionalType* GetPtrOrNull() const { return IsSet() ? &*Value : nullptr; }
	void Reset() { Value.reset(); }
	template <typename... ArgsType>
	OptionalType& Emplace(ArgsType&&... Args) { return Value.emplace(static_cast<ArgsType&&>(Args)...); }
	OptionalType* operator->() { return &GetValue(); }
	const OptionalType* operator->() const { return &GetValue(); }
	OptionalType& operator*() { return GetValue(); }
	const OptionalType& operator*() const { return GetValue(); }

private:
	std::optional<OptionalType> Value;
};
