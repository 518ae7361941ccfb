// SPDX-License-Identifier: Apache-2.0
#include "MapTestSupport.h"

#include <QuorvelKit/QVViewController.h>

namespace quorvelkit::test {

namespace {

TEST(MissingEndTest, StopsProcessWithoutAssertions) {
  testing::GTEST_FLAG(death_test_style) = "threadsafe";
  constexpr const char* message = "unexpectedly found nil while unwrapping an Optional value";
  const TestApplication application(TestApplication::Screen::none);
  const auto controller = QVViewController::make();
  EXPECT_DEATH(controller->view(), message);
  controller->setOrigin({1, 2});
  EXPECT_DEATH(controller->view(), message);
}

}  // namespace

}  // namespace quorvelkit::test
