// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Export.h>

#include <cstddef>
#include <memory>
#include <utility>

namespace quorvelkit::detail {

/// A block for one response, allocated in advance. Each object serves one allocation.
template <class Response>
class ReservedMemory {
  // The 64 bytes are for the control block of the shared pointer.
  struct alignas(Response) alignas(std::max_align_t) Block {
    std::byte bytes[sizeof(Response) + 64];
  };

 public:
  /// An allocator for std::allocate_shared that returns the block.
  template <class T>
  struct Allocator {
    using value_type = T;
    explicit Allocator(ReservedMemory& memory) noexcept : source(&memory) {}
    template <class U>
    Allocator(const Allocator<U>& other) noexcept : source(other.source) {}
    template <class U>
    struct rebind {
      using other = Allocator<U>;
    };

    T* allocate(std::size_t) {
      static_assert(sizeof(T) <= sizeof(Block) && alignof(T) <= alignof(Block));
      return reinterpret_cast<T*>(std::exchange(source->block_, nullptr));
    }
    void deallocate(T* block, std::size_t) noexcept {
      std::allocator<Block>().deallocate(reinterpret_cast<Block*>(block), 1);
    }
    friend bool operator==(const Allocator&, const Allocator&) noexcept { return true; }

    ReservedMemory* source;
  };

  ReservedMemory() = default;
  ReservedMemory(const ReservedMemory&) = delete;
  ReservedMemory& operator=(const ReservedMemory&) = delete;
  ~ReservedMemory() {
    if (block_) std::allocator<Block>().deallocate(block_, 1);
  }

 private:
  Block* block_ = std::allocator<Block>().allocate(1);
};

}  // namespace quorvelkit::detail
