// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/JSON/NumberText_p.h>

#include <charconv>
#include <cmath>
#include <string_view>

namespace quorvelkit::detail {

namespace {

template <class... Arguments>
void append(std::string& out, Arguments... arguments) {
  char text[64];
  const auto result = std::to_chars(text, text + sizeof text, arguments...);
  out.append(text, result.ptr);
}

// Appends the text of a double that is the closest one to a decimal with at most 6 digits before
// the decimal point and 9 after it, such as most coordinates, distances and times. Takes the digits
// from an integer, which is faster than to_chars. Correct because two different decimals of at most
// 15 digits are never the same double. Returns false, without output, for all other doubles.
bool appendShortDecimal(std::string& out, double value) {
  constexpr int places = 9;
  constexpr std::uint64_t scale = 1'000'000'000;
  const double magnitude = std::fabs(value);
  if (!(magnitude < 1e6)) return false;
  const double nearby = magnitude * scale + 0.5;
  const auto scaled = static_cast<std::uint64_t>(nearby);
  if (static_cast<double>(scaled) / scale != magnitude) return false;
  if (std::signbit(value)) out += '-';
  append(out, scaled / scale);
  std::uint64_t fraction = scaled % scale;
  if (fraction == 0) return true;
  char text[1 + places] = {'.'};
  for (int i = places; i > 0; --i, fraction /= 10)
    text[i] = static_cast<char>('0' + fraction % 10);
  const std::string_view digits(text, sizeof text);
  out += digits.substr(0, digits.find_last_not_of('0') + 1);
  return true;
}

}  // namespace

void appendText(std::string& out, std::int64_t value) { append(out, value); }
void appendText(std::string& out, std::uint64_t value) { append(out, value); }
void appendText(std::string& out, bool value) { out += value ? '1' : '0'; }

void appendText(std::string& out, double value) {
  const double magnitude = std::fabs(value);
  if (value == 0 || (magnitude >= 1e-5 && magnitude < 1e17)) {
    if (!appendShortDecimal(out, value)) append(out, value, std::chars_format::fixed);
  } else {
    append(out, value, std::chars_format::scientific);
  }
}

void appendText(std::string& out, const Decimal& value) {
  if (value.isNotANumber()) {
    out += "nan";
    return;
  }
  std::string digits = value.digits();
  if (digits.empty()) {
    out += '0';
    return;
  }
  if (value.isNegative()) out += '-';
  // The position of the decimal point among the digits.
  const auto length = static_cast<int>(digits.size());
  const int point = length + value.exponent();
  if (point > 38 || point < -4) {
    digits.erase(digits.find_last_not_of('0') + 1);
    out += digits[0];
    if (digits.size() > 1) out.append(1, '.').append(digits, 1);
    const int exponent = point - 1;
    out += exponent < 0 ? "e-" : "e+";
    if (std::abs(exponent) < 10) out += '0';
    append(out, std::abs(exponent));
  } else if (point <= 0) {
    out.append("0.").append(static_cast<std::size_t>(-point), '0').append(digits);
  } else if (point >= length) {
    out.append(digits).append(static_cast<std::size_t>(point - length), '0');
  } else {
    const auto whole = static_cast<std::size_t>(point);
    out.append(digits, 0, whole).append(1, '.').append(digits, whole);
  }
}

}  // namespace quorvelkit::detail
