// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/QVCallControl.h>

#include <utility>

namespace quorvelkit::detail {

namespace {

thread_local std::shared_ptr<CallControl> currentControl;

}  // namespace

CallControl::Scope::Scope(std::shared_ptr<CallControl> control)
    : previous_(std::exchange(currentControl, std::move(control))) {}

CallControl::Scope::~Scope() { currentControl = std::move(previous_); }

std::shared_ptr<CallControl> CallControl::takeCurrent() {
  return std::exchange(currentControl, nullptr);
}

CallControl::~CallControl() = default;

}  // namespace quorvelkit::detail
