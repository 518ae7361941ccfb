// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/JSON/NumberParser_p.h>

#include <bit>
#include <charconv>
#include <cstring>
#include <limits>

namespace quorvelkit::detail {

namespace {

bool isDigit(char c) noexcept { return static_cast<unsigned char>(c - '0') < 10; }

// The longest run of digits that always fits into 64 bits.
constexpr std::int64_t safeDigits = 19;

// A number as its grammar shows it: digits x 10^exponent. The digits are whole only when at most
// safeDigits of them count, from the first that is not 0.
struct Scan {
  std::uint64_t digits = 0;
  std::int64_t digitCount = 0;
  std::int64_t exponent = 0;
  bool negative = false;
  bool integer = true;
};

// Appends the digits at the front of eight bytes, all at once, and gives their count. (The first
// byte is the lowest one of a word on every machine that the library is built for.)
[[gnu::always_inline]] inline unsigned takeOfEight(const char* p, std::uint64_t& digits) noexcept {
  static_assert(std::endian::native == std::endian::little);
  static constexpr std::uint64_t powers[] = {1,       10,        100,        1'000,      10'000,
                                             100'000, 1'000'000, 10'000'000, 100'000'000};
  std::uint64_t word = 0;
  std::memcpy(&word, p, sizeof word);
  // Digits become 0 to 9. The highest bit gets set in the first byte that is more, and perhaps in
  // bytes behind it.
  word ^= 0x3030303030303030U;
  const std::uint64_t others = ((word + 0x7676767676767676U) | word) & 0x8080808080808080U;
  const auto count = static_cast<unsigned>(std::countr_zero(others)) / 8;
  if (count == 0) return 0;
  // What is no digit goes out at the top and zeros come in below; then neighbours are put together
  // to numbers of two, four and eight digits.
  word <<= 64 - 8 * count;
  word = word * 10 + (word >> 8U);
  word = ((word & 0x000000FF000000FFU) * 0x000F424000000064U +
          ((word >> 16U) & 0x000000FF000000FFU) * 0x0000271000000001U) >>
         32U;
  digits = digits * powers[count] + word;
  return count;
}

// Appends the digits at the front of sixteen bytes; there may be more when all of them are digits.
[[gnu::always_inline]] inline unsigned takeOfSixteen(const char* p,
                                                     std::uint64_t& digits) noexcept {
  const unsigned count = takeOfEight(p, digits);
  return count < 8 ? count : 8 + takeOfEight(p + 8, digits);
}

const char* takeDigits(const char* p, std::uint64_t& digits) noexcept {
  for (; isDigit(*p); ++p)
    digits = digits * 10 + static_cast<std::uint64_t>(*p - '0');
  return p;
}

const char* scanExponent(const char* p, Scan& scan) noexcept {
  const bool negative = *p == '-';
  if (*p == '-' || *p == '+') ++p;
  if (!isDigit(*p)) return nullptr;
  std::int64_t exponent = 0;
  for (; isDigit(*p); ++p) {
    // Larger than any exponent that a document has the room to make up for with digits.
    if (exponent < 100'000'000'000) exponent = exponent * 10 + (*p - '0');
  }
  scan.exponent += negative ? -exponent : exponent;
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

bool setInteger(ValueBits& bits, const Scan& scan, std::uint64_t magnitude) noexcept {
  constexpr std::uint64_t most = std::numeric_limits<std::int64_t>::max();
  if (scan.negative && magnitude > most + 1) return false;
  const bool isLarge = !scan.negative && magnitude > most;
  bits = ValueBits::make(scan.negative ? 0 - magnitude : magnitude,
                         isLarge ? ValueTag::uint64 : ValueTag::int64);
  return true;
}

// Any number, byte by byte.
[[gnu::noinline]] const char* anyNumber(const char* begin, ValueBits& bits) noexcept {
  Scan scan{.negative = *begin == '-'};
  const char* const whole = begin + (scan.negative ? 1 : 0);
  const char* p = takeDigits(whole, scan.digits);
  scan.digitCount = p - whole;
  if (scan.digitCount == 0 || (*whole == '0' && scan.digitCount > 1)) return nullptr;
  if (*p == '.') {
    const char* const fraction = ++p;
    p = takeDigits(p, scan.digits);
    if (p == fraction) return nullptr;
    scan.digitCount += p - fraction;
    scan.exponent = fraction - p;
    scan.integer = false;
  }
  if (*p == 'e' || *p == 'E') {
    scan.integer = false;
    p = scanExponent(p + 1, scan);
    if (!p) return nullptr;
  }
  if (scan.digitCount > safeDigits) scan.digitCount -= leadingZeros(begin, p);
  if (scan.integer) {
    std::uint64_t magnitude = scan.digits;
    bool fits = scan.digitCount <= safeDigits;
    if (!fits && scan.digitCount == safeDigits + 1) {
      fits = std::from_chars(whole, p, magnitude).ec == std::errc();
    }
    if (fits && setInteger(bits, scan, magnitude)) return p;
  }
  const bool isZero = scan.digitCount <= safeDigits && scan.digits == 0;
  double value = scan.negative ? -0.0 : 0.0;
  if (!isZero && std::from_chars(begin, p, value).ec != std::errc()) {
    // Too small stays zero, too large is no number.
    if (scan.digitCount + scan.exponent > 0) return nullptr;
  }
  setDouble(bits, value);
  return p;
}

}  // namespace

// Nearly all numbers have no exponent and few digits, and do not stand near the document's end:
// they are read without asking for the end at every digit. The others are left to anyNumber().
const char* parseNumber(const char* begin, const char* end, ValueBits& bits) noexcept {
  constexpr std::ptrdiff_t bytesLookedAt = 1 + 3 + 16 + 1 + 16 + 1;
  constexpr std::ptrdiff_t fewDigits = safeDigits - 1;
  if (end - begin < bytesLookedAt) return anyNumber(begin, bits);
  const bool negative = *begin == '-';
  const char* const whole = begin + (negative ? 1 : 0);
  const char* p = whole;
  std::uint64_t digits = 0;
  // Most numbers have one to three digits before the point: where they end is foreseen better by
  // the processor's branches than found out by arithmetic that all further reading waits for.
  while (p != whole + 3 && isDigit(*p))
    digits = digits * 10 + static_cast<std::uint64_t>(*p++ - '0');
  if (p == whole + 3) p += takeOfSixteen(p, digits);
  std::ptrdiff_t digitCount = p - whole;
  if (digitCount == 0 || (*whole == '0' && digitCount > 1)) return nullptr;
  unsigned fractionCount = 0;
  if (*p == '.') {
    fractionCount = takeOfSixteen(p + 1, digits);
    if (fractionCount == 0) return nullptr;
    p += 1 + fractionCount;
    digitCount += fractionCount;
  }
  constexpr std::uint64_t exactlyDouble = std::uint64_t{1} << 53U;
  if (digitCount > fewDigits || isDigit(*p) || *p == 'e' || *p == 'E' ||
      (fractionCount != 0 && digits > exactlyDouble)) {
    return anyNumber(begin, bits);
  }
  const auto integer = static_cast<std::int64_t>(digits);
  if (fractionCount == 0) {
    bits =
        ValueBits::make(static_cast<std::uint64_t>(negative ? -integer : integer), ValueTag::int64);
    return p;
  }
  // Of two exact numbers one operation rounds once, hence correctly.
  static constexpr double powers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8, 1e9,
                                      1e10, 1e11, 1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18};
  const double value = static_cast<double>(integer) / powers[fractionCount];
  setDouble(bits, negative ? -value : value);
  return p;
}

}  // namespace quorvelkit::detail
