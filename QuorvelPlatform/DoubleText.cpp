// SPDX-License-Identifier: Apache-2.0
#include <QuorvelPlatform/DoubleText.h>

#include <array>
#include <charconv>
#include <cmath>

namespace quorvelkit {

std::string defaultText(double value) {
  if (std::isnan(value)) return "nan";
  std::array<char, 32> buffer{};
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                 std::chars_format::general, 15)
                       .ptr;
  std::string text(buffer.data(), end);
  if (std::isfinite(value) && text.find_first_of(".e") == std::string::npos) text += ".0";
  return text;
}

}  // namespace quorvelkit
