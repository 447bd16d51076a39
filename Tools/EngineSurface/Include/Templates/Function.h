#pragma once
// Reference: Runtime/Core/Public/Templates/Function.h (TFunction, TUniqueFunction)

#include "CoreTypes.h"

#include <functional>

template <typename FuncType> class TFunction;

template <typename Ret, typename... ParamTypes>
class TFunction<Ret(ParamTypes...)>
{
public:
	TFunction() = default;
	TFunction(std::nullptr_t) {}
	template <typename FunctorType, typename = std::enable_if_t<!std::is_same_v<std::decay_t<FunctorType>, TFunction>>>
	TFunction(FunctorType&& InFunc) : Callable(static_cast<FunctorType&&>(InFunc)) {}

	Ret operator()(ParamTypes... Params) const { return Callable(static_cast<ParamTypes&&>(Params)...); }
	explicit operator bool() const { return static_cast<bool>(Callable); }
	bool IsSet() const { return static_cast<bool>(Callable); }
	void Reset() { Callable = nullptr; }

private:
	std::function<Ret(ParamTypes...)> Callable;
};

template <typename FuncType>
using TUniqueFunction = TFunction<FuncType>;
