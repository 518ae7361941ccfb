// SPDX-License-Identifier: Apache-2.0
#include <QuorvelPlatform/BodyMemory_p.h>
#include <QuorvelPlatform/MemoryPages_p.h>
#include <QuorvelPlatform/NeverDestroyed_p.h>

#include <memory>
#include <utility>

namespace quorvelkit {

// The bytes of a Data value.
struct BodyMemory::Owner {
  explicit Owner(std::string&& from) noexcept : bytes(std::move(from)) {}
  Owner(const Owner&) = delete;
  Owner& operator=(const Owner&) = delete;
  ~Owner() { shared().keep(std::move(bytes)); }

  std::string bytes;
};

BodyMemory& BodyMemory::shared() {
  static const NeverDestroyed<BodyMemory> instance;
  return *instance;
}

std::string BodyMemory::take(std::size_t size) {
  std::string memory;
  if (size >= minimumSize) {
    const std::unique_lock lock(mutex_, std::try_to_lock);
    if (lock) {
      isOpen_ = true;
      lastUse_ = Clock::now();
      // A much larger block would be wasted on this body.
      const auto fits = [&](const std::string& each) {
        return each.capacity() >= size && each.capacity() / 2 <= size;
      };
      std::size_t found = 0;
      while (found < count_ && !fits(kept_[found]))
        ++found;
      if (found < count_) {
        std::swap(kept_[found], kept_[--count_]);
        std::swap(memory, kept_[count_]);
        keptSize_ -= memory.capacity();
      }
    }
  }
  if (memory.capacity() < size) {
    memory.reserve(size);
    if (size >= minimumSize) detail::populatePages(memory.data(), memory.capacity());
  }
  return memory;
}

Data BodyMemory::makeData(std::string bytes) {
  if (bytes.capacity() < minimumSize) return Data(std::move(bytes));
  const auto owner = std::make_shared<const Owner>(std::move(bytes));
  return Data(std::shared_ptr<const std::string>(owner, &owner->bytes));
}

void BodyMemory::keep(std::string bytes) noexcept {
  constexpr std::size_t maximumSize = 4 << 20, maximumKeptSize = 16 << 20;
  const std::size_t size = bytes.capacity();
  if (size > maximumSize) return;
  bytes.clear();
  const std::unique_lock lock(mutex_, std::try_to_lock);
  if (!lock || !isOpen_ || count_ == kept_.size() || keptSize_ + size > maximumKeptSize) return;
  std::swap(kept_[count_++], bytes);
  keptSize_ += size;
}

bool BodyMemory::freeIfIdle(Clock::time_point now) {
  const std::unique_lock lock(mutex_, std::try_to_lock);
  if (!lock) return false;
  if (!isOpen_) return true;
  if (now - lastUse_ < maximumIdleTime) return false;
  for (std::string& each : kept_)
    std::string().swap(each);
  count_ = 0;
  keptSize_ = 0;
  isOpen_ = false;
  return true;
}

}  // namespace quorvelkit
