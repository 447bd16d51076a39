#pragma once
// Reference: Runtime/Core/Public/Templates/IsArrayOrRefOfTypeByPredicate.h

#include <type_traits>

// True for a literal or array of exactly CharType: the engine's formatting functions take TEXT("...") only.
template <typename ArrType, typename CharType>
struct TIsArrayOrRefOfType
{
	using Plain = std::remove_cv_t<std::remove_reference_t<ArrType>>;
	static constexpr bool Value = std::is_array_v<Plain> && std::is_same_v<std::remove_cv_t<std::remove_extent_t<Plain>>, CharType>;
};
