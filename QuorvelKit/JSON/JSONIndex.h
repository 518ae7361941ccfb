// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Export.h>

#include <compare>
#include <cstddef>

namespace quorvelkit {

/// A position in a JSON value as a collection of pairs. The case tells whether the value is an
/// array, a map or neither; a value that is neither has only the null index, which is its begin and
/// end. Indexes of different cases are neither equal nor ordered.
class JSONIndex {
 public:
  /// The kinds of values that an index is for.
  enum class Case { array, dictionary, null };

  /// Make an index for an array, for a map, or the null index.
  static constexpr JSONIndex array(std::size_t position) noexcept {
    return JSONIndex(Case::array, position);
  }
  static constexpr JSONIndex dictionary(std::size_t position) noexcept {
    return JSONIndex(Case::dictionary, position);
  }
  static constexpr JSONIndex null() noexcept { return JSONIndex(Case::null, 0); }

  /// The case and the position. The position of the null index is 0.
  constexpr Case kind() const noexcept { return case_; }
  constexpr std::size_t position() const noexcept { return position_; }
  /// The index after this one. The null index returns itself.
  constexpr JSONIndex next() const noexcept {
    return case_ == Case::null ? *this : JSONIndex(case_, position_ + 1);
  }

  /// Compares positions of the same case.
  friend constexpr std::partial_ordering operator<=>(JSONIndex a, JSONIndex b) noexcept {
    if (a.case_ != b.case_) return std::partial_ordering::unordered;
    return a.position_ <=> b.position_;
  }
  friend constexpr bool operator==(JSONIndex a, JSONIndex b) noexcept {
    return a.case_ == b.case_ && a.position_ == b.position_;
  }

 private:
  constexpr JSONIndex(Case kind, std::size_t position) noexcept
      : case_(kind), position_(position) {}

  Case case_;
  std::size_t position_;
};

}  // namespace quorvelkit
