// SPDX-License-Identifier: Apache-2.0
#include "ArrivalTime.h"

#include <cstddef>
#include <optional>

namespace {

/// Reads the parts of a date-time. After the first fault, reason() is present and the values that
/// are returned have no meaning.
class TimeScanner {
 public:
  explicit TimeScanner(std::string_view text) : text_(text) {}

  const std::optional<std::string>& reason() const { return reason_; }

  void fail(std::string reason) {
    if (!reason_) reason_ = std::move(reason);
  }
  /// Reads a number of exactly `digits` digits from `least` to `most`.
  int number(const char* name, std::size_t digits, int least, int most) {
    int value = 0;
    for (std::size_t i = 0; i < digits; ++i) {
      if (i >= text_.size() || !isDigit(text_[i])) {
        fail("the " + std::string(name) + " needs " + std::to_string(digits) + " digits");
        return least;
      }
      value = value * 10 + (text_[i] - '0');
    }
    text_.remove_prefix(digits);
    if (value < least || value > most)
      fail("the " + std::string(name) + " is not from " + std::to_string(least) + " to " +
           std::to_string(most));
    return value;
  }
  /// Reads the next character if it is one of `characters`. Otherwise returns 0.
  char oneOf(std::string_view characters) {
    if (text_.empty() || characters.find(text_.front()) == std::string_view::npos) return 0;
    const char found = text_.front();
    text_.remove_prefix(1);
    return found;
  }
  void separator(std::string_view characters, const char* position) {
    if (oneOf(characters) == 0)
      fail("'" + std::string(characters.substr(0, 1)) + "' is missing " + position);
  }
  /// Reads the digits of a fraction of a second. Ignores those below a nanosecond.
  std::chrono::nanoseconds fraction() {
    std::chrono::nanoseconds value{0};
    if (text_.empty() || !isDigit(text_.front())) fail("the fraction of the second has no digits");
    for (long unit = 100'000'000; !text_.empty() && isDigit(text_.front()); unit /= 10) {
      value += std::chrono::nanoseconds((text_.front() - '0') * unit);
      text_.remove_prefix(1);
    }
    return value;
  }
  bool isAtEnd() const { return text_.empty(); }

 private:
  static bool isDigit(char c) { return c >= '0' && c <= '9'; }

  std::string_view text_;
  std::optional<std::string> reason_;
};

std::chrono::year_month_day readDate(TimeScanner& scanner) {
  using namespace std::chrono;
  const year y(scanner.number("year", 4, 1678, 2261));
  scanner.separator("-", "after the year");
  const month m(static_cast<unsigned>(scanner.number("month", 2, 1, 12)));
  scanner.separator("-", "after the month");
  const day last = scanner.reason() ? day(31) : (y / m / std::chrono::last).day();
  const int days = static_cast<int>(static_cast<unsigned>(last));
  return y / m / day(static_cast<unsigned>(scanner.number("day", 2, 1, days)));
}

/// Reads "Z" or an offset such as "+01:00".
std::chrono::minutes readOffset(TimeScanner& scanner) {
  using namespace std::chrono;
  if (scanner.oneOf("Zz") != 0) return minutes(0);
  const char sign = scanner.oneOf("+-");
  if (sign == 0) {
    scanner.fail("'Z' or an offset such as +01:00 is missing after the time");
    return minutes(0);
  }
  const hours hour(scanner.number("hour of the offset", 2, 0, 23));
  scanner.separator(":", "in the offset");
  const minutes offset = hour + minutes(scanner.number("minute of the offset", 2, 0, 59));
  return sign == '-' ? -offset : offset;
}

}  // namespace

std::variant<ArrivalTime, std::string> parseArrivalTime(std::string_view text) {
  using namespace std::chrono;
  TimeScanner scanner(text);
  const year_month_day date = readDate(scanner);
  scanner.separator("Tt", "after the date");
  const hours hour(scanner.number("hour", 2, 0, 23));
  scanner.separator(":", "after the hour");
  const minutes minute(scanner.number("minute", 2, 0, 59));
  scanner.separator(":", "after the minute");
  const seconds second(scanner.number("second", 2, 0, 60));
  const nanoseconds fraction = scanner.oneOf(".") != 0 ? scanner.fraction() : nanoseconds(0);
  const minutes offset = readOffset(scanner);
  if (!scanner.isAtEnd()) scanner.fail("characters follow after its end");
  if (scanner.reason()) return *scanner.reason();
  const auto time = sys_days(date) + hour + minute + second - offset;
  // A leap second is the last second of a month in UTC.
  const bool isStartOfMonth =
      time == floor<days>(time) && year_month_day(floor<days>(time)).day() == day(1);
  if (second == seconds(60) && !isStartOfMonth)
    return "second 60 is a leap second, which only the end of a month in UTC can have";
  return ArrivalTime(time) + duration_cast<ArrivalTime::duration>(fraction);
}
