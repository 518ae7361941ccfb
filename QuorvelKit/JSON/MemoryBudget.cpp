// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/JSON/MemoryBudget.h>

#include <cstdint>

namespace quorvelkit::detail {

namespace {
thread_local MemoryBudget* current = nullptr;
}  // namespace

const char* MemoryBudget::Exceeded::what() const noexcept {
  return "the document and its models would take more memory than they may";
}

MemoryBudget::MemoryBudget(std::size_t bytes) noexcept : rest_(bytes), outer_(current) {
  current = this;
}
MemoryBudget::~MemoryBudget() { current = outer_; }

std::size_t MemoryBudget::rest() noexcept { return current ? current->rest_ : SIZE_MAX; }

void MemoryBudget::restore(std::size_t rest, std::size_t kept) noexcept {
  if (current) current->rest_ = rest - kept;
}

void MemoryBudget::take(std::size_t bytes) {
  if (!current) return;
  if (bytes > current->rest_) throw Exceeded();
  current->rest_ -= bytes;
}

void MemoryBudget::giveBack(std::size_t bytes) noexcept {
  if (current) current->rest_ += bytes;
}

}  // namespace quorvelkit::detail
