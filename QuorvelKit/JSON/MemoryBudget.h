// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Export.h>

#include <cstddef>
#include <new>

namespace quorvelkit::detail {

/// Limits the memory of the documents and models that the current thread creates during the
/// lifetime of the budget. They consume from the budget before they allocate. Threads without a
/// budget have no limit.
class QUORVELKIT_EXPORT MemoryBudget {
 public:
  /// Thrown instead of an allocation that exceeds the budget.
  struct QUORVELKIT_EXPORT Exceeded : std::bad_alloc {
    const char* what() const noexcept override;
  };

  /// Replaces the current budget of the thread, if any, until this one is destroyed.
  explicit MemoryBudget(std::size_t bytes) noexcept;
  MemoryBudget(const MemoryBudget&) = delete;
  MemoryBudget& operator=(const MemoryBudget&) = delete;
  ~MemoryBudget();

  /// The bytes that the current thread may still allocate.
  static std::size_t remaining() noexcept;
  /// Sets remaining() to an earlier value less the bytes that are still allocated.
  static void restore(std::size_t earlier, std::size_t allocated) noexcept;
  /// Throws Exceeded if fewer bytes remain.
  static void consume(std::size_t bytes);
  static void release(std::size_t bytes) noexcept;

 private:
  std::size_t remaining_;
  MemoryBudget* const outer_;
};

}  // namespace quorvelkit::detail
