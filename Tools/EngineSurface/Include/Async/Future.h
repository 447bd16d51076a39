#pragma once
// Reference: Runtime/Core/Public/Async/Future.h (TPromise, TFuture)

#include "CoreMinimal.h"

#include <future>

template <typename ResultType>
class TFuture
{
public:
	TFuture() = default;
	explicit TFuture(std::shared_future<ResultType> InFuture) : Future(InFuture) {}
	const ResultType& Get() const { return Future.get(); }
	bool IsReady() const { return Future.wait_for(std::chrono::seconds(0)) == std::future_status::ready; }
	bool IsValid() const { return Future.valid(); }

private:
	std::shared_future<ResultType> Future;
};

template <typename ResultType>
class TPromise
{
public:
	TFuture<ResultType> GetFuture() { return TFuture<ResultType>(Promise.get_future().share()); }
	void SetValue(const ResultType& Result) { Promise.set_value(Result); }

private:
	std::promise<ResultType> Promise;
};
