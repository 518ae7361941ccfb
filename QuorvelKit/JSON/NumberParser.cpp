// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/JSON/NumberParser_p.h>

#include <charconv>
#include <limits>

namespace quorvelkit::detail {

namespace {

bool isDigit(char c) noexcept { return static_cast<unsigned char>(c - '0') < 10; }

// The longest run of digits that always fits into 64 bits.
constexpr std::int64_t safeDigits = 19;

// A number as its grammar shows it: digits x 10^exponent, counted from the first that is not 0.
// The digits are whole only when there are at most safeDigits of them.
struct Scan {
  std::uint64_t digits = 0;
  std::int64_t digitCount = 0;
  std::int64_t exponent = 0;
  bool negative = false;
  bool integer = true;
};

const char* scanDigits(const char* p, const char* end, Scan& scan) noexcept {
  for (; p != end && isDigit(*p); ++p) {
    scan.digits = scan.digits * 10 + static_cast<std::uint64_t>(*p - '0');
    if (scan.digitCount != 0 || *p != '0') ++scan.digitCount;
  }
  return p;
}

const char* scanExponent(const char* p, const char* end, Scan& scan) noexcept {
  const bool negative = p != end && *p == '-';
  if (p != end && (*p == '-' || *p == '+')) ++p;
  if (p == end || !isDigit(*p)) return nullptr;
  std::int64_t exponent = 0;
  for (; p != end && isDigit(*p); ++p) {
    // Larger than any exponent that a document has the room to make up for with digits.
    if (exponent < 100'000'000'000) exponent = exponent * 10 + (*p - '0');
  }
  scan.exponent += negative ? -exponent : exponent;
  return p;
}

const char* scanNumber(const char* p, const char* end, Scan& scan) noexcept {
  if (p != end && *p == '-') {
    scan.negative = true;
    ++p;
  }
  const char* const whole = p;
  p = scanDigits(p, end, scan);
  if (p == whole || (*whole == '0' && p - whole > 1)) return nullptr;
  if (p != end && *p == '.') {
    scan.integer = false;
    const char* const fraction = ++p;
    p = scanDigits(p, end, scan);
    if (p == fraction) return nullptr;
    scan.exponent = fraction - p;
  }
  if (p != end && (*p == 'e' || *p == 'E')) {
    scan.integer = false;
    p = scanExponent(p + 1, end, scan);
  }
  return p;
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

}  // namespace

const char* parseNumber(const char* begin, const char* end, ValueBits& bits) noexcept {
  Scan scan;
  const char* const stop = scanNumber(begin, end, scan);
  if (!stop) return nullptr;
  if (scan.integer) {
    std::uint64_t magnitude = scan.digits;
    bool fits = scan.digitCount <= safeDigits;
    if (!fits && scan.digitCount == safeDigits + 1) {
      fits = std::from_chars(begin + (scan.negative ? 1 : 0), stop, magnitude).ec == std::errc();
    }
    if (fits && setInteger(bits, scan, magnitude)) return stop;
  }
  // With digits and power of ten both exact, one operation rounds once, hence correctly.
  static constexpr double powers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                      1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                      1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
  if (scan.digitCount <= safeDigits && scan.digits <= (std::uint64_t{1} << 53U) &&
      scan.exponent >= -22 && scan.exponent <= 22) {
    const auto digits = static_cast<double>(scan.digits);
    const double value =
        scan.exponent < 0 ? digits / powers[-scan.exponent] : digits * powers[scan.exponent];
    setDouble(bits, scan.negative ? -value : value);
    return stop;
  }
  double value = scan.negative ? -0.0 : 0.0;
  if (scan.digitCount != 0 && std::from_chars(begin, stop, value).ec != std::errc()) {
    // Too small stays zero, too large is no number.
    if (scan.digitCount + scan.exponent > 0) return nullptr;
  }
  setDouble(bits, value);
  return stop;
}

}  // namespace quorvelkit::detail
