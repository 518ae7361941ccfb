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

/// A number as JSON values hold it: an integer, a double or a decimal, and whether it was made
/// from a boolean.
class QUORVELKIT_EXPORT Number {
 public:
  /// How the number is kept.
  enum class Storage : char {
    boolean = 'B',
    int64 = 'q',
    uint64 = 'Q',
    float64 = 'd',
    decimal = 'D',
  };

  constexpr Number() noexcept : value_(std::int64_t{0}) {}
  template <std::same_as<bool> B>
  constexpr Number(B value) noexcept : value_(value) {}
  template <JSONIndexInteger I>
  constexpr Number(I value) noexcept : value_(stored(value)) {}
  /// A `float` is stored as the double that has its value.
  template <std::floating_point F>
  constexpr Number(F value) noexcept : value_(static_cast<double>(value)) {}
  constexpr Number(Decimal value) noexcept : value_(value) {}

  Storage storage() const noexcept;
  bool isBool() const noexcept { return std::holds_alternative<bool>(value_); }

  /// Conversions. To an integer: fractions are cut off; for signed types the value is clamped to
  /// 64 signed bits and the low bits are kept; for unsigned types negative values likewise, others
  /// are clamped to 64 bits; not-a-number is 0.
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
  /// Whether the number is not zero.
  bool boolValue() const;
  /// The number as the integer it is; absent for a fraction and beyond 64 signed bits.
  std::optional<std::int64_t> exactInt64() const;
  /// Decimal text: integers without a fraction (also doubles: 42.0 is "42"), others in the fewest
  /// digits that read back as the same number; plain from 1e-5 to below 1e17, with an exponent
  /// outside. A boolean is "1" or "0".
  std::string text() const;

  const std::variant<bool, std::int64_t, std::uint64_t, double, Decimal>& value() const noexcept {
    return value_;
  }

  /// The numeric order, exact across all storages; a boolean counts as 1 or 0. Not-a-number
  /// equals itself and is below every number.
  static std::weak_ordering compare(const Number& a, const Number& b);

  /// The numeric order among booleans and among other numbers; a boolean and another number are
  /// neither equal nor ordered.
  friend std::partial_ordering operator<=>(const Number& a, const Number& b) {
    if (a.isBool() != b.isBool()) return std::partial_ordering::unordered;
    return compare(a, b);
  }
  friend bool operator==(const Number& a, const Number& b) { return (a <=> b) == 0; }

 private:
  using Stored = std::variant<bool, std::int64_t, std::uint64_t, double, Decimal>;

  // An integer is unsigned only where it has to be.
  template <class I>
  static constexpr Stored stored(I value) noexcept {
    if (std::cmp_greater(value, INT64_MAX)) return static_cast<std::uint64_t>(value);
    return static_cast<std::int64_t>(value);
  }

  Stored value_;
};

/// The numbers made from the booleans, and the storage that tells them from 1 and 0.
inline constexpr Number trueNumber{true};
inline constexpr Number falseNumber{false};
inline constexpr Number::Storage trueObjCType = Number::Storage::boolean;
inline constexpr Number::Storage falseObjCType = Number::Storage::boolean;

}  // namespace quorvelkit
