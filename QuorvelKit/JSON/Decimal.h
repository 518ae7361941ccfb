// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelPlatform/Export.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace quorvelkit {

/// A decimal number of up to 38 digits: digits x 10^exponent with an exponent of -128 to 127, or
/// not-a-number. The digits end in zeros only where the exponent would pass 127 without them.
class QUORVELKIT_EXPORT Decimal {
 public:
  /// Zero.
  constexpr Decimal() noexcept = default;
  static constexpr Decimal notANumber() noexcept {
    Decimal result;
    result.isNotANumber_ = true;
    return result;
  }
  /// The number at the front of a text: blanks, a sign, digits, a point with a fraction, an
  /// exponent marked "e" or "E"; what follows is ignored ("12abc" is 12). Digits beyond the 38th
  /// and below 10^-128 are rounded, half away from zero. Zero when the number is too large for 38
  /// digits with an exponent of 127, not-a-number when there is no digit.
  static Decimal parse(std::string_view text);

  bool isNotANumber() const noexcept { return isNotANumber_; }
  bool isZero() const noexcept { return !isNotANumber_ && high_ == 0 && low_ == 0; }
  bool isNegative() const noexcept { return isNegative_; }
  int exponent() const noexcept { return exponent_; }
  /// The digits without leading zeros; empty for zero.
  std::string digits() const;

  double doubleValue() const;
  /// The text of the number: plain from 1e-5 to below 1e38, with an exponent outside.
  std::string text() const;

 private:
  std::uint64_t high_ = 0;
  std::uint64_t low_ = 0;
  std::int16_t exponent_ = 0;
  bool isNegative_ = false;
  bool isNotANumber_ = false;
};

}  // namespace quorvelkit
