// SPDX-License-Identifier: Apache-2.0
#include "sandbox/RFC3339Time.h"

namespace quorvelkit::sandbox {
namespace {

/// Reads a text from front to back.
class Scanner {
 public:
  explicit Scanner(std::string_view text) : text_(text) {}

  /// Reads a number of exactly `digits` digits. Returns -1 if there is none.
  int number(std::size_t digits) {
    if (text_.size() < digits) return -1;
    int value = 0;
    for (const char c : text_.substr(0, digits)) {
      if (c < '0' || c > '9') return -1;
      value = value * 10 + (c - '0');
    }
    text_.remove_prefix(digits);
    return value;
  }
  /// Reads the next character if it is one of `characters`. Otherwise returns 0.
  char oneOf(std::string_view characters) {
    if (text_.empty() || characters.find(text_.front()) == std::string_view::npos) return 0;
    const char c = text_.front();
    text_.remove_prefix(1);
    return c;
  }
  bool atEnd() const { return text_.empty(); }

 private:
  std::string_view text_;
};

}  // namespace

std::optional<std::chrono::system_clock::time_point> parseRFC3339(std::string_view text) {
  using namespace std::chrono;
  Scanner scanner(text);
  const int year = scanner.number(4);
  if (year < 0 || !scanner.oneOf("-")) return std::nullopt;
  const int month = scanner.number(2);
  if (month < 0 || !scanner.oneOf("-")) return std::nullopt;
  const int day = scanner.number(2);
  if (day < 0 || !scanner.oneOf("Tt ")) return std::nullopt;
  const int hour = scanner.number(2);
  if (hour < 0 || !scanner.oneOf(":")) return std::nullopt;
  const int minute = scanner.number(2);
  if (minute < 0 || !scanner.oneOf(":")) return std::nullopt;
  const int second = scanner.number(2);
  if (second < 0) return std::nullopt;
  milliseconds fraction{0};
  if (scanner.oneOf(".")) {
    int unit = 100;
    int digit = scanner.number(1);
    if (digit < 0) return std::nullopt;
    for (; digit >= 0; digit = scanner.number(1), unit /= 10)
      fraction += milliseconds(digit * unit);
  }
  minutes offset{0};
  const char zone = scanner.oneOf("Zz+- ");
  if (zone == 0) return std::nullopt;
  if (zone != 'Z' && zone != 'z') {
    const int hours = scanner.number(2);
    if (hours < 0 || hours > 23 || !scanner.oneOf(":")) return std::nullopt;
    const int rest = scanner.number(2);
    if (rest < 0 || rest > 59) return std::nullopt;
    offset = minutes(hours * 60 + rest);
    if (zone == '-') offset = -offset;
  }
  const year_month_day date(std::chrono::year(year),
                            std::chrono::month(static_cast<unsigned>(month)),
                            std::chrono::day(static_cast<unsigned>(day)));
  // Second 60 is a leap second.
  if (!scanner.atEnd() || !date.ok() || hour > 23 || minute > 59 || second > 60) {
    return std::nullopt;
  }
  return sys_days(date) + hours(hour) + minutes(minute) + seconds(second) + fraction - offset;
}

}  // namespace quorvelkit::sandbox
