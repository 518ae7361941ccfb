// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Export.h>

#include <bit>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quorvelkit {

namespace detail {
/// Returns a hash that is seeded with a random number of this process. A sender of data cannot
/// construct keys that collide. The value differs from process to process. Thread-safe.
QUORVELKIT_EXPORT std::uint64_t seededHash(std::string_view text) noexcept;
}  // namespace detail

/// A map from texts to values that keeps the insertion order of its keys. Look-up, insertion and
/// replacement take constant time, removal takes linear time. Maps of up to 16 members are searched
/// linearly and have no hash table.
template <class T>
class OrderedMap {
 public:
  /// The types of pairs and iterators.
  using value_type = std::pair<std::string, T>;
  using const_iterator = typename std::vector<value_type>::const_iterator;

  /// An empty map.
  OrderedMap() = default;
  /// Of pairs with the same key, the last one sets the value.
  OrderedMap(std::initializer_list<value_type> pairs) {
    reserve(pairs.size());
    for (const value_type& pair : pairs)
      set(pair.first, pair.second);
  }

  /// The number of members.
  std::size_t size() const noexcept { return pairs_.size(); }
  bool empty() const noexcept { return pairs_.empty(); }
  /// Iterators over the pairs in insertion order. Valid until the map changes.
  const_iterator begin() const noexcept { return pairs_.begin(); }
  const_iterator end() const noexcept { return pairs_.end(); }
  /// The pair at a position in insertion order; the position must be less than size().
  const value_type& at(std::size_t position) const { return pairs_[position]; }
  T& valueAt(std::size_t position) { return pairs_[position].second; }
  /// Allocates memory for a number of members.
  void reserve(std::size_t count) { pairs_.reserve(count); }

  /// Returns the value of a key, or null if there is none. Valid until the map changes.
  const T* find(std::string_view key) const noexcept {
    const std::size_t position = positionOf(key);
    return position == npos ? nullptr : &pairs_[position].second;
  }
  T* find(std::string_view key) noexcept {
    const std::size_t position = positionOf(key);
    return position == npos ? nullptr : &pairs_[position].second;
  }
  /// Returns true if the map contains the key.
  bool contains(std::string_view key) const noexcept { return positionOf(key) != npos; }

  /// Replaces the value of a key in its position, or adds the key at the end.
  void set(std::string_view key, T value) {
    if (T* present = find(key)) {
      *present = std::move(value);
    } else {
      pairs_.emplace_back(std::string(key), std::move(value));
      indexLast();
    }
  }
  /// Returns the value of a key; adds the key at the end if there is none.
  T& operator[](std::string_view key) {
    if (T* present = find(key)) return *present;
    pairs_.emplace_back(std::string(key), T());
    indexLast();
    return pairs_.back().second;
  }

  /// Removes a key. Returns false if there was none.
  bool erase(std::string_view key) {
    const std::size_t position = positionOf(key);
    if (position == npos) return false;
    pairs_.erase(pairs_.begin() + static_cast<std::ptrdiff_t>(position));
    if (!slots_.empty()) rebuildSlots();
    return true;
  }

  /// The order of the members does not matter.
  friend bool operator==(const OrderedMap& a, const OrderedMap& b) {
    if (a.size() != b.size()) return false;
    for (const value_type& pair : a) {
      const T* other = b.find(pair.first);
      if (!other || !(pair.second == *other)) return false;
    }
    return true;
  }

 private:
  static constexpr std::size_t npos = static_cast<std::size_t>(-1);
  static constexpr std::size_t maximumLinearSize = 16;

  std::size_t positionOf(std::string_view key) const noexcept {
    if (slots_.empty()) {
      for (std::size_t i = 0; i < pairs_.size(); ++i) {
        if (pairs_[i].first == key) return i;
      }
      return npos;
    }
    for (std::size_t slot = firstSlot(key); slots_[slot] != 0; slot = nextSlot(slot)) {
      if (pairs_[slots_[slot] - 1].first == key) return slots_[slot] - 1;
    }
    return npos;
  }

  void indexLast() {
    if (pairs_.size() <= maximumLinearSize) return;
    if (pairs_.size() * 2 > slots_.size()) {
      rebuildSlots();
    } else {
      insertSlot(pairs_.size() - 1);
    }
  }
  void rebuildSlots() {
    slots_.assign(std::bit_ceil(pairs_.size() * 4), 0);
    for (std::size_t i = 0; i < pairs_.size(); ++i)
      insertSlot(i);
  }
  void insertSlot(std::size_t position) {
    std::size_t slot = firstSlot(pairs_[position].first);
    while (slots_[slot] != 0)
      slot = nextSlot(slot);
    slots_[slot] = static_cast<std::uint32_t>(position + 1);
  }
  std::size_t firstSlot(std::string_view key) const noexcept {
    return static_cast<std::size_t>(detail::seededHash(key)) & (slots_.size() - 1);
  }
  std::size_t nextSlot(std::size_t slot) const noexcept { return (slot + 1) & (slots_.size() - 1); }

  std::vector<value_type> pairs_;
  // A hash table with linear probing: position + 1, or 0 for a free slot. Empty for a small map.
  std::vector<std::uint32_t> slots_;
};

}  // namespace quorvelkit
