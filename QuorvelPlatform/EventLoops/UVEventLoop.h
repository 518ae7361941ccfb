// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/MainQueue.h>
#include <QuorvelPlatform/WakeUpHook.h>

#include <uv.h>

#include <memory>
#include <system_error>

namespace quorvelkit {

/// Runs MainQueue::main() in a loop of libuv.
///
///  - Threads: construct and destroy it on the thread of the loop.
///  - Lifetime: destroy it before the loop is closed, like each handle of libuv. The destructor
///    closes the handle; the loop frees its memory in its next iteration, so run the loop once more
///    before uv_loop_close(). It may be destroyed inside a block, and with blocks in the queue:
///    they stay there. If the application has closed all handles with uv_walk(), the memory of the
///    handle is never freed, because it may still be in use.
///  - It does not keep uv_run() running, unless the handle is referenced.
///  - Exceptions: libuv does not support them. A block that throws ends the process
///    (std::terminate). The constructor throws std::system_error if the process has no more file
///    descriptors.
///  - Cost: no memory, and one or two wake-ups of the loop for all blocks that are waiting.
class UVEventLoop {
 public:
  /// A referenced handle keeps uv_run() running until this object is destroyed.
  enum class Handle { unreferenced, referenced };

  /// Uses a loop.
  explicit UVEventLoop(uv_loop_t* loop, Handle handle = Handle::unreferenced)
      : async_(makeAsync(loop)), hook_([async = async_.get()] { uv_async_send(async); }) {
    if (handle == Handle::unreferenced) uv_unref(asHandle(async_.get()));
  }
  UVEventLoop(const UVEventLoop&) = delete;
  UVEventLoop& operator=(const UVEventLoop&) = delete;

 private:
  static uv_handle_t* asHandle(uv_async_t* async) { return reinterpret_cast<uv_handle_t*>(async); }
  static uv_async_t* asAsync(uv_handle_t* handle) { return reinterpret_cast<uv_async_t*>(handle); }

  struct Close {
    void operator()(uv_async_t* async) const {
      if (uv_is_closing(asHandle(async)) != 0) return;
      uv_close(asHandle(async),
               [](uv_handle_t* closed) { std::unique_ptr<uv_async_t>(asAsync(closed)).reset(); });
    }
  };
  using Async = std::unique_ptr<uv_async_t, Close>;

  static Async makeAsync(uv_loop_t* loop) {
    auto async = std::make_unique<uv_async_t>();
    const int failure = uv_async_init(loop, async.get(),
                                      [](uv_async_t*) noexcept { MainQueue::main().runPending(); });
    if (failure != 0) throw std::system_error(-failure, std::generic_category(), "uv_async_init");
    return Async(async.release());
  }

  Async async_;
  WakeUpHook hook_;
};

}  // namespace quorvelkit
