// SPDX-License-Identifier: Apache-2.0
#include <QuorvelPlatform/ASCII_p.h>
#include <QuorvelPlatform/URL.h>
#include <QuorvelPlatform/curl/HostLines_p.h>

#include <utility>

namespace quorvelkit {

namespace {

std::string hostAndPort(const URL& url) {
  constexpr int httpPort = 80;
  std::string text(url.host().value_or(""));
  for (char& c : text)
    c = asciiLowered(c);
  return text.append(":").append(std::to_string(url.port().value_or(httpPort)));
}

}  // namespace

void HostLines::enter(Visitor& visitor, const URL& url) {
  if (equalsIgnoringASCIICase(url.scheme().value_or(""), "http")) {
    const auto found = lines_.try_emplace(hostAndPort(url)).first;
    Line& line = found->second;
    const bool isFull = line.connected == connectionsPerHost;
    if (isFull) visitor.waiting_ = line.waiting.insert(line.waiting.end(), &visitor);
    visitor.line_ = found;
    if (isFull) return;
    ++line.connected;
  }
  visitor.connectionIsFree();
}

void HostLines::leave(Visitor& visitor) {
  const auto found = std::exchange(visitor.line_, std::nullopt);
  if (!found) return;
  Line& line = (*found)->second;
  if (const auto waiting = std::exchange(visitor.waiting_, std::nullopt)) {
    line.waiting.erase(*waiting);
  } else if (line.waiting.empty()) {
    if (--line.connected == 0) lines_.erase(*found);
  } else {
    Visitor& next = *line.waiting.front();
    line.waiting.pop_front();
    next.waiting_.reset();
    next.connectionIsFree();
  }
}

}  // namespace quorvelkit
