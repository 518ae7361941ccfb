// SPDX-License-Identifier: Apache-2.0
#include "tests/loops/UVLoop.h"

#include <thread>

namespace quorvelkit::test {
namespace {

TEST(UVHandleTest, KeepsTheLoopRunningOnlyIfReferenced) {
  uv_loop_t loop;
  ASSERT_EQ(uv_loop_init(&loop), 0);
  int ran = 0;
  {
    const UVEventLoop unreferenced(&loop);
    EXPECT_EQ(uv_run(&loop, UV_RUN_DEFAULT), 0);  // Returns, although nothing stops it.
  }
  auto referenced = std::make_unique<UVEventLoop>(&loop, UVEventLoop::Handle::referenced);
  std::thread([&] {
    MainQueue::main().async([&] {
      ++ran;
      referenced.reset();
    });
  }).join();
  EXPECT_EQ(uv_run(&loop, UV_RUN_DEFAULT), 0);
  EXPECT_EQ(ran, 1);
  EXPECT_EQ(uv_loop_close(&loop), 0);
}

TEST(UVHandleTest, HandleMayBeClosedByTheApplication) {
  uv_loop_t loop;
  ASSERT_EQ(uv_loop_init(&loop), 0);
  std::unique_ptr<uv_async_t> closed;  // The adapter does not free it.
  {
    const UVEventLoop adapter(&loop);
    const auto close = [](uv_handle_t* handle, void* given) {
      static_cast<decltype(closed)*>(given)->reset(reinterpret_cast<uv_async_t*>(handle));
      uv_close(handle, nullptr);
    };
    uv_walk(&loop, close, &closed);
  }
  EXPECT_EQ(uv_run(&loop, UV_RUN_DEFAULT), 0);
  EXPECT_EQ(uv_loop_close(&loop), 0);
}

}  // namespace
}  // namespace quorvelkit::test
