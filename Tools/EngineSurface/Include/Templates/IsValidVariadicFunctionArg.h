#pragma once
// Reference: Runtime/Core/Public/Templates/IsValidVariadicFunctionArg.h

#include <cstddef>
#include <type_traits>

// Only what C varargs can carry: numbers, enums, pointers. An FString passed where "%s" wants
// *String is refused at compile time, as the engine does.
template <typename T>
struct TIsValidVariadicFunctionArg
{
	using Decayed = std::decay_t<T>;
	static constexpr bool Value = std::is_arithmetic_v<Decayed> || std::is_enum_v<Decayed> || std::is_pointer_v<Decayed>
		|| std::is_same_v<Decayed, std::nullptr_t>;
};
