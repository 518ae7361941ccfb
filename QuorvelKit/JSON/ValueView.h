// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/JSON/KeyView.h>
#include <QuorvelKit/JSON/Number.h>
#include <QuorvelPlatform/Export.h>

#include <any>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>

namespace quorvelkit {

namespace detail {

enum class ValueTag : std::uint8_t {
  null,
  false_,
  true_,
  int64,
  uint64,
  float64,
  unknown,      // an unsupported value was assigned to a JSON
  failure,      // a null with the reason of a failed read
  longFailure,  // this and all below: the payload is a ReferenceCounted*
  decimal,
  text,
  unsupported,
  array,
  map,
  frozenText,  // this and all below: the payload is a Document*
  frozenArray,
  frozenMap,
};

/// The representation of a value. `payload` is a scalar or a pointer. `word` consists of the tag
/// (bits 0 to 7), a detail of a failure (8 to 23) and the number of a node (32 to 63). Whole words,
/// because reading a word whose bytes were written separately stalls the processor.
struct ValueBits {
  std::uint64_t payload = 0;
  std::uint64_t word = 0;

  constexpr ValueTag tag() const noexcept { return static_cast<ValueTag>(word & 0xFFU); }
  constexpr std::uint32_t detail() const noexcept { return (word >> 8U) & 0xFFFFU; }
  constexpr std::uint32_t node() const noexcept { return static_cast<std::uint32_t>(word >> 32U); }
  static constexpr ValueBits make(std::uint64_t payload, ValueTag tag, std::uint32_t node = 0,
                                  std::uint32_t detail = 0) noexcept {
    return {payload, static_cast<std::uint64_t>(tag) | (std::uint64_t{detail} << 8U) |
                         (std::uint64_t{node} << 32U)};
  }
};

struct ValueAccess;

}  // namespace detail

/// A non-owning reference to an untyped value: null, a boolean, a number, a text, an array, a map
/// or an unsupported value. The fastest way to read JSON: 16 bytes, passed by value, without
/// reference counting.
///
/// Reads are strict: reading a value as another kind returns no value, without conversion.
///
/// Lifetime: valid until the last Value or JSON that owns the data is destroyed or written to.
/// Threads: all functions are safe to call from several threads at the same time.
class QUORVELKIT_EXPORT ValueView {
 public:
  /// The kinds of values.
  enum class Kind : std::uint8_t { null, boolean, number, text, array, map, unsupported };

  /// Null.
  constexpr ValueView() noexcept = default;

  /// The kind of the value.
  Kind kind() const noexcept {
    static constexpr Kind kinds[] = {
        Kind::null,  Kind::boolean, Kind::boolean, Kind::number, Kind::number, Kind::number,
        Kind::null,  Kind::null,    Kind::null,    Kind::number, Kind::text,   Kind::unsupported,
        Kind::array, Kind::map,     Kind::text,    Kind::array,  Kind::map};
    return kinds[static_cast<std::size_t>(bits_.tag())];
  }
  /// Returns true if the value is null.
  bool isNull() const noexcept { return kind() == Kind::null; }

  /// The value of a boolean.
  std::optional<bool> boolean() const noexcept {
    if (bits_.tag() == detail::ValueTag::true_) return true;
    if (bits_.tag() == detail::ValueTag::false_) return false;
    return std::nullopt;
  }
  /// The value of a number as a double; integers above 2^53 are rounded. Absent for booleans.
  std::optional<double> number() const {
    double number = 0;
    switch (bits_.tag()) {
      case detail::ValueTag::float64: number = std::bit_cast<double>(bits_.payload); break;
      case detail::ValueTag::int64:
        number = static_cast<double>(static_cast<std::int64_t>(bits_.payload));
        break;
      case detail::ValueTag::uint64: number = static_cast<double>(bits_.payload); break;
      case detail::ValueTag::decimal: number = storedNumber()->doubleValue(); break;
      default: return std::nullopt;
    }
    return number;
  }
  /// The value of a number that is exactly an int64_t: 3 and 3.0, but not 3.5 or 1e300.
  std::optional<std::int64_t> exactInt64() const {
    auto integer = static_cast<std::int64_t>(bits_.payload);
    if (bits_.tag() != detail::ValueTag::int64 && !convertToInt64(integer)) return std::nullopt;
    return integer;
  }
  /// The stored number of a number or a boolean.
  std::optional<Number> storedNumber() const;
  /// The text of a string. Valid as long as this view.
  std::optional<std::string_view> text() const noexcept;

  /// The number of elements of an array or of members of a map; 0 for every other kind.
  std::size_t size() const noexcept;
  /// An element of an array; null if the index is out of range. Constant time.
  ValueView element(std::size_t index) const noexcept { return elementOf(*this, index); }
  /// The key and value at a position of a map; an empty key and null if the position is out of
  /// range. Constant time.
  std::pair<std::string_view, ValueView> memberAt(std::size_t index) const noexcept;
  /// The member of a map with the key; absent if there is none. Constant time for small maps and
  /// for maps that were written to; logarithmic time for maps of a document with 64 members or
  /// more.
  std::optional<ValueView> member(const KeyView& key) const noexcept {
    const ValueView found = find(*this, key);
    if (found.bits_.word == absent) return std::nullopt;
    return found;
  }
  /// The same, but null if there is none.
  ValueView memberOrNull(const KeyView& key) const noexcept {
    const ValueView found = find(*this, key);
    return found.bits_.word == absent ? ValueView() : found;
  }

  /// The object of an unsupported value; null for every other kind.
  const std::any* unsupported() const noexcept;

  /// Compares numbers by value, texts by bytes, arrays element by element, and maps without regard
  /// to the order of members. A boolean is not equal to a number. An unsupported value is not equal
  /// to any value. Not recursive.
  friend QUORVELKIT_EXPORT bool operator==(const ValueView& a, const ValueView& b);

 protected:
  /// The representation of the value.
  detail::ValueBits bits_;

 private:
  // The word of the null that find() returns if there is no such member.
  static constexpr std::uint64_t absent =
      detail::ValueBits::make(0, detail::ValueTag::null, 0, 1).word;
  // The views are passed in registers; a view in memory would be slower.
  static ValueView find(ValueView map, const KeyView& key) noexcept;
  static ValueView findGeneral(ValueView map, const KeyView& key) noexcept;
  static ValueView elementOf(ValueView array, std::size_t index) noexcept;
  bool convertToInt64(std::int64_t& integer) const;

  friend struct detail::ValueAccess;
};

}  // namespace quorvelkit
