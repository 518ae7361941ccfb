// SPDX-License-Identifier: Apache-2.0
#include "sandbox/HTTPMessage.h"

#include <algorithm>

namespace quorvelkit::sandbox {

HTTPAnswer HTTPAnswer::json(const JSON& body, int status) {
  const auto bytes = body.rawData();
  if (!bytes) return {500, "text/plain", "The answer cannot be written as JSON."};
  return {status, "application/json", std::string(bytes->view())};
}

HTTPAnswer HTTPAnswer::failure(int status, int code, const std::string& message) {
  return json(JSON::makeDictionary({{"code", code}, {"message", message}}), status);
}

std::string printable(std::string text) {
  std::replace_if(
      text.begin(), text.end(), [](char c) { return c < ' ' || c > '~'; }, '?');
  return text;
}

}  // namespace quorvelkit::sandbox
