#pragma once
// Reference: Runtime/Core/Public/Templates/UnrealTemplate.h (MoveTemp, Forward, CopyTemp)

#include <type_traits>
#include <utility>

// The engine's MoveTemp refuses const and rvalue arguments at compile time; so does this one.
template <typename T>
constexpr std::remove_reference_t<T>&& MoveTemp(T&& Obj)
{
	using CastType = std::remove_reference_t<T>;
	static_assert(std::is_lvalue_reference_v<T>, "MoveTemp called on an rvalue");
	static_assert(!std::is_const_v<CastType>, "MoveTemp called on a const object");
	return static_cast<CastType&&>(Obj);
}

template <typename T>
constexpr std::remove_reference_t<T>&& MoveTempIfPossible(T&& Obj)
{
	return static_cast<std::remove_reference_t<T>&&>(Obj);
}

template <typename T>
constexpr T&& Forward(std::remove_reference_t<T>& Obj)
{
	return static_cast<T&&>(Obj);
}

template <typename T>
constexpr T&& Forward(std::remove_reference_t<T>&& Obj)
{
	return static_cast<T&&>(Obj);
}

template <typename T>
T CopyTemp(const T& Val)
{
	return Val;
}

// Marks a class that must not be copied.
class FNoncopyable
{
protected:
	FNoncopyable() = default;
	~FNoncopyable() = default;

public:
	FNoncopyable(const FNoncopyable&) = delete;
	FNoncopyable& operator=(const FNoncopyable&) = delete;
};
