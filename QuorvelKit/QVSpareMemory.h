// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <memory>
#include <utility>

namespace quorvelkit::detail {

/// Memory for one response, taken beforehand.
template <class Response>
class SpareMemory {
  // With room for what shared pointers add.
  struct alignas(Response) alignas(std::max_align_t) Block {
    std::byte bytes[sizeof(Response) + 64];
  };

 public:
  template <class T>
  struct Allocator {
    using value_type = T;
    explicit Allocator(SpareMemory& spare) noexcept : from(&spare) {}
    template <class U>
    Allocator(const Allocator<U>& other) noexcept : from(other.from) {}
    template <class U>
    struct rebind {
      using other = Allocator<U>;
    };

    T* allocate(std::size_t) {
      static_assert(sizeof(T) <= sizeof(Block) && alignof(T) <= alignof(Block));
      return reinterpret_cast<T*>(std::exchange(from->block_, nullptr));
    }
    void deallocate(T* block, std::size_t) noexcept {
      std::allocator<Block>().deallocate(reinterpret_cast<Block*>(block), 1);
    }
    friend bool operator==(const Allocator&, const Allocator&) noexcept { return true; }

    SpareMemory* from;
  };

  SpareMemory() = default;
  SpareMemory(const SpareMemory&) = delete;
  SpareMemory& operator=(const SpareMemory&) = delete;
  ~SpareMemory() {
    if (block_) std::allocator<Block>().deallocate(block_, 1);
  }

 private:
  Block* block_ = std::allocator<Block>().allocate(1);
};

}  // namespace quorvelkit::detail
