// SPDX-License-Identifier: Apache-2.0
#include "sandbox/find/Place.h"

#include <string_view>

namespace quorvelkit::sandbox {

std::string Place::label() const {
  std::string text = name;
  std::string_view last = name;
  for (const std::string* part : {&address, &locality.city, &locality.region, &locality.postal}) {
    if (part->empty() || *part == last) continue;
    text += ", ";
    text += *part;
    last = *part;
  }
  return text;
}

}  // namespace quorvelkit::sandbox
