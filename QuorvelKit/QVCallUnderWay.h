// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/JSON/MemoryBudget.h>
#include <QuorvelKit/QVBaseResponse.h>
#include <QuorvelKit/QVSpareMemory.h>
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
struct QVCallDifferences;

// What QVBaseService is made of; no interface of the library.
namespace detail {

/// URLSessionConfiguration::maximumDocumentSize of the session of all calls.
QUORVELKIT_EXPORT std::size_t maximumDocumentSize();
/// The error of a call that threw for want of memory, or for more than it may have. Takes none
/// that it cannot do without.
QUORVELKIT_EXPORT Error memoryError(const std::bad_alloc& thrown, const URLSessionDataTask* task);

/// A call from its beginning to its delivery. All that the application gave stands in `work`, and
/// moves as a whole to the main queue: it would be wrong to let a part of it die on the session's
/// thread. What stays behind is an empty shell.
template <class Response>
class CallUnderWay {
 public:
  struct Work {
    std::shared_ptr<QVBaseRequest> request;
    std::function<void(std::shared_ptr<Response>)> completionHandler;
    QVCallDifferences<Response> differences;
    std::shared_ptr<Response> response = nullptr;
  };

  explicit CallUnderWay(Work given)
      : work(std::make_shared<Work>(std::move(given))),
        delivery_([own = work] { own->completionHandler(std::move(own->response)); }) {}

  std::shared_ptr<Work> work;

  void goesOnOnce() {
    if (wentOn_.exchange(true)) fatalError("QVCallDifferences::before went on for a second time");
  }
  std::shared_ptr<URLSessionDataTask> currentTask() {
    const std::lock_guard lock(mutex_);
    return task_;
  }
  void setTask(std::shared_ptr<URLSessionDataTask> started) {
    const std::lock_guard lock(mutex_);
    task_ = std::move(started);
  }

  /// Ends the call without a word.
  void drop() {
    work.reset();
    delivery_ = {};
  }
  /// Takes the outcome on the session's callback thread.
  void complete(std::optional<Data> data, std::shared_ptr<const URLResponse> urlResponse,
                std::optional<Error> error) {
    try {
      const MemoryBudget budget(maximumDocumentSize());
      work->response = makeResponse<Response>(
          std::move(data), work->request, std::move(urlResponse), std::move(error), currentTask());
      if (work->differences.after) work->differences.after(work->response);
    } catch (const std::bad_alloc& thrown) {
      return fail(thrown);
    }
    deliver();
  }
  /// Delivers an error and nothing else. Takes no memory but what the application's own steps
  /// take, and leaves out what they cannot do.
  void fail(const std::bad_alloc& thrown) {
    const auto task = currentTask();
    work->response = std::allocate_shared<Response>(
        typename SpareMemory<Response>::template Allocator<Response>(spare_), QVBaseResponse::Key(),
        std::nullopt, work->request, nullptr, memoryError(thrown, task.get()), task);
    asFarAsMemoryGoes([&] { static_cast<QVBaseResponse&>(*work->response).process(); });
    if (work->differences.after)
      asFarAsMemoryGoes([&] { work->differences.after(work->response); });
    deliver();
  }

 private:
  template <class Step>
  static void asFarAsMemoryGoes(const Step& step) {
    try {
      step();
    } catch (const std::bad_alloc&) {
    }
  }
  void deliver() {
    work.reset();  // What is delivered holds it: here it must not be the last to go.
    MainQueue::main().async(std::move(delivery_));
  }

  // Taken beforehand, so that a call ends also when there is no memory left.
  MainQueue::Prepared delivery_;
  SpareMemory<Response> spare_;
  std::atomic<bool> wentOn_ = false;
  std::mutex mutex_;
  std::shared_ptr<URLSessionDataTask> task_;
};

}  // namespace detail
}  // namespace quorvelkit
