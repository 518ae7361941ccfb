// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/JSON/MemoryBudget.h>

#include <cstdint>

namespace quorvelkit::detail {

namespace {
thread_local MemoryBudget* current = nullptr;
}  // namespace

const char* MemoryBudget::Exceeded::what() const noexcept {
  return "the document and its models exceed the memory budget";
}

MemoryBudget::MemoryBudget(std::size_t bytes) noexcept : remaining_(bytes), outer_(current) {
  current = this;
}
MemoryBudget::~MemoryBudget() { current = outer_; }

std::size_t MemoryBudget::remaining() noexcept { return current ? current->remaining_ : SIZE_MAX; }

void MemoryBudget::restore(std::size_t earlier, std::size_t allocated) noexcept {
  if (current) current->remaining_ = earlier - allocated;
}

void MemoryBudget::consume(std::size_t bytes) {
  if (!current) return;
  if (bytes > current->remaining_) throw Exceeded();
  current->remaining_ -= bytes;
}

void MemoryBudget::release(std::size_t bytes) noexcept {
  if (current) current->remaining_ += bytes;
}

}  // namespace quorvelkit::detail
