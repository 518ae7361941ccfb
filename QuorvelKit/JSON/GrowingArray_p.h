// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/JSON/MemoryBudget.h>
#include <QuorvelPlatform/MemoryPages_p.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>

namespace quorvelkit::detail {

// A growing array of trivially copyable elements. It grows by realloc, which moves a large block
// without copying it. Its memory counts against the memory budget of the thread while it grows.
template <class T>
class GrowingArray {
 public:
  T* data() const noexcept { return data_.get(); }
  std::size_t size() const noexcept { return size_; }
  T& operator[](std::size_t i) const noexcept { return data_[i]; }

  std::size_t unusedCapacity() const noexcept { return capacity_ - size_; }
  // The memory of the array, in bytes.
  std::size_t capacityBytes() const noexcept { return capacity_ * sizeof(T); }

  void reserve(std::size_t capacity) {
    if (capacity > capacity_) setCapacity(capacity);
  }
  // Makes room for more elements. Doubles the size if the array has to grow, but takes no more than
  // a quarter of the remaining memory budget beyond what is needed.
  void reserveMore(std::size_t count) {
    if (unusedCapacity() >= count) return;
    const std::size_t limit = capacity_ + MemoryBudget::remaining() / sizeof(T) / 4;
    setCapacity(std::max(size_ + count, std::min(size_ * 2, limit)));
  }
  void append(const T* elements, std::size_t count) {
    if (count == 0) return;
    reserveMore(count);
    std::memcpy(data_.get() + size_, elements, count * sizeof(T));
    size_ += count;
  }
  void push(const T& element) {
    if (size_ == capacity_) reserveMore(1);
    data_[size_++] = element;
  }
  // Removes the elements at the end; keeps the memory.
  void shrinkTo(std::size_t size) noexcept { size_ = size; }
  // Frees unused memory, unless it is less than a thirty-second of the array: the C library keeps a
  // freed large block for the next document only if the block has its original size.
  void freeUnusedCapacity() {
    if (unusedCapacity() > size_ / 32) setCapacity(size_);
  }

 private:
  // realloc moves large blocks page by page; new would copy them.
  // NOLINTBEGIN(cppcoreguidelines-no-malloc,cppcoreguidelines-owning-memory)
  struct Free {
    void operator()(T* data) const noexcept { std::free(data); }
  };

  void setCapacity(std::size_t capacity) {
    if (capacity > capacity_) MemoryBudget::consume((capacity - capacity_) * sizeof(T));
    if (capacity == 0) {
      data_.reset();
    } else {
      void* moved = std::realloc(data_.get(), capacity * sizeof(T));
      if (!moved) throw std::bad_alloc();
      static_cast<void>(data_.release());
      data_.reset(static_cast<T*>(moved));
      preferLargePages(moved, capacity * sizeof(T));
    }
    capacity_ = capacity;
  }
  // NOLINTEND(cppcoreguidelines-no-malloc,cppcoreguidelines-owning-memory)

  std::unique_ptr<T[], Free> data_;
  std::size_t size_ = 0;
  std::size_t capacity_ = 0;
};

}  // namespace quorvelkit::detail
