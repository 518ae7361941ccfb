// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/JSON/NumberText_p.h>

#include <charconv>
#include <cmath>

namespace quorvelkit::detail {

namespace {

template <class... Arguments>
void append(std::string& out, Arguments... arguments) {
  char text[64];
  const auto result = std::to_chars(text, text + sizeof text, arguments...);
  out.append(text, result.ptr);
}

}  // namespace

void appendText(std::string& out, std::int64_t value) { append(out, value); }
void appendText(std::string& out, std::uint64_t value) { append(out, value); }
void appendText(std::string& out, bool value) { out += value ? '1' : '0'; }

void appendText(std::string& out, double value) {
  const double magnitude = std::fabs(value);
  if (value == 0 || (magnitude >= 1e-5 && magnitude < 1e17)) {
    append(out, value, std::chars_format::fixed);
  } else {
    append(out, value, std::chars_format::scientific);
  }
}

void appendText(std::string& out, const Decimal& value) {
  if (value.isNotANumber()) {
    out += "nan";
    return;
  }
  const std::string digits = value.digits();
  if (digits.empty()) {
    out += '0';
    return;
  }
  if (value.isNegative()) out += '-';
  // Where the point stands among the digits.
  const auto length = static_cast<int>(digits.size());
  const int point = length + value.exponent();
  if (point > 38 || point < -4) {
    out += digits[0];
    if (length > 1) out.append(1, '.').append(digits, 1);
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
