// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/JSON/JSON.h>

#include <cstddef>
#include <iterator>
#include <utility>

namespace quorvelkit {

/// A forward iterator over the pairs of a JSON value (see JSON::begin). An owner of the data, for
/// the cost of a reference count: the value may be changed or destroyed during the iteration. Each
/// dereference makes a new pair.
class QUORVELKIT_EXPORT JSON::Iterator {
 public:
  /// The types that the standard library reads.
  using iterator_concept = std::forward_iterator_tag;
  using iterator_category = std::input_iterator_tag;
  using value_type = JSON::value_type;
  using difference_type = std::ptrdiff_t;
  using reference = value_type;
  /// Owns the pair that `->` refers to.
  struct pointer {
    /// The pair.
    value_type pair;
    /// Accesses the pair.
    const value_type* operator->() const noexcept { return &pair; }
  };

  /// Makes an iterator that is equal to the end of a value that is no container.
  Iterator() noexcept = default;
  /// The pair at the position.
  value_type operator*() const;
  pointer operator->() const { return {**this}; }
  /// Moves to the next pair.
  Iterator& operator++() noexcept {
    index_ = index_.next();
    return *this;
  }
  Iterator operator++(int) noexcept {
    Iterator before = *this;
    ++*this;
    return before;
  }
  /// Compares the positions. Compare only iterators over the same value.
  friend bool operator==(const Iterator& a, const Iterator& b) noexcept {
    return a.index_ == b.index_;
  }

 private:
  Iterator(Value value, JSONIndex index) noexcept : value_(std::move(value)), index_(index) {}

  Value value_;
  JSONIndex index_ = JSONIndex::null();

  friend class JSON;
};

}  // namespace quorvelkit

// Iterators stay valid after the value is destroyed.
template <>
inline constexpr bool std::ranges::enable_borrowed_range<quorvelkit::JSON> = true;
