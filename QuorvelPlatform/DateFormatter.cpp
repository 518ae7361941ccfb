// SPDX-License-Identifier: Apache-2.0
#include <QuorvelPlatform/DateFormatter.h>

#include <algorithm>

namespace quorvelkit {

namespace {

void appendPadded(std::string& text, unsigned number, std::size_t width) {
  const std::string digits = std::to_string(number);
  text.append(width - std::min(width, digits.size()), '0').append(digits);
}

}  // namespace

DateFormatter DateFormatter::RFC3339DateFormatter() { return {}; }

// All years in the range of the system clock have four digits.
std::string DateFormatter::string(std::chrono::system_clock::time_point instant) const {
  const auto second = std::chrono::floor<std::chrono::seconds>(instant);
  const auto day = std::chrono::floor<std::chrono::days>(second);
  const std::chrono::year_month_day date(day);
  const std::chrono::hh_mm_ss time(second - day);
  std::string text;
  appendPadded(text, static_cast<unsigned>(static_cast<int>(date.year())), 4);
  appendPadded(text += '-', static_cast<unsigned>(date.month()), 2);
  appendPadded(text += '-', static_cast<unsigned>(date.day()), 2);
  appendPadded(text += 'T', static_cast<unsigned>(time.hours().count()), 2);
  appendPadded(text += ':', static_cast<unsigned>(time.minutes().count()), 2);
  appendPadded(text += ':', static_cast<unsigned>(time.seconds().count()), 2);
  return text += 'Z';
}

}  // namespace quorvelkit
