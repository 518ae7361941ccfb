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
  std::string memory = size >= minimumSize ? takeKept(size) : std::string();
  if (memory.capacity() < size) {
    memory.reserve(size);
    if (size >= minimumSize) detail::populatePages(memory.data(), memory.capacity());
  }
  return memory;
}

// Returns a kept block of about this size. If there is none, another block makes room for one, and
// an empty string is returned.
std::string BodyMemory::takeKept(std::size_t size) {
  std::string taken;
  const std::unique_lock lock(mutex_, std::try_to_lock);
  if (!lock) return taken;
  isOpen_ = true;
  lastUse_ = Clock::now();
  if (count_ == 0) return taken;
  const auto fits = [&](const std::string& each) {
    return each.capacity() >= size && each.capacity() - size <= size / 4;
  };
  std::size_t index = 0;
  while (index < count_ && !fits(kept_[index]))
    ++index;
  const bool isFound = index < count_;
  std::swap(kept_[isFound ? index : 0], kept_[--count_]);
  std::swap(taken, kept_[count_]);
  keptSize_ -= taken.capacity();
  return isFound ? std::move(taken) : std::string();
}

Data BodyMemory::makeData(std::string bytes) {
  if (bytes.capacity() < minimumSize) return Data(std::move(bytes));
  const auto owner = std::make_shared<const Owner>(std::move(bytes));
  return Data(std::shared_ptr<const std::string>(owner, &owner->bytes));
}

void BodyMemory::keep(std::string bytes) noexcept {
  constexpr std::size_t maximumSize = 2 << 20, maximumKeptSize = 16 << 20;
  const std::size_t size = bytes.capacity();
  if (size > maximumSize) return;
  bytes.clear();
  const std::unique_lock lock(mutex_, std::try_to_lock);
  if (!lock || !isOpen_ || count_ == kept_.size() || keptSize_ + size > maximumKeptSize) return;
  std::swap(kept_[count_++], bytes);
  keptSize_ += size;
}

void BodyMemory::freeIfIdle(Clock::time_point now) {
  Blocks freed;  // Destroyed after the mutex is unlocked.
  const std::unique_lock lock(mutex_, std::try_to_lock);
  if (!lock || !isOpen_ || now - lastUse_ < maximumIdleTime) return;
  std::swap(freed, kept_);
  count_ = 0;
  keptSize_ = 0;
  isOpen_ = false;
}

}  // namespace quorvelkit
