// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/JSON/Decimal.h>
#include <QuorvelKit/JSON/JSONKey.h>
#include <QuorvelPlatform/Export.h>

#include <compare>
#include <concepts>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <variant>

namespace quorvelkit {

/// A number of a JSON value: a 64-bit integer, a double or a decimal. A number made from a boolean
/// counts as 1 or 0 and remembers that it was a boolean. Conversions never fail and never have
/// undefined behavior. Does not depend on the locale of the process.
class QUORVELKIT_EXPORT Number {
 public:
  /// How the number is stored.
  enum class Storage : char {
    boolean = 'B',
    int64 = 'q',
    uint64 = 'Q',
    float64 = 'd',
    decimal = 'D',
  };

  /// Zero, as an integer.
  constexpr Number() noexcept : value_(std::int64_t{0}) {}
  /// A boolean, which counts as 1 or 0.
  template <std::same_as<bool> B>
  constexpr Number(B value) noexcept : value_(value) {}
  /// An integer. It is stored as an int64_t, above INT64_MAX as a uint64_t.
  template <JSONIndexInteger I>
  constexpr Number(I value) noexcept : value_(stored(value)) {}
  /// A `float` is stored as the double of the same value.
  template <std::floating_point F>
  constexpr Number(F value) noexcept : value_(static_cast<double>(value)) {}
  /// A decimal.
  constexpr Number(Decimal value) noexcept : value_(value) {}

  /// Tells how the number is stored.
  Storage storage() const noexcept;
  /// Returns true if the number was made from a boolean.
  bool isBool() const noexcept { return std::holds_alternative<bool>(value_); }

  /// Conversions. Integers: the fraction is discarded; not-a-number becomes 0. Signed types, and
  /// negative values of unsigned types: the value is clamped to int64_t, then the low bits are
  /// kept. Other values of unsigned types: clamped to uint64_t, then the low bits are kept.
  std::int64_t int64Value() const;
  std::uint64_t uint64Value() const;
  double doubleValue() const;
  template <class T>
  T to() const {
    if constexpr (std::floating_point<T>) {
      return static_cast<T>(doubleValue());
    } else if constexpr (std::signed_integral<T>) {
      return static_cast<T>(int64Value());
    } else {
      return static_cast<T>(uint64Value());
    }
  }
  /// Returns true if the number is not zero.
  bool boolValue() const;
  /// The value as an int64_t if it is exactly one; otherwise absent.
  std::optional<std::int64_t> exactInt64() const;
  /// Decimal text. Doubles have the fewest digits that are parsed as the same double, without
  /// exponent from 1e-5 to below 1e17 and with exponent outside that range; 42.0 is "42". A boolean
  /// is "1" or "0", not-a-number "nan".
  std::string text() const;

  /// The stored value.
  const std::variant<bool, std::int64_t, std::uint64_t, double, Decimal>& value() const noexcept {
    return value_;
  }

  /// The numeric order, exact for all combinations of storage. A boolean counts as 1 or 0.
  /// Not-a-number is equal to itself and less than every other number.
  static std::weak_ordering compare(const Number& a, const Number& b);

  /// The same order, except that a boolean and another number are neither equal nor ordered.
  friend std::partial_ordering operator<=>(const Number& a, const Number& b) {
    if (a.isBool() != b.isBool()) return std::partial_ordering::unordered;
    return compare(a, b);
  }
  friend bool operator==(const Number& a, const Number& b) { return (a <=> b) == 0; }

 private:
  using Stored = std::variant<bool, std::int64_t, std::uint64_t, double, Decimal>;

  // Stores an integer as uint64_t only if it does not fit int64_t.
  template <class I>
  static constexpr Stored stored(I value) noexcept {
    if (std::cmp_greater(value, INT64_MAX)) return static_cast<std::uint64_t>(value);
    return static_cast<std::int64_t>(value);
  }

  Stored value_;
};

/// The numbers of the booleans, and the storage that distinguishes them from 1 and 0.
inline constexpr Number trueNumber{true};
inline constexpr Number falseNumber{false};
inline constexpr Number::Storage trueObjCType = Number::Storage::boolean;
inline constexpr Number::Storage falseObjCType = Number::Storage::boolean;

}  // namespace quorvelkit
