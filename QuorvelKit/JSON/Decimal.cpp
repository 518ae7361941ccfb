// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/JSON/Decimal.h>
#include <QuorvelKit/JSON/NumberText_p.h>

#include <algorithm>
#include <charconv>
#include <limits>

namespace quorvelkit {

namespace {

__extension__ using Mantissa = unsigned __int128;

constexpr std::size_t maximumDigits = 38;
// 10^37, the smallest mantissa of 38 digits.
constexpr Mantissa smallestFullMantissa =
    Mantissa{10'000'000'000'000'000'000U} * 1'000'000'000'000'000'000U;
constexpr std::int64_t smallestExponent = -128;
constexpr std::int64_t largestExponent = 127;

// Consumes a text from its start.
class Reader {
 public:
  explicit Reader(std::string_view text) : text_(text) {}

  void skipWhiteSpace() noexcept {
    text_.remove_prefix(std::min(text_.find_first_not_of(" \t\n\v\f\r"), text_.size()));
  }
  // Consumes the first character if it is one of the given ones.
  bool consumeOneOf(std::string_view characters) noexcept {
    if (text_.empty() || characters.find(text_[0]) == std::string_view::npos) return false;
    last_ = text_[0];
    text_.remove_prefix(1);
    return true;
  }
  // The last character consumed.
  char last() const noexcept { return last_; }

 private:
  std::string_view text_;
  char last_ = 0;
};

// Parses an exponent after its letter. Returns 0 if there are no digits.
std::int64_t parseExponent(Reader& reader) {
  const bool negative = reader.consumeOneOf("+-") && reader.last() == '-';
  std::int64_t exponent = 0;
  while (reader.consumeOneOf("0123456789")) {
    exponent = std::min<std::int64_t>(exponent * 10 + (reader.last() - '0'), INT64_MAX / 100);
  }
  return negative ? -exponent : exponent;
}

}  // namespace

Decimal Decimal::parse(std::string_view text) {
  Reader reader(text);
  reader.skipWhiteSpace();
  const bool negative = reader.consumeOneOf("+-") && reader.last() == '-';
  Mantissa mantissa = 0;
  std::size_t kept = 0;
  std::int64_t exponent = 0;
  bool hasDigit = false;
  bool inFraction = false;
  bool roundsUp = false;
  bool skipsDigits = false;
  for (;;) {
    if (reader.consumeOneOf("0123456789")) {
      hasDigit = true;
      const auto digit = static_cast<unsigned>(reader.last() - '0');
      if (kept < maximumDigits) {
        mantissa = mantissa * 10 + digit;
        if (mantissa != 0) ++kept;
        if (inFraction) --exponent;
      } else {
        if (!skipsDigits) roundsUp = digit >= 5;
        skipsDigits = true;
        if (!inFraction) ++exponent;
      }
    } else if (!inFraction && reader.consumeOneOf(".")) {
      inFraction = true;
    } else {
      break;
    }
  }
  if (!hasDigit) return notANumber();
  if (reader.consumeOneOf("eE")) exponent += parseExponent(reader);
  // Only the first removed digit decides, so that the number is not rounded twice.
  for (; exponent < smallestExponent && (mantissa != 0 || roundsUp); ++exponent) {
    roundsUp = mantissa % 10 >= 5;
    mantissa /= 10;
  }
  if (roundsUp) ++mantissa;
  Decimal result;
  if (mantissa == 0) return result;
  while (mantissa % 10 == 0) {
    mantissa /= 10;
    ++exponent;
  }
  for (; exponent > largestExponent && mantissa < smallestFullMantissa; --exponent)
    mantissa *= 10;
  if (exponent < smallestExponent || exponent > largestExponent) return result;
  result.high_ = static_cast<std::uint64_t>(mantissa >> 64U);
  result.low_ = static_cast<std::uint64_t>(mantissa);
  result.exponent_ = static_cast<std::int16_t>(exponent);
  result.isNegative_ = negative;
  return result;
}

std::string Decimal::digits() const {
  Mantissa mantissa = (Mantissa{high_} << 64U) | low_;
  std::string digits;
  for (; mantissa != 0; mantissa /= 10) {
    digits += static_cast<char>('0' + static_cast<int>(mantissa % 10));
  }
  std::reverse(digits.begin(), digits.end());
  return digits;
}

double Decimal::doubleValue() const {
  if (isNotANumber_) return std::numeric_limits<double>::quiet_NaN();
  const std::string text =
      (isNegative_ ? "-0" : "0") + digits() + "e" + std::to_string(int{exponent_});
  double value = 0;
  std::from_chars(text.data(), text.data() + text.size(), value);
  return value;
}

std::string Decimal::text() const {
  std::string text;
  detail::appendText(text, *this);
  return text;
}

}  // namespace quorvelkit
