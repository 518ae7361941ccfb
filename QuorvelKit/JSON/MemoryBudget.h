// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Export.h>

#include <cstddef>
#include <new>

namespace quorvelkit::detail {

/// Bounds the memory of the documents and models that the present thread makes while the budget
/// lives. They count what they take before they take it. What is made on a thread without a budget
/// has no bound.
class QUORVELKIT_EXPORT MemoryBudget {
 public:
  /// Thrown in place of taking memory beyond the bound.
  struct QUORVELKIT_EXPORT Exceeded : std::bad_alloc {
    const char* what() const noexcept override;
  };

  /// Takes the place of another budget of the thread until it is destroyed.
  explicit MemoryBudget(std::size_t bytes) noexcept;
  MemoryBudget(const MemoryBudget&) = delete;
  MemoryBudget& operator=(const MemoryBudget&) = delete;
  ~MemoryBudget();

  /// The bytes that the present thread may still take.
  static std::size_t rest() noexcept;
  /// Sets them to what they were once, less what has been kept since.
  static void restore(std::size_t rest, std::size_t kept) noexcept;
  static void take(std::size_t bytes);
  static void giveBack(std::size_t bytes) noexcept;

 private:
  std::size_t rest_;
  MemoryBudget* const outer_;
};

}  // namespace quorvelkit::detail
