// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/JSON/NumberParser_p.h>

#include <bit>
#include <charconv>
#include <cstring>
#include <limits>

namespace quorvelkit::detail {

namespace {

bool isDigit(char c) noexcept { return static_cast<unsigned char>(c - '0') < 10; }

// Every number of 19 decimal digits fits into 64 bits.
constexpr std::int64_t maximumDigits = 19;

// The parts of a number: digits x 10^exponent. `digits` is valid only if there are at most
// maximumDigits of them, not counting leading zeros.
struct NumberParts {
  std::uint64_t digits = 0;
  std::int64_t digitCount = 0;
  std::int64_t exponent = 0;
  bool negative = false;
  bool integer = true;
};

// Appends the digits at the start of eight bytes to `digits` without a loop, and returns their
// count. Requires a little-endian machine.
[[gnu::always_inline]] inline unsigned appendUpTo8Digits(const char* p,
                                                         std::uint64_t& digits) noexcept {
  static_assert(std::endian::native == std::endian::little);
  static constexpr std::uint64_t powers[] = {1,       10,        100,        1'000,      10'000,
                                             100'000, 1'000'000, 10'000'000, 100'000'000};
  std::uint64_t word = 0;
  std::memcpy(&word, p, sizeof word);
  // Digits become 0 to 9. The highest bit is set in the first byte greater than 9; it may be wrong
  // in the bytes after it.
  word ^= 0x3030303030303030U;
  const std::uint64_t others = ((word + 0x7676767676767676U) | word) & 0x8080808080808080U;
  const auto count = static_cast<unsigned>(std::countr_zero(others)) / 8;
  if (count == 0) return 0;
  // Replaces the other bytes by leading zeros, then combines neighbors to numbers of two, four and
  // eight digits.
  word <<= 64 - 8 * count;
  word = word * 10 + (word >> 8U);
  word = ((word & 0x000000FF000000FFU) * 0x000F424000000064U +
          ((word >> 16U) & 0x000000FF000000FFU) * 0x0000271000000001U) >>
         32U;
  digits = digits * powers[count] + word;
  return count;
}

// Appends the digits at the start of sixteen bytes. If it returns 16, more digits may follow.
[[gnu::always_inline]] inline unsigned appendUpTo16Digits(const char* p,
                                                          std::uint64_t& digits) noexcept {
  const unsigned count = appendUpTo8Digits(p, digits);
  return count < 8 ? count : 8 + appendUpTo8Digits(p + 8, digits);
}

const char* appendDigits(const char* p, std::uint64_t& digits) noexcept {
  for (; isDigit(*p); ++p)
    digits = digits * 10 + static_cast<std::uint64_t>(*p - '0');
  return p;
}

// Parses an exponent after its letter. Returns its end, or null if it has no digit.
const char* parseExponent(const char* p, NumberParts& parts) noexcept {
  const bool negative = *p == '-';
  if (*p == '-' || *p == '+') ++p;
  if (!isDigit(*p)) return nullptr;
  std::int64_t exponent = 0;
  for (; isDigit(*p); ++p) {
    // No document has enough digits to compensate for a larger exponent.
    if (exponent < 100'000'000'000) exponent = exponent * 10 + (*p - '0');
  }
  parts.exponent += negative ? -exponent : exponent;
  return p;
}

std::int64_t leadingZeros(const char* p, const char* end) noexcept {
  std::int64_t zeros = 0;
  for (; p != end && (*p == '-' || *p == '0' || *p == '.'); ++p)
    zeros += *p == '0' ? 1 : 0;
  return zeros;
}

void setDouble(ValueBits& bits, double value) noexcept {
  bits = ValueBits::make(std::bit_cast<std::uint64_t>(value), ValueTag::float64);
}

// Returns false if the integer does not fit into 64 bits.
bool setInteger(ValueBits& bits, const NumberParts& parts, std::uint64_t magnitude) noexcept {
  constexpr std::uint64_t maximum = std::numeric_limits<std::int64_t>::max();
  if (parts.negative && magnitude > maximum + 1) return false;
  const bool isLarge = !parts.negative && magnitude > maximum;
  bits = ValueBits::make(parts.negative ? 0 - magnitude : magnitude,
                         isLarge ? ValueTag::uint64 : ValueTag::int64);
  return true;
}

// Parses any number, one byte at a time.
[[gnu::noinline]] const char* parseAnyNumber(const char* begin, ValueBits& bits) noexcept {
  NumberParts parts{.negative = *begin == '-'};
  const char* const whole = begin + (parts.negative ? 1 : 0);
  const char* p = appendDigits(whole, parts.digits);
  parts.digitCount = p - whole;
  if (parts.digitCount == 0 || (*whole == '0' && parts.digitCount > 1)) return nullptr;
  if (*p == '.') {
    const char* const fraction = ++p;
    p = appendDigits(p, parts.digits);
    if (p == fraction) return nullptr;
    parts.digitCount += p - fraction;
    parts.exponent = fraction - p;
    parts.integer = false;
  }
  if (*p == 'e' || *p == 'E') {
    parts.integer = false;
    p = parseExponent(p + 1, parts);
    if (!p) return nullptr;
  }
  if (parts.digitCount > maximumDigits) parts.digitCount -= leadingZeros(begin, p);
  if (parts.integer) {
    std::uint64_t magnitude = parts.digits;
    bool fits = parts.digitCount <= maximumDigits;
    if (!fits && parts.digitCount == maximumDigits + 1) {
      fits = std::from_chars(whole, p, magnitude).ec == std::errc();
    }
    if (fits && setInteger(bits, parts, magnitude)) return p;
  }
  const bool isZero = parts.digitCount <= maximumDigits && parts.digits == 0;
  double value = parts.negative ? -0.0 : 0.0;
  if (!isZero && std::from_chars(begin, p, value).ec != std::errc()) {
    // A number with a smaller magnitude than every double becomes zero; a larger one is an error.
    if (parts.digitCount + parts.exponent > 0) return nullptr;
  }
  setDouble(bits, value);
  return p;
}

}  // namespace

// Most numbers have no exponent and few digits, and are not at the end of the document. Parses
// these without comparing every position with the end; calls parseAnyNumber() for the others.
const char* parseNumber(const char* begin, const char* end, ValueBits& bits) noexcept {
  // A sign, digits, the decimal point, digits, and the byte after them.
  constexpr std::ptrdiff_t bytesRead = 1 + 3 + 16 + 1 + 16 + 1;
  constexpr std::ptrdiff_t fewDigits = maximumDigits - 1;
  if (end - begin < bytesRead) return parseAnyNumber(begin, bits);
  const bool negative = *begin == '-';
  const char* const whole = begin + (negative ? 1 : 0);
  const char* p = whole;
  std::uint64_t digits = 0;
  // Most numbers have one to three digits before the decimal point. For these, branches are faster
  // than the arithmetic of appendUpTo16Digits(), because the processor predicts them.
  while (p != whole + 3 && isDigit(*p))
    digits = digits * 10 + static_cast<std::uint64_t>(*p++ - '0');
  if (p == whole + 3) p += appendUpTo16Digits(p, digits);
  std::ptrdiff_t digitCount = p - whole;
  if (digitCount == 0 || (*whole == '0' && digitCount > 1)) return nullptr;
  unsigned fractionCount = 0;
  if (*p == '.') {
    fractionCount = appendUpTo16Digits(p + 1, digits);
    if (fractionCount == 0) return nullptr;
    p += 1 + fractionCount;
    digitCount += fractionCount;
  }
  constexpr std::uint64_t largestExactDouble = std::uint64_t{1} << 53U;
  if (digitCount > fewDigits || isDigit(*p) || *p == 'e' || *p == 'E' ||
      (fractionCount != 0 && digits > largestExactDouble)) {
    return parseAnyNumber(begin, bits);
  }
  const auto integer = static_cast<std::int64_t>(digits);
  if (fractionCount == 0) {
    bits =
        ValueBits::make(static_cast<std::uint64_t>(negative ? -integer : integer), ValueTag::int64);
    return p;
  }
  // Both operands are exact doubles, so that the division rounds correctly.
  static constexpr double powers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8, 1e9,
                                      1e10, 1e11, 1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18};
  const double value = static_cast<double>(integer) / powers[fractionCount];
  setDouble(bits, negative ? -value : value);
  return p;
}

}  // namespace quorvelkit::detail
