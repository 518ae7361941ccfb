// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Export.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace quorvelkit {

/// A decimal number, digits x 10^exponent, or not-a-number. It has up to 38 digits and an exponent
/// from -128 to 127. The digits have no trailing zeros, unless the exponent would exceed 127.
class QUORVELKIT_EXPORT Decimal {
 public:
  /// Zero.
  constexpr Decimal() noexcept = default;
  /// Not-a-number.
  static constexpr Decimal notANumber() noexcept {
    Decimal result;
    result.isNotANumber_ = true;
    return result;
  }
  /// Parses the number at the start of a text: optional white space, a sign, digits, a decimal
  /// point with a fraction, an exponent after "e" or "E". Ignores the rest: "12abc" is 12. Rounds
  /// to 38 digits and to multiples of 10^-128, half away from zero. Returns zero if the number is
  /// too large, not-a-number if the text has no digit.
  static Decimal parse(std::string_view text);

  /// Return true for not-a-number, for zero, or for a number with a minus sign.
  bool isNotANumber() const noexcept { return isNotANumber_; }
  bool isZero() const noexcept { return !isNotANumber_ && high_ == 0 && low_ == 0; }
  bool isNegative() const noexcept { return isNegative_; }
  /// The exponent.
  int exponent() const noexcept { return exponent_; }
  /// The digits without leading zeros; empty for zero.
  std::string digits() const;

  /// The nearest double; NaN for not-a-number.
  double doubleValue() const;
  /// Decimal text: without exponent from 1e-5 to below 1e38, with exponent outside that range;
  /// "nan" for not-a-number.
  std::string text() const;

 private:
  std::uint64_t high_ = 0;
  std::uint64_t low_ = 0;
  std::int16_t exponent_ = 0;
  bool isNegative_ = false;
  bool isNotANumber_ = false;
};

}  // namespace quorvelkit
