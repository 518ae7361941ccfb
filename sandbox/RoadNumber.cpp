// SPDX-License-Identifier: Apache-2.0
#include "sandbox/RoadNumber.h"

#include <algorithm>
#include <charconv>

namespace quorvelkit::sandbox {
namespace {

// Without California, which has its own family.
constexpr std::string_view stateCodes =
    " AL AK AZ AR CO CT DE FL GA HI ID IL IN IA KS KY LA ME MD MA MI MN MS MO MT NE NV NH NJ NM NY "
    "NC ND OH OK OR PA RI SC SD TN TX UT VT VA WA WV WI WY DC SR ";

bool isDigit(char c) { return c >= '0' && c <= '9'; }

std::string_view familyOf(std::string_view prefix, char separator) {
  if (prefix == "I" || prefix == "US" || prefix == "CR") return prefix;
  if (separator == ' ' && prefix == "CA") return prefix;
  if (separator == ' ' && prefix.size() == 2) {
    const std::size_t at = stateCodes.find(prefix);
    if (at != std::string_view::npos && stateCodes[at - 1] == ' ' && stateCodes[at + 2] == ' ') {
      return "SR";
    }
  }
  return "Hwy";
}

std::optional<RoadNumber> fromOneRef(std::string_view ref) {
  const auto* digit = std::find_if(ref.begin(), ref.end(), isDigit);
  std::int64_t number = 0;
  if (std::from_chars(digit, ref.end(), number).ec != std::errc()) return std::nullopt;
  std::string_view prefix = ref.substr(0, static_cast<std::size_t>(digit - ref.begin()));
  while (prefix.starts_with(' '))
    prefix.remove_prefix(1);
  char separator = 0;
  if (!prefix.empty() && (prefix.back() == ' ' || prefix.back() == '-')) {
    separator = prefix.back();
    prefix.remove_suffix(1);
  }
  return RoadNumber{familyOf(prefix, separator), number};
}

}  // namespace

std::optional<RoadNumber> RoadNumber::fromRef(std::string_view ref) {
  while (!ref.empty()) {
    const std::size_t end = std::min(ref.find(';'), ref.size());
    if (const auto number = fromOneRef(ref.substr(0, end))) return number;
    ref.remove_prefix(std::min(end + 1, ref.size()));
  }
  return std::nullopt;
}

}  // namespace quorvelkit::sandbox
