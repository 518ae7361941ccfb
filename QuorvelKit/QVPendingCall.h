// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/JSON/MemoryBudget.h>
#include <QuorvelKit/QVBaseResponse.h>
#include <QuorvelKit/QVCallControl.h>
#include <QuorvelKit/QVReservedMemory.h>
#include <QuorvelPlatform/Export.h>
#include <QuorvelPlatform/FatalError.h>
#include <QuorvelPlatform/MainQueue.h>
#include <QuorvelPlatform/URLError.h>
#include <QuorvelPlatform/URLSessionDataTask.h>

#include <atomic>
#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>
#include <new>
#include <optional>
#include <utility>

namespace quorvelkit {

template <class Response>
struct QVCallSteps;

// The implementation of QVBaseService.
namespace detail {

/// Returns URLSessionConfiguration::maximumDocumentSize of the session of all calls.
QUORVELKIT_EXPORT std::size_t maximumDocumentSize();
/// Returns the error of a call that ran out of memory or exceeded its memory budget. Succeeds also
/// if no memory is left.
QUORVELKIT_EXPORT Error memoryError(const std::bad_alloc& thrown, const URLSessionDataTask* task);

/// The state of one call until its response is delivered.
template <class Response>
class PendingCall {
 public:
  /// The objects that may own objects of the application. They move to the main queue together, so
  /// that none of them is destroyed on a thread of the session.
  struct ApplicationObjects {
    std::shared_ptr<QVBaseRequest> request;
    std::function<void(std::shared_ptr<Response>)> completionHandler;
    QVCallSteps<Response> steps;
    std::shared_ptr<CallControl> control;  // Null unless a QVCall started this call.
    std::shared_ptr<Response> response = nullptr;
  };

  explicit PendingCall(ApplicationObjects given)
      : objects(std::make_shared<ApplicationObjects>(std::move(given))),
        delivery_([moved = objects] { moved->completionHandler(std::move(moved->response)); }) {
    static_cast<void>(URLError::outOfMemory());  // Created while there is memory.
    if (objects->control) objects->control->didStart(objects->request);
  }

  /// Null after the end of the call.
  std::shared_ptr<ApplicationObjects> objects;

  /// Stops the process if it is called twice.
  void proceedOnce() {
    if (hasProceeded_.exchange(true)) fatalError("QVCallSteps::prepare called proceed twice");
  }
  std::shared_ptr<URLSessionDataTask> currentTask() {
    const std::lock_guard lock(mutex_);
    return task_;
  }
  void setTask(const std::shared_ptr<URLSessionDataTask>& started) {
    {
      const std::lock_guard lock(mutex_);
      task_ = started;
    }
    if (objects->control) objects->control->didMakeTask(started);
  }
  bool isInterrupted() const { return objects->control && objects->control->isInterrupted(); }

  /// Ends the call without running its completion handler.
  void drop() {
    objects.reset();
    delivery_ = {};
  }
  /// Ends the call with the result of its data task. Called on the callback thread.
  void complete(std::optional<Data> data, std::shared_ptr<const URLResponse> urlResponse,
                std::optional<Error> error) {
    try {
      const MemoryBudget budget(maximumDocumentSize());
      objects->response =
          makeResponse<Response>(std::move(data), objects->request, std::move(urlResponse),
                                 std::move(error), currentTask());
      if (objects->steps.inspectResponse) objects->steps.inspectResponse(objects->response);
    } catch (const std::bad_alloc& thrown) {
      return fail(thrown);
    }
    deliver();
  }
  /// Ends the call with a response that contains only an error. Allocates no memory itself. If a
  /// step of the application throws std::bad_alloc, the rest of that step is skipped.
  void fail(const std::bad_alloc& thrown) {
    const auto task = currentTask();
    objects->response = std::allocate_shared<Response>(
        typename ReservedMemory<Response>::template Allocator<Response>(reserved_),
        QVBaseResponse::Key(), std::nullopt, objects->request, nullptr,
        memoryError(thrown, task.get()), task);
    ignoreBadAlloc([&] { static_cast<QVBaseResponse&>(*objects->response).process(); });
    if (objects->steps.inspectResponse)
      ignoreBadAlloc([&] { objects->steps.inspectResponse(objects->response); });
    deliver();
  }

 private:
  template <class Step>
  static void ignoreBadAlloc(const Step& step) {
    try {
      step();
    } catch (const std::bad_alloc&) {
    }
  }
  void deliver() {
    objects.reset();  // `delivery_` owns the last reference.
    MainQueue::main().async(std::move(delivery_));
  }

  // Allocated in advance: a call can end also if no memory is left.
  MainQueue::Prepared delivery_;
  ReservedMemory<Response> reserved_;
  std::atomic<bool> hasProceeded_ = false;
  std::mutex mutex_;
  std::shared_ptr<URLSessionDataTask> task_;
};

}  // namespace detail
}  // namespace quorvelkit
