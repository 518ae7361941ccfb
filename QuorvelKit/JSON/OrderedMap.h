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
/// A hash with a secret of this process, so that nobody outside can prepare keys that collide.
QUORVELKIT_EXPORT std::uint64_t secretHash(std::string_view text) noexcept;
}  // namespace detail

/// A map from texts to values that keeps the order in which keys came in. Looking up, adding and
/// replacing take constant time, removing takes linear time. Small maps are plain vectors.
template <class T>
class OrderedMap {
 public:
  using value_type = std::pair<std::string, T>;
  using const_iterator = typename std::vector<value_type>::const_iterator;

  OrderedMap() = default;
  /// A later pair replaces the value of an earlier one with the same key.
  OrderedMap(std::initializer_list<value_type> pairs) {
    reserve(pairs.size());
    for (const value_type& pair : pairs)
      set(pair.first, pair.second);
  }

  std::size_t size() const noexcept { return pairs_.size(); }
  bool empty() const noexcept { return pairs_.empty(); }
  const_iterator begin() const noexcept { return pairs_.begin(); }
  const_iterator end() const noexcept { return pairs_.end(); }
  const value_type& at(std::size_t position) const { return pairs_[position]; }
  T& valueAt(std::size_t position) { return pairs_[position].second; }
  void reserve(std::size_t count) { pairs_.reserve(count); }

  /// The value of a key, null when there is none; valid until the map changes.
  const T* find(std::string_view key) const noexcept {
    const std::size_t position = positionOf(key);
    return position == npos ? nullptr : &pairs_[position].second;
  }
  T* find(std::string_view key) noexcept {
    const std::size_t position = positionOf(key);
    return position == npos ? nullptr : &pairs_[position].second;
  }
  bool contains(std::string_view key) const noexcept { return positionOf(key) != npos; }

  /// Replaces the value of a key where it stands, or adds the key at the end.
  void set(std::string_view key, T value) {
    if (T* present = find(key)) {
      *present = std::move(value);
    } else {
      pairs_.emplace_back(std::string(key), std::move(value));
      added();
    }
  }
  /// The value of a key, added at the end when there is none.
  T& operator[](std::string_view key) {
    if (T* present = find(key)) return *present;
    pairs_.emplace_back(std::string(key), T());
    added();
    return pairs_.back().second;
  }

  /// Returns whether the key was there.
  bool erase(std::string_view key) {
    const std::size_t position = positionOf(key);
    if (position == npos) return false;
    pairs_.erase(pairs_.begin() + static_cast<std::ptrdiff_t>(position));
    if (!slots_.empty()) rebuild();
    return true;
  }

  /// Without regard to order.
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
  static constexpr std::size_t largestWithoutSlots = 16;

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

  void added() {
    if (pairs_.size() <= largestWithoutSlots) return;
    if (pairs_.size() * 2 > slots_.size()) {
      rebuild();
    } else {
      occupy(pairs_.size() - 1);
    }
  }
  void rebuild() {
    slots_.assign(std::bit_ceil(pairs_.size() * 4), 0);
    for (std::size_t i = 0; i < pairs_.size(); ++i)
      occupy(i);
  }
  void occupy(std::size_t position) {
    std::size_t slot = firstSlot(pairs_[position].first);
    while (slots_[slot] != 0)
      slot = nextSlot(slot);
    slots_[slot] = static_cast<std::uint32_t>(position + 1);
  }
  std::size_t firstSlot(std::string_view key) const noexcept {
    return static_cast<std::size_t>(detail::secretHash(key)) & (slots_.size() - 1);
  }
  std::size_t nextSlot(std::size_t slot) const noexcept { return (slot + 1) & (slots_.size() - 1); }

  std::vector<value_type> pairs_;
  // Positions plus one, by hash with linear probing; empty for a small map.
  std::vector<std::uint32_t> slots_;
};

}  // namespace quorvelkit
