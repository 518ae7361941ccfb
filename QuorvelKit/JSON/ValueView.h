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
  unknown,      // an unsupported thing was assigned to a JSON
  failure,      // a null that says in its bytes why it is one
  longFailure,  // from here on the payload points to something counted
  decimal,
  text,
  unsupported,
  array,
  map,
  frozenText,  // from here on the payload is a document
  frozenArray,
  frozenMap,
};

/// What a value is made of: scalars stand in the payload; the other word holds the tag in its
/// lowest byte, a small detail in the next two and the number of a document's node above. Whole
/// words, because bytes written one by one and read together cost more than a look-up.
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

struct ValueCore;

}  // namespace detail

/// An untyped value, looked at: null, a boolean, a number, a text, an array, a map or a thing of
/// no such kind. Costs 16 bytes and no reference count; valid as long as the Value that it was
/// taken from, or a copy of that, lives and is not written to.
///
/// Reads are strict: a read of another kind is absent. They may run on any threads at once.
class QUORVELKIT_EXPORT ValueView {
 public:
  enum class Kind : std::uint8_t { null, boolean, number, text, array, map, unsupported };

  /// Null.
  constexpr ValueView() noexcept = default;

  Kind kind() const noexcept {
    static constexpr Kind kinds[] = {
        Kind::null,  Kind::boolean, Kind::boolean, Kind::number, Kind::number, Kind::number,
        Kind::null,  Kind::null,    Kind::null,    Kind::number, Kind::text,   Kind::unsupported,
        Kind::array, Kind::map,     Kind::text,    Kind::array,  Kind::map};
    return kinds[static_cast<std::size_t>(bits_.tag())];
  }
  bool isNull() const noexcept { return kind() == Kind::null; }

  std::optional<bool> boolean() const noexcept {
    if (bits_.tag() == detail::ValueTag::true_) return true;
    if (bits_.tag() == detail::ValueTag::false_) return false;
    return std::nullopt;
  }
  /// A number as a double; integers beyond 2^53 are rounded. A boolean is no number.
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
  /// A number that is exactly a 64-bit signed integer: 3 and 3.0, not 3.5 and not 1e300.
  std::optional<std::int64_t> exactInt64() const {
    auto integer = static_cast<std::int64_t>(bits_.payload);
    if (bits_.tag() != detail::ValueTag::int64 && !otherInt64(integer)) return std::nullopt;
    return integer;
  }
  /// A number or a boolean as it is stored.
  std::optional<Number> storedNumber() const;
  std::optional<std::string_view> text() const noexcept;

  /// The number of elements of an array or of members of a map, 0 for every other kind.
  std::size_t size() const noexcept;
  /// An element of an array; null beyond its end. Constant time.
  ValueView element(std::size_t index) const noexcept { return elementOf(*this, index); }
  /// A member of a map by its place in the order; an empty key and null beyond its end.
  std::pair<std::string_view, ValueView> memberAt(std::size_t index) const noexcept;
  /// A member of a map by its key; absent when there is none.
  std::optional<ValueView> member(const KeyView& key) const noexcept {
    const ValueView found = find(*this, key);
    if (found.bits_.word == absent) return std::nullopt;
    return found;
  }
  /// The same, null when there is none.
  ValueView memberOrNull(const KeyView& key) const noexcept {
    const ValueView found = find(*this, key);
    return found.bits_.word == absent ? ValueView() : found;
  }

  /// A thing of no JSON kind; null for every other kind.
  const std::any* unsupported() const noexcept;

  /// Whether both are the same: numbers by value, texts by their bytes, arrays element by element,
  /// maps without regard to order. A boolean is no number; an unsupported thing equals nothing.
  friend QUORVELKIT_EXPORT bool operator==(const ValueView& a, const ValueView& b);

 protected:
  detail::ValueBits bits_;

 private:
  // What find() marks its null with when there is no such member. No user ever sees it.
  static constexpr std::uint64_t absent =
      detail::ValueBits::make(0, detail::ValueTag::null, 0, 1).word;
  // By value: two registers, where a view in memory would be written and read in other words.
  static ValueView find(ValueView map, const KeyView& key) noexcept;
  static ValueView findInAny(ValueView map, const KeyView& key) noexcept;
  static ValueView elementOf(ValueView array, std::size_t index) noexcept;
  bool otherInt64(std::int64_t& integer) const;

  friend struct detail::ValueCore;
};

}  // namespace quorvelkit
