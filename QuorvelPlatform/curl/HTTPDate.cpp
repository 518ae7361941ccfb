// SPDX-License-Identifier: Apache-2.0
#include <QuorvelPlatform/curl/HTTPDate_p.h>

#include <curl/curl.h>

namespace quorvelkit {

std::optional<std::chrono::sys_seconds> parseHTTPDate(const std::string& text) {
  const std::time_t time = curl_getdate(text.c_str(), nullptr);
  if (time == -1) return std::nullopt;
  return std::chrono::sys_seconds(std::chrono::seconds(time));
}

}  // namespace quorvelkit
